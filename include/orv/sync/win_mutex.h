// Kernel mutexes that processes share by name.

#pragma once

#include "orv/flags.h"
#include "orv/security/security_descriptor.h"
#include "orv/sync/mutex.h"
#include "orv/sync/object_name_space.h"

/// Native access rights to a mutex; they combine.
enum OrvWinMutexRights : uint32_t {
    OrvWinMutexQueryState = 0x1,
    OrvWinMutexDelete = 0x10000,
    OrvWinMutexReadControl = 0x20000,
    OrvWinMutexWriteDac = 0x40000,
    OrvWinMutexWriteOwner = 0x80000,
    OrvWinMutexSynchronize = 0x100000, ///< to acquire; its owner needs no right to release it
    OrvWinMutexAllAccess = 0x1F0001,
};

/// Both sets of rights together.
ORV_COMBINABLE_FLAGS(OrvWinMutexRights)

/// A mutex with a name.
class OrvBasWinMutex : public OrvBasMutex
{
public:
    ORV_API OrvBasWinMutex();
    ORV_API ~OrvBasWinMutex() override;

    /// Creates the mutex, or opens the one of that name. The mutex replaces any resource held. Letter case
    /// matters, where the system allows it. Null or an empty name makes an unnamed mutex, for which the name
    /// space is not used. The descriptor may be null.
    ///
    /// Returns 0; ORV_S_ALREADY_EXISTS when a mutex of that name was opened, which `initialOwner` does not
    /// acquire; ORV_E_INVALID_ARGUMENT for a name space outside its enumeration; ORV_E_INVALID_NAME when the
    /// full name has more than 32,766 characters; ORV_E_OUT_OF_MEMORY; ORV_E_NOT_SUPPORTED while the table of
    /// ntdll.dll entry points is empty; otherwise the converted status: ORV_E_PATH_NOT_FOUND when the
    /// directory does not exist, ORV_E_INVALID_HANDLE when the name belongs to an object of another type. On
    /// failure the object is unchanged.
    ORV_API OrvResult Create(bool initialOwner, const wchar_t *name, OrvBasWinSyncObjectNameSpace nameSpace,
                             OrvWinSecurityDescriptor *securityDescriptor);

    /// Opens the mutex of that name, in any letter case, with these rights. The mutex replaces any resource
    /// held.
    ///
    /// Returns 0 or a failure as Create does: ORV_E_FILE_NOT_FOUND when there is no such mutex,
    /// ORV_E_ACCESS_DENIED when the rights are refused. Null or an empty name opens nothing.
    ORV_API OrvResult Open(const wchar_t *name, OrvBasWinSyncObjectNameSpace nameSpace,
                           OrvWinMutexRights rights);
};

static_assert(sizeof(OrvBasWinMutex) == sizeof(OrvBasWaitable), "fixed layout");

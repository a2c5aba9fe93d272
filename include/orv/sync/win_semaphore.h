// Kernel semaphores that processes share by name.

#pragma once

#include "orv/flags.h"
#include "orv/security/security_descriptor.h"
#include "orv/sync/object_name_space.h"
#include "orv/sync/semaphore.h"

/// Native access rights to a semaphore; they combine.
enum OrvWinSemaphoreRights : uint32_t {
    OrvWinSemaphoreQueryState = 0x1,
    OrvWinSemaphoreModifyState = 0x2, ///< to release
    OrvWinSemaphoreDelete = 0x10000,
    OrvWinSemaphoreReadControl = 0x20000,
    OrvWinSemaphoreWriteDac = 0x40000,
    OrvWinSemaphoreWriteOwner = 0x80000,
    OrvWinSemaphoreSynchronize = 0x100000, ///< to wait
    OrvWinSemaphoreAllAccess = 0x1F0003,
};

/// Both sets of rights together.
ORV_COMBINABLE_FLAGS(OrvWinSemaphoreRights)

/// A semaphore with a name.
class OrvBasWinSemaphore : public OrvBasSemaphore
{
public:
    ORV_API OrvBasWinSemaphore();
    ORV_API ~OrvBasWinSemaphore() override;

    /// Creates the semaphore, or opens the one of that name. The semaphore replaces any resource held. Letter
    /// case matters, where the system allows it. Null or an empty name makes an unnamed semaphore, for which
    /// the name space and the descriptor are not used. The descriptor may be null.
    ///
    /// Returns 0; ORV_S_ALREADY_EXISTS when a semaphore of that name was opened, which keeps its counts;
    /// ORV_E_INVALID_ARGUMENT for a name space outside its enumeration, or counts that
    /// OrvBasSemaphore::Create does not take; ORV_E_INVALID_NAME when the full name has more than 32,766
    /// characters; ORV_E_OUT_OF_MEMORY; otherwise the converted status: ORV_E_PATH_NOT_FOUND when the
    /// directory does not exist, ORV_E_INVALID_HANDLE when the name belongs to an object of another type. On
    /// failure the object is unchanged.
    ORV_API OrvResult Create(int initialCount, int maximumCount, const wchar_t *name,
                             OrvBasWinSyncObjectNameSpace nameSpace,
                             OrvWinSecurityDescriptor *securityDescriptor);

    /// Opens the semaphore of that name, in any letter case, with these rights. The semaphore replaces any
    /// resource held.
    ///
    /// Returns 0 or a failure as Create does: ORV_E_FILE_NOT_FOUND when there is no such semaphore,
    /// ORV_E_ACCESS_DENIED when the rights are refused. Null or an empty name opens nothing.
    ORV_API OrvResult Open(const wchar_t *name, OrvBasWinSyncObjectNameSpace nameSpace,
                           OrvWinSemaphoreRights rights);
};

static_assert(sizeof(OrvBasWinSemaphore) == sizeof(OrvBasWaitable), "fixed layout");

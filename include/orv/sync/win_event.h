// Kernel events that processes share by name.

#pragma once

#include "orv/flags.h"
#include "orv/security/security_descriptor.h"
#include "orv/sync/event.h"
#include "orv/sync/object_name_space.h"

/// Native access rights to an event; they combine.
enum OrvWinEventRights : uint32_t {
    OrvWinEventQueryState = 0x1,
    OrvWinEventModifyState = 0x2, ///< to set and reset
    OrvWinEventDelete = 0x10000,
    OrvWinEventReadControl = 0x20000,
    OrvWinEventWriteDac = 0x40000,
    OrvWinEventWriteOwner = 0x80000,
    OrvWinEventSynchronize = 0x100000, ///< to wait
    OrvWinEventAllAccess = 0x1F0003,
};

/// Both sets of rights together.
ORV_COMBINABLE_FLAGS(OrvWinEventRights)

/// An event with a name.
class OrvBasWinEvent : public OrvBasEvent
{
public:
    ORV_API OrvBasWinEvent();
    ORV_API ~OrvBasWinEvent() override;

    /// Creates the event, or opens the one of that name. The event replaces any resource held. Letter case
    /// matters, where the system allows it. Null or an empty name makes an unnamed event, for which the name
    /// space and the descriptor are not used. The descriptor may be null.
    ///
    /// Returns 0; ORV_S_ALREADY_EXISTS when an event of that name was opened: it keeps its own type and
    /// state, while this object assumes `resetType`; ORV_E_INVALID_ARGUMENT for a name space outside its
    /// enumeration; ORV_E_INVALID_NAME when the full name has more than 32,766 characters;
    /// ORV_E_OUT_OF_MEMORY; otherwise the converted status: ORV_E_PATH_NOT_FOUND when the directory does not
    /// exist, ORV_E_INVALID_HANDLE when the name belongs to an object of another type. On failure the object
    /// is unchanged.
    ORV_API OrvResult Create(ResetType resetType, bool initialState, const wchar_t *name,
                             OrvBasWinSyncObjectNameSpace nameSpace,
                             OrvWinSecurityDescriptor *securityDescriptor);

    /// Opens the event of that name, in any letter case, with these rights. The event replaces any resource
    /// held. The rights must include OrvWinEventQueryState, because the operation queries the type of the
    /// event.
    ///
    /// Returns 0 or a failure as Create does: ORV_E_FILE_NOT_FOUND when there is no such event,
    /// ORV_E_ACCESS_DENIED when the rights are refused or do not include that right. Null or an empty name
    /// opens nothing.
    ORV_API OrvResult Open(const wchar_t *name, OrvBasWinSyncObjectNameSpace nameSpace,
                           OrvWinEventRights rights);
};

static_assert(sizeof(OrvBasWinEvent) == sizeof(OrvBasWaitable), "fixed layout");

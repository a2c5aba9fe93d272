// An unnamed kernel event.

#pragma once

#include "orv/sync/waitable.h"

struct _OBJECT_ATTRIBUTES;

/// An event of this process, unless its handle is passed on.
class OrvBasEvent : public OrvBasWaitable
{
public:
    /// How the signal ends.
    enum ResetType : uint32_t {
        ManualReset = 0, ///< stays signalled until it is reset
        AutoReset = 1,   ///< releases one waiter and resets itself; any other non-zero value means the same
    };

    ORV_API OrvBasEvent();
    ORV_API ~OrvBasEvent() override;

    /// Creates the event, signalled or not.
    ///
    /// Returns 0; ORV_E_ALREADY_EXISTS when the object holds a resource; otherwise the converted status. On
    /// failure the object is unchanged.
    ORV_API OrvResult Create(ResetType resetType, bool initialState);

    /// Signals the event. Returns 0 or the converted status: ORV_E_INVALID_HANDLE when there is no event
    /// here.
    ORV_API OrvResult Set();

    /// Ends the signal. Returns as Set.
    ORV_API OrvResult Reset();

    /// InternalWait, which succeeds at once for an event that was never created.
    ORV_API OrvResult Wait(int timeoutMs);

protected:
    /// Creates an event with native attributes, null for none. The event replaces any resource held.
    ///
    /// Returns 0; ORV_S_ALREADY_EXISTS when the attributes name an event that existed, which was opened;
    /// otherwise the converted status, and the object is unchanged.
    ORV_API OrvResult InternalCreate(ResetType resetType, bool initialState,
                                     const _OBJECT_ATTRIBUTES *attributes);
};

static_assert(sizeof(OrvBasEvent) == sizeof(OrvBasWaitable), "fixed layout");

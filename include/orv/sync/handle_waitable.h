// Waiting on a handle that the caller brings: the object owns and closes it, or only borrows it.

#pragma once

#include "orv/sync/waitable.h"

/// Waits on any handle that can be waited on.
class OrvBasWinHandleWaitable : public OrvBasWaitable
{
public:
    /// Holds the handle; with `owning`, closes it later.
    ORV_API OrvBasWinHandleWaitable(void *handle, bool owning);

    /// Closes an owned handle; a borrowed one stays open.
    ORV_API ~OrvBasWinHandleWaitable() override;

    /// Calls Destroy, then holds the handle as the constructor does. Always 0.
    ORV_API OrvResult Initialize(void *handle, bool owning);

    /// Forgets a borrowed handle, which stays open; otherwise FreeResource.
    ORV_API OrvResult Destroy() override;

    /// Whether the object owns, or owned, the handle that it held last.
    ORV_API bool IsOwning() const;

    /// InternalWait, which succeeds at once when there is no handle here.
    ORV_API OrvResult Wait(int timeoutMs);

private:
    bool owning_;
};

static_assert(sizeof(OrvBasWinHandleWaitable) == 20, "fixed layout");

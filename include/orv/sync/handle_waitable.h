// Waiting on a handle that came from elsewhere: owned and closed like one of our own, or only borrowed.

#pragma once

#include "orv/sync/waitable.h"

/// Waits on any handle that can be waited on.
class OrvBasWinHandleWaitable : public OrvBasWaitable
{
public:
    /// Holds the handle, and closes it later when `owning`.
    ORV_API OrvBasWinHandleWaitable(void *handle, bool owning);

    /// Closes an owned handle; a borrowed one stays open.
    ORV_API ~OrvBasWinHandleWaitable() override;

    /// Calls Destroy, then holds the handle as the constructor does. Always 0.
    ORV_API OrvResult Initialize(void *handle, bool owning);

    /// Forgets a borrowed handle, which stays open; otherwise FreeResource.
    ORV_API OrvResult Destroy() override;

    /// Whether the handle held last is, or was, to be closed here.
    ORV_API bool IsOwning() const;

    /// InternalWait, which succeeds at once when there is no handle here.
    ORV_API OrvResult Wait(int timeoutMs);

private:
    bool owning_;
};

static_assert(sizeof(OrvBasWinHandleWaitable) == 20, "fixed layout");

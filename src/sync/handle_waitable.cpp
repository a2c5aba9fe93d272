// Waitables over handles that the caller opened, owned or borrowed.

#include "orv/sync/handle_waitable.h"

#include "orv/runtime/result.h"

#pragma clang diagnostic ignored "-Winvalid-offsetof"

OrvBasWinHandleWaitable::OrvBasWinHandleWaitable(void *handle, bool owning) : owning_(owning)
{
    static_assert(offsetof(OrvBasWinHandleWaitable, owning_) == 16);
    AttachHandle(handle);
}

OrvBasWinHandleWaitable::~OrvBasWinHandleWaitable()
{
    // The base class closes an owned handle, once, even if that fails: at a second attempt the handle's
    // number might already belong to another object.
    if (!owning_)
        DetachResource();
}

OrvResult OrvBasWinHandleWaitable::Initialize(void *handle, bool owning)
{
    AttachHandle(handle); // closes the old handle only if it was owned
    owning_ = owning;
    return ORV_S_OK;
}

OrvResult OrvBasWinHandleWaitable::Destroy()
{
    if (!owning_)
        DetachResource();
    return FreeResource();
}

bool OrvBasWinHandleWaitable::IsOwning() const
{
    return owning_;
}

OrvResult OrvBasWinHandleWaitable::Wait(int timeoutMs)
{
    return InternalWait(timeoutMs);
}

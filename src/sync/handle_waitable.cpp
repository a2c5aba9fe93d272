// Foreign handles, owned or borrowed.

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
    // An owned handle is left to the base, so that it is closed once even when that fails: by a second
    // attempt its number might name another object.
    if (!owning_)
        DetachResource();
}

OrvResult OrvBasWinHandleWaitable::Initialize(void *handle, bool owning)
{
    AttachHandle(handle); // the old handle goes by the old ownership
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

// The base of all waitables: it holds and releases the resource, and has the one wait that every Wait and
// Acquire calls.

#include "orv/sync/waitable.h"

#include "orv/runtime/result.h"
#include "runtime/status.h"
#include "sync/native_wait.h"

namespace
{

OrvResult WaitForHandle(HANDLE handle, int timeoutMs)
{
    const detail::TimeLimit limit(timeoutMs);
    const NTSTATUS status = ZwWaitForSingleObject(handle, false, limit.GetNative());
    switch (status) {
    case STATUS_SUCCESS:
        return ORV_S_OK;
    case STATUS_TIMEOUT:
        return ORV_W_TIMEOUT;
    case STATUS_ABANDONED:
        return ORV_S_ABANDONED;
    default:
        return detail::ResultFromStatus(status);
    }
}

} // namespace

// offsetof of a class with virtual functions is conditionally supported; all compilers of this interface do.
#pragma clang diagnostic ignored "-Winvalid-offsetof"

OrvBasWaitable::OrvBasWaitable()
{
    static_assert(offsetof(OrvBasWaitable, manualReset_) == 4);
    static_assert(offsetof(OrvBasWaitable, handle_) == 8 && offsetof(OrvBasWaitable, forward_) == 8);
    static_assert(offsetof(OrvBasWaitable, resourceType_) == 12);
}

OrvResult OrvBasWaitable::Destroy()
{
    return FreeResource();
}

OrvBasWaitable::~OrvBasWaitable()
{
    FreeResource();
}

OrvResult OrvBasWaitable::FreeResource()
{
    if (resourceType_ > OrvBasWaitableSelfWaiting)
        return ORV_E_NOT_PROVIDED;
    if (resourceType_ == OrvBasWaitableHandle) {
        const OrvResult result = detail::ResultFromCall(ZwClose(handle_));
        if (OrvFailed(result))
            return result;
    }
    resourceType_ = OrvBasWaitableNone;
    return ORV_S_OK;
}

bool OrvBasWaitable::IsInitialized() const
{
    return resourceType_ != OrvBasWaitableNone;
}

OrvResult OrvBasWaitable::InternalWait(int timeoutMs)
{
    const OrvBasWaitable *const last = detail::FollowForwards(this);
    if (!last)
        return ORV_E_INVALID_ARGUMENT;
    switch (last->resourceType_) {
    case OrvBasWaitableHandle:
        return WaitForHandle(last->handle_, timeoutMs);
    case OrvBasWaitableNone:
        return ORV_S_OK;
    case OrvBasWaitableSelfWaiting:
        return last->selfWaiting_ ? last->selfWaiting_->Wait(timeoutMs) : ORV_E_INVALID_ARGUMENT;
    default:
        return ORV_E_NOT_PROVIDED;
    }
}

void OrvBasWaitable::AttachHandle(void *handle)
{
    Destroy();
    handle_ = handle;
    resourceType_ = OrvBasWaitableHandle;
}

void OrvBasWaitable::AttachForward(OrvBasWaitable *other)
{
    Destroy();
    forward_ = other;
    resourceType_ = OrvBasWaitableForward;
}

void OrvBasWaitable::AttachSelfWaiting(OrvBasSelfWaiting *object)
{
    Destroy();
    selfWaiting_ = object;
    resourceType_ = OrvBasWaitableSelfWaiting;
}

void OrvBasWaitable::DetachResource()
{
    resourceType_ = OrvBasWaitableNone;
}

OrvBasWaitableResourceType OrvBasWaitable::GetResourceType()
{
    return resourceType_;
}

OrvBasWaitable *OrvBasWaitable::GetForward() const
{
    return resourceType_ == OrvBasWaitableForward ? forward_ : nullptr;
}

void *OrvBasWaitable::GetHandle() const
{
    return resourceType_ == OrvBasWaitableHandle ? handle_ : INVALID_HANDLE_VALUE;
}

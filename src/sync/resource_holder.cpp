// The scope guard of the reader/writer resource.

#include "orv/sync/resource_holder.h"

#include "orv/runtime/result.h"

namespace
{

OrvResult Acquire(OrvBasResource *resource, OrvBasResourceHolder::LockType type, int timeoutMs)
{
    if (type > OrvBasResourceHolder::SharedWaitForExclusive)
        return ORV_E_INVALID_ARGUMENT;
    if (type > OrvBasResourceHolder::Shared)
        return ORV_E_NOT_PROVIDED;
    if (!resource)
        return ORV_E_INVALID_ARGUMENT;
    return type == OrvBasResourceHolder::Exclusive ? resource->AcquireExclusive(timeoutMs)
                                                   : resource->AcquireShared(timeoutMs);
}

} // namespace

OrvBasResourceHolder::OrvBasResourceHolder(OrvBasResource *resource, LockType type, int timeoutMs)
    : resource_(resource), held_(OrvSucceeded(Acquire(resource, type, timeoutMs)))
{
    static_assert(offsetof(OrvBasResourceHolder, held_) == 4);
}

OrvBasResourceHolder::~OrvBasResourceHolder()
{
    Release();
}

OrvResult OrvBasResourceHolder::Lock(OrvBasResource *resource, LockType type, int timeoutMs)
{
    const OrvResult result = Acquire(resource, type, timeoutMs);
    Release();
    resource_ = resource;
    held_ = OrvSucceeded(result);
    return result;
}

void OrvBasResourceHolder::Release()
{
    if (!held_ || !resource_)
        return;
    resource_->Release();
    resource_ = nullptr;
    held_ = false;
}

void OrvBasResourceHolder::DetachWithoutReleasing()
{
    held_ = false;
}

// Critical sections over the native functions. Before Create every other call is refused: on a critical
// section of zeros the platform would wait for ever.

#include "orv/sync/critical_section.h"

#include "nt/nt.h"
#include "orv/runtime/result.h"
#include "runtime/status.h"

namespace
{

RTL_CRITICAL_SECTION *Native(void **storage)
{
    return reinterpret_cast<RTL_CRITICAL_SECTION *>(storage);
}

} // namespace

OrvBasCriticalSection::OrvBasCriticalSection()
{
    static_assert(sizeof native_ == sizeof(RTL_CRITICAL_SECTION));
    static_assert(alignof(decltype(native_)) == alignof(RTL_CRITICAL_SECTION));
    static_assert(offsetof(OrvBasCriticalSection, initialized_) == sizeof(RTL_CRITICAL_SECTION));
}

OrvBasCriticalSection::~OrvBasCriticalSection()
{
    Destroy();
}

OrvResult OrvBasCriticalSection::Create()
{
    if (initialized_)
        return ORV_E_ALREADY_EXISTS;
    const OrvResult result = detail::ResultFromCall(RtlInitializeCriticalSection(Native(native_)));
    initialized_ = OrvSucceeded(result);
    return result;
}

OrvResult OrvBasCriticalSection::Destroy()
{
    if (!initialized_)
        return ORV_S_OK;
    initialized_ = false;
    return detail::ResultFromCall(RtlDeleteCriticalSection(Native(native_)));
}

OrvResult OrvBasCriticalSection::Acquire()
{
    if (!initialized_)
        return ORV_E_INVALID_STATE;
    return detail::ResultFromCall(RtlEnterCriticalSection(Native(native_)));
}

OrvResult OrvBasCriticalSection::Release()
{
    if (!initialized_)
        return ORV_E_INVALID_STATE;
    return detail::ResultFromCall(RtlLeaveCriticalSection(Native(native_)));
}

// The load-time entry of orvsys.dll.

#include "nt/nt.h"
#include "orv/runtime/result.h"
#include "runtime/startup.h"

namespace
{

enum Reason : ULONG { kProcessDetach, kProcessAttach, kThreadAttach, kThreadDetach };

/// There are no static objects that would have to be made and ended: the build refuses them.
constexpr detail::RuntimeWork kRuntime = {[] { return ORV_S_OK; }, [] {}, [] {}, [] {}, [] {}};

} // namespace

extern "C" BOOL NTAPI OrvSysEntry(PVOID, ULONG reason, PVOID)
{
    switch (reason) {
    case kProcessAttach:
        return OrvSucceeded(detail::AttachProcess(kRuntime));
    case kThreadAttach:
        detail::AttachThread(kRuntime);
        break;
    case kThreadDetach:
        detail::DetachThread(kRuntime);
        break;
    case kProcessDetach:
        detail::DetachProcess(kRuntime);
        break;
    default:
        break;
    }
    return true;
}

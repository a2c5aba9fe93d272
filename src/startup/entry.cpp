// The load-time entry of orvsys.dll.

#include "nt/nt.h"
#include "orv/runtime/result.h"
#include "runtime/entropy.h"
#include "startup/startup.h"

extern "C" uintptr_t __security_cookie;

namespace
{

enum Reason : ULONG { kProcessDetach, kProcessAttach, kThreadAttach, kThreadDetach };

/// There are no static objects that would have to be made and ended: the build refuses them.
constexpr detail::RuntimeWork kRuntime = {[]() -> OrvResult { return ORV_S_OK; }, [] {}, [] {}, [] {}, [] {}};

/// A stack cookie that nobody can foresee. The loaders of older systems make theirs of clocks and counters,
/// or leave the one of the file.
__declspec(noinline) uintptr_t DrawCookie()
{
    uintptr_t cookie = 0;
    detail::FillWithEntropy(&cookie, sizeof cookie);
    return cookie;
}

} // namespace

// `isProcess` is not null when the library is attached with its process, not to one that runs, and when it is
// detached because the process ends. Without a cookie of its own, which would not be the same at its end.
extern "C" __attribute__((no_stack_protector)) BOOL NTAPI OrvSysEntry(PVOID, ULONG reason, PVOID isProcess)
{
    switch (reason) {
    case kProcessAttach:
        __security_cookie = DrawCookie();
        return OrvSucceeded(detail::AttachProcess(kRuntime));
    case kThreadAttach:
        detail::AttachThread(kRuntime);
        break;
    case kThreadDetach:
        detail::DetachThread(kRuntime);
        break;
    case kProcessDetach:
        detail::DetachProcess(kRuntime, isProcess ? detail::Detaching::kProcess : detail::Detaching::kModule);
        break;
    default:
        break;
    }
    return true;
}

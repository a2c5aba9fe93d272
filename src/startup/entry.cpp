// The load-time entry of orvsys.dll.

#include "nt/nt.h"
#include "orv/runtime/result.h"
#include "runtime/entropy.h"
#include "startup/startup.h"

extern "C" uintptr_t __security_cookie;

namespace
{

enum Reason : ULONG { kProcessDetach, kProcessAttach, kThreadAttach, kThreadDetach };

/// The runtime has nothing to do here: the build refuses static objects that need construction or
/// destruction.
constexpr detail::RuntimeWork kRuntime = {[]() -> OrvResult { return ORV_S_OK; }, [] {}, [] {}, [] {}, [] {}};

/// Draws a stack cookie that cannot be predicted. The loaders of older systems make the cookie from clocks
/// and counters, or leave the one in the file.
__declspec(noinline) uintptr_t DrawCookie()
{
    uintptr_t cookie = 0;
    detail::FillWithEntropy(&cookie, sizeof cookie);
    return cookie;
}

} // namespace

// On attaching, `isProcess` is not null if the process is starting, and null if it already runs. On detaching
// it is not null if the process ends. The function itself has no stack cookie, because it changes the cookie.
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

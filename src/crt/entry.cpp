// The load-time entry of orvsys.dll.

#include "nt/nt.h"
#include "runtime/startup.h"

namespace
{

constexpr ULONG kProcessAttach = 1;

} // namespace

extern "C" BOOL NTAPI OrvSysEntry(PVOID, ULONG reason, PVOID)
{
    if (reason != kProcessAttach)
        return true;
    return OrvSucceeded(detail::AttachProcess());
}

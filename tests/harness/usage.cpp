// Counting handles and heap blocks under the native interface.

#include "harness/usage.h"

#include "nt/programs.h"
#include "nt/teb.h"

namespace
{

struct {
    ULONG count;
    SYSTEM_HANDLE_TABLE_ENTRY_INFO entries[0x20000];
} handles; // of all processes

} // namespace

namespace test
{

Usage CountUsage()
{
    Usage usage = {};
    if (NtQuerySystemInformation(SystemHandleInformation, &handles, sizeof handles, nullptr) < 0)
        __builtin_trap();
    const auto self = reinterpret_cast<uintptr_t>(NtCurrentTeb()->ClientId.UniqueProcess);
    for (ULONG i = 0; i < handles.count; i++)
        usage.handles += handles.entries[i].UniqueProcessId == (self & 0xFFFF);
    RTL_HEAP_WALK_ENTRY entry = {};
    while (RtlWalkHeap(NtCurrentPeb()->ProcessHeap, &entry) >= 0) {
        if (entry.Flags & RTL_HEAP_BUSY)
            usage.blocks++;
    }
    return usage;
}

} // namespace test

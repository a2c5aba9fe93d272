// The pages of guarded arrays, and the heap that refuses to allocate, on the native interface.

#include "harness/memory.h"

#include "nt/programs.h"
#include "nt/teb.h"

namespace test
{

uint8_t *ReserveAddresses(size_t size)
{
    PVOID base = nullptr;
    ULONG reserved = size;
    if (NtAllocateVirtualMemory(NtCurrentProcess(), &base, 0, &reserved, MEM_RESERVE, PAGE_READWRITE) < 0)
        __builtin_trap();
    return static_cast<uint8_t *>(base);
}

void MapPages(uint8_t *first, size_t size)
{
    PVOID base = first;
    ULONG mapped = size;
    if (NtAllocateVirtualMemory(NtCurrentProcess(), &base, 0, &mapped, MEM_COMMIT, PAGE_READWRITE) < 0)
        __builtin_trap();
}

RefusingHeap::RefusingHeap()
{
    // A heap that cannot grow, then filled to the last byte.
    PEB *const peb = NtCurrentPeb();
    processHeap_ = peb->ProcessHeap;
    smallHeap_ = RtlCreateHeap(0, nullptr, 0x10000, 0x10000, nullptr, nullptr);
    if (!smallHeap_)
        __builtin_trap();
    for (size_t size = 0x8000; size; size /= 2) {
        while (RtlAllocateHeap(smallHeap_, 0, size)) {
        }
    }
    peb->ProcessHeap = smallHeap_;
}

RefusingHeap::~RefusingHeap()
{
    NtCurrentPeb()->ProcessHeap = processHeap_;
    RtlDestroyHeap(smallHeap_);
}

} // namespace test

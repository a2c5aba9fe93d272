// Guarded arrays and the refusing heap, under the native interface.

#include "harness/memory.h"

#include "nt/programs.h"
#include "nt/teb.h"

namespace test
{

void *AllocateBeforeGuard(size_t size)
{
    constexpr size_t kPage = 0x1000;
    const size_t pages = (size + kPage - 1) / kPage * kPage;
    PVOID base = nullptr;
    ULONG reserved = pages + kPage;
    if (NtAllocateVirtualMemory(NtCurrentProcess(), &base, 0, &reserved, MEM_RESERVE | MEM_COMMIT,
                                PAGE_READWRITE) < 0)
        __builtin_trap();
    auto *const end = static_cast<uint8_t *>(base) + pages;
    PVOID guard = end;
    ULONG guardSize = kPage;
    ULONG oldProtection = 0;
    if (NtProtectVirtualMemory(NtCurrentProcess(), &guard, &guardSize, PAGE_NOACCESS, &oldProtection) < 0)
        __builtin_trap();
    return end - size;
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

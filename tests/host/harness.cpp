// The harness on the host: entry, output, guarded arrays, and the heap that refuses.

#include "harness/memory.h"
#include "harness/program.h"

#include <stdio.h>
#include <sys/mman.h>

extern bool hostHeapRefuses;

void program::Print(const char *text)
{
    fputs(text, stdout);
    fflush(stdout); // a sanitizer ends the process without flushing
}

int main(int count, char **arguments)
{
    return program::Main(static_cast<uint32_t>(count - 1), arguments + 1);
}

namespace test
{

void *AllocateBeforeGuard(size_t size)
{
    constexpr size_t kPage = 0x1000;
    const size_t pages = (size + kPage - 1) / kPage * kPage;
    void *const base =
        mmap(nullptr, pages + kPage, PROT_READ | PROT_WRITE, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0);
    if (base == MAP_FAILED || mprotect(static_cast<char *>(base) + pages, kPage, PROT_NONE) != 0)
        __builtin_trap();
    return static_cast<char *>(base) + pages - size;
}

RefusingHeap::RefusingHeap() : processHeap_(nullptr), smallHeap_(nullptr)
{
    hostHeapRefuses = true;
}

RefusingHeap::~RefusingHeap()
{
    hostHeapRefuses = false;
}

} // namespace test

// The harness on the host: entry, output, pages for guarded arrays, and the heap that refuses.

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

uint8_t *ReserveAddresses(size_t size)
{
    void *const base = mmap(nullptr, size, PROT_NONE, MAP_PRIVATE | MAP_ANONYMOUS | MAP_NORESERVE, -1, 0);
    if (base == MAP_FAILED)
        __builtin_trap();
    return static_cast<uint8_t *>(base);
}

void MapPages(uint8_t *first, size_t size)
{
    if (mprotect(first, size, PROT_READ | PROT_WRITE) != 0)
        __builtin_trap();
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

// C functions for the C libraries inside orvsys.dll (there is no C runtime): memory from the process heap,
// and a trap for faults that they say cannot happen. The headers that they include are in crt/include and
// declare only what they use.

#include "crt/memory.h"
#include "runtime/heap.h"

extern "C" {

void *__cdecl malloc(size_t size)
{
    return detail::AllocateBytes(size);
}

void __cdecl free(void *block)
{
    detail::FreeBytes(block);
}

void *__cdecl realloc(void *block, size_t size)
{
    return detail::ReallocateBytes(block, size);
}

/// libbzip2 calls this when it finds its own state inconsistent.
void bz_internal_error(int)
{
    __builtin_trap();
}

} // extern "C"

// What the C libraries inside orvsys.dll find where there is no C library: memory from the process heap, and
// an end for faults that they say cannot happen. Their headers stand in crt/include, and hold no more than
// they use.

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

/// libbzip2 calls this where its own state contradicts itself.
void bz_internal_error(int)
{
    __builtin_trap();
}

} // extern "C"

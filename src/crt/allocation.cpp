// new and delete, by the process heap. The DLL has this file, and so has orvstart.lib.
//
// A `new` that cannot fail for its caller is all that a program without exceptions may have: the compiler
// takes the result for an object. So a heap that refuses ends the process here, at a trap; what is to go on
// without memory allocates through the library, whose objects and buffers report ORV_E_OUT_OF_MEMORY.

#include "runtime/heap.h"

void *operator new(size_t size)
{
    void *const block = detail::AllocateBytes(size);
    if (!block)
        __builtin_trap();
    return block;
}

void *operator new[](size_t size)
{
    return operator new(size);
}

void operator delete(void *block) noexcept
{
    detail::FreeBytes(block);
}

void operator delete(void *block, size_t) noexcept
{
    detail::FreeBytes(block);
}

void operator delete[](void *block) noexcept
{
    detail::FreeBytes(block);
}

void operator delete[](void *block, size_t) noexcept
{
    detail::FreeBytes(block);
}

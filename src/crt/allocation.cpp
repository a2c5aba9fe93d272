// new and delete on the process heap. This file is part of the DLL and of orvstart.lib.
//
// Without exceptions `new` cannot report a failure: the compiler takes its result for an object. So when the
// heap refuses, the process ends here, at a trap. Code that must go on without memory allocates through the
// library, whose objects and buffers report ORV_E_OUT_OF_MEMORY.

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

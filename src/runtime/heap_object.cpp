// The allocation of objects on the process heap.

#include "orv/runtime/heap_object.h"

#include "runtime/heap.h"

void *OrvHeapObject::operator new(size_t size) noexcept
{
    return detail::AllocateBytes(size);
}

void OrvHeapObject::operator delete(void *block) noexcept
{
    detail::FreeBytes(block);
}

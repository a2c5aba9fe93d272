// The base of objects with a virtual destructor, which live on the process heap.

#pragma once

#include <stddef.h>

#include "orv/base.h"

/// Puts objects made with `new` on the process heap, whichever module makes or deletes them: the virtual
/// destructor, which runs in the library, frees what the caller allocated. `new` returns null when the heap
/// refuses. There is no array form, because the virtual destructor frees one object. Adds no field.
class OrvHeapObject
{
public:
    /// Allocates on the process heap; null when the heap refuses.
    ORV_API static void *operator new(size_t size) noexcept;

    /// Uses the memory that the caller gives.
    static void *operator new(size_t, void *place) noexcept { return place; }
    static void *operator new[](size_t size) = delete;

    /// Frees to the process heap. Null is allowed.
    ORV_API static void operator delete(void *block) noexcept;

    /// Belongs to the placement `new`; does nothing.
    static void operator delete(void *, void *) noexcept {}
};

// Where objects with a virtual destructor live.

#pragma once

#include <stddef.h>

#include "orv/base.h"

/// Puts objects made with `new` on the process heap, whichever module makes or deletes them: the virtual
/// destructor, which runs in the library, frees what the caller allocated. `new` gives null when the heap
/// refuses. There is no array form, because the virtual destructor frees one object. Adds no field.
class OrvHeapObject
{
public:
    /// On the process heap; null when that refuses.
    ORV_API static void *operator new(size_t size) noexcept;

    /// Where the caller wants it.
    static void *operator new(size_t, void *place) noexcept { return place; }
    static void *operator new[](size_t size) = delete;

    /// Back to the process heap. Null is allowed.
    ORV_API static void operator delete(void *block) noexcept;

    /// Of the other `new`: does nothing.
    static void operator delete(void *, void *) noexcept {}
};

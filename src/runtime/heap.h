// The process heap: the one source of memory, and the one owner type for a block of it.

#pragma once

#include "nt/nt.h"
#include "nt/teb.h"

namespace detail
{

/// Returns null when the heap refuses.
inline void *AllocateBytes(size_t size)
{
    return RtlAllocateHeap(NtCurrentPeb()->ProcessHeap, 0, size);
}

/// `block` may be null.
inline void FreeBytes(void *block)
{
    if (block)
        RtlFreeHeap(NtCurrentPeb()->ProcessHeap, 0, block);
}

/// Returns null when the heap refuses; the old block stays. Allocates a new block when `block` is null.
inline void *ReallocateBytes(void *block, size_t size)
{
    return block ? RtlReAllocateHeap(NtCurrentPeb()->ProcessHeap, 0, block, size) : AllocateBytes(size);
}

/// Owns an array of a plain type on the process heap.
template <typename T>
class HeapArray
{
public:
    HeapArray() = default;
    explicit HeapArray(T *elements) : elements_(elements) {}
    HeapArray(const HeapArray &) = delete;
    HeapArray &operator=(const HeapArray &) = delete;
    ~HeapArray() { FreeBytes(elements_); }

    /// An array of `count` elements, not initialised. Empty when the heap refuses or the size overflows.
    static HeapArray Allocate(uint32_t count)
    {
        if (count > SIZE_MAX / sizeof(T))
            return HeapArray();
        return HeapArray(static_cast<T *>(AllocateBytes(count * sizeof(T))));
    }

    explicit operator bool() const { return elements_ != nullptr; }
    T *Get() const { return elements_; }

    /// Frees the present array and owns another.
    void Reset(T *elements)
    {
        FreeBytes(elements_);
        elements_ = elements;
    }

    /// Passes the ownership of the array to the caller.
    T *Detach()
    {
        T *elements = elements_;
        elements_ = nullptr;
        return elements;
    }

private:
    T *elements_ = nullptr;
};

} // namespace detail

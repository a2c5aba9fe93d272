// The one array type for the data of a single call: on the stack while it is small, on the heap otherwise. A
// call whose data have an ordinary size allocates nothing.

#pragma once

#include "crt/memory.h"
#include "runtime/heap.h"

namespace detail
{

/// Room for elements of a plain type, not initialised. The object itself has room for `kSmall` elements.
/// Capacities only grow. Cannot be moved, because the elements may be inside the object.
template <typename T, uint32_t kSmall>
class SmallArray
{
public:
    SmallArray() = default;
    SmallArray(const SmallArray &) = delete;
    SmallArray &operator=(const SmallArray &) = delete;

    T *Get() { return large_ ? large_.Get() : small_; }
    const T *Get() const { return large_ ? large_.Get() : small_; }
    uint32_t Capacity() const { return capacity_; }

    /// Makes room for `capacity` elements. If there was less room, the present elements are lost. False when
    /// the heap refuses: nothing is changed.
    bool Reserve(uint32_t capacity) { return Grow(capacity, 0); }

    /// The same, but the first `kept` elements are kept.
    bool ReserveKeeping(uint32_t capacity, uint32_t kept) { return Grow(capacity, kept); }

private:
    bool Grow(uint32_t capacity, uint32_t kept)
    {
        if (capacity <= capacity_)
            return true;
        HeapArray<T> grown = HeapArray<T>::Allocate(capacity);
        if (!grown)
            return false;
        if (kept)
            memcpy(grown.Get(), Get(), kept * sizeof(T));
        large_.Reset(grown.Detach());
        capacity_ = capacity;
        return true;
    }

    alignas(8) T small_[kSmall];
    HeapArray<T> large_;
    uint32_t capacity_ = kSmall;
};

} // namespace detail

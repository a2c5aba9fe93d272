// Memory on purpose hostile: arrays that end at an unmapped page, and a process heap that refuses.

#pragma once

#include <stddef.h>
#include <stdint.h>

namespace test
{

/// `size` bytes of zeros; the byte behind them cannot be touched. Never freed: tests are short.
void *AllocateBeforeGuard(size_t size);

/// An array that ends just before an unmapped page, so that reading or writing one element too far crashes.
template <typename T>
T *GuardedArray(uint32_t count)
{
    return static_cast<T *>(AllocateBeforeGuard(count * sizeof(T)));
}

/// A copy of the first `count` elements of `source`, ending just before an unmapped page.
template <typename T>
T *GuardedCopy(const T *source, uint32_t count)
{
    T *copy = GuardedArray<T>(count);
    for (uint32_t i = 0; i < count; i++)
        copy[i] = source[i];
    return copy;
}

/// While it lives, the process heap refuses every allocation. Blocks that were
/// allocated before may not be freed meanwhile, nor blocks allocated meanwhile be freed afterwards.
class RefusingHeap
{
public:
    RefusingHeap();
    RefusingHeap(const RefusingHeap &) = delete;
    RefusingHeap &operator=(const RefusingHeap &) = delete;
    ~RefusingHeap();

private:
    void *processHeap_;
    void *smallHeap_;
};

} // namespace test

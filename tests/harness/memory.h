// Memory that reveals faults: arrays at the edge of an unmapped page, and a process heap that refuses to allocate.

#pragma once

#include <stddef.h>
#include <stdint.h>

namespace test
{

/// Which edge of an array is an unmapped page's.
enum class Edge { kEnd, kStart };

/// Where arrays stand at the moment. The harness runs every case that asks once more, for the other edge, so
/// that each overrun crashes in one of the two runs, behind the array or before it.
Edge GuardedEdge();

/// `size` bytes of zeros at that edge. Never freed: tests are short.
void *AllocateGuarded(size_t size);

/// An array at an unmapped page, so that reading or writing one element too far crashes.
template <typename T>
T *GuardedArray(uint32_t count)
{
    return static_cast<T *>(AllocateGuarded(count * sizeof(T)));
}

/// A copy of the first `count` elements of `source` at an unmapped page.
template <typename T>
T *GuardedCopy(const T *source, uint32_t count)
{
    T *copy = GuardedArray<T>(count);
    for (uint32_t i = 0; i < count; i++)
        copy[i] = source[i];
    return copy;
}

constexpr uint32_t kSlacks = 17; ///< bytes between an array and the unmapped page: every alignment

/// Pages between two unmapped ones, for arrays that come and go. They may stand at odd addresses.
class GuardedPages
{
public:
    explicit GuardedPages(uint32_t leastSize = 0x1000)
        : size_((leastSize + 0xFFF) & ~0xFFFu), bytes_(GuardedArray<uint8_t>(size_))
    {
    }

    /// Where `count` elements stand `slack` bytes from the unmapped page.
    template <typename T>
    T *Place(uint32_t count, uint32_t slack = 0)
    {
        return reinterpret_cast<T *>(
            bytes_ + (GuardedEdge() == Edge::kStart ? slack : size_ - slack - count * sizeof(T)));
    }

    /// A copy of elements, at such a place.
    template <typename T>
    T *Copy(const T *source, uint32_t count, uint32_t slack = 0)
    {
        uint8_t *const copy = Place<uint8_t>(count * sizeof(T), slack);
        __builtin_memcpy(copy, source, count * sizeof(T));
        return reinterpret_cast<T *>(copy);
    }

    void Fill(uint8_t byte) { __builtin_memset(bytes_, byte, size_); }

private:
    uint32_t size_;
    uint8_t *bytes_;
};

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

// Of the platform, or of the host: addresses that cannot be touched, and making some of them memory. Both end
// the program when there are none left.

uint8_t *ReserveAddresses(size_t size);
void MapPages(uint8_t *first, size_t size);

} // namespace test

// Runs of units that mean the same in two encodings, so that they are carried over a vector at a time: ASCII
// among UTF-8, Latin-1 and UTF-16, and bytes of Latin-1 to and from UTF-16.
//
// A run ends at the first unit that is not below the limit, 0x80 or 0x100. A store may write past the run,
// but never past the count that it was given. Each function has its twin in `plain`, which serves what is
// shorter than a vector; the tests hold both to the same answers. Units are uint8_t or wchar_t.

#pragma once

#include "text/vector.h"

namespace detail
{

namespace plain
{

/// Copies a run of at most `count` units; gives its length.
template <uint32_t kLimit, typename Source, typename Target>
uint32_t CopyRun(const Source *source, Target *target, uint32_t count)
{
    uint32_t at = 0;
    for (; at < count; at++) {
        const uint32_t unit = LoadUnit(source + at);
        if (unit >= kLimit)
            break;
        StoreUnit(target + at, static_cast<Target>(unit));
    }
    return at;
}

/// The length of a run of at most `count` units.
template <uint32_t kLimit, typename Source>
uint32_t CountRun(const Source *source, uint32_t count)
{
    uint32_t at = 0;
    while (at < count && LoadUnit(source + at) < kLimit)
        at++;
    return at;
}

} // namespace plain

/// Sixteen units of a text: one vector of bytes, two of UTF-16.
template <typename T>
struct UnitBlock;

template <>
struct UnitBlock<uint8_t> {
    __m128i bytes;

    explicit UnitBlock(const uint8_t *at) : bytes(LoadVector(at)) {}

    /// One bit for each unit that is not below the limit.
    template <uint32_t kLimit>
    uint32_t EndsOfRun() const
    {
        return kLimit == 0x80 ? BitsOf(bytes) : 0;
    }

    __m128i AsBytes() const { return bytes; }
    __m128i FirstUnits() const { return _mm_unpacklo_epi8(bytes, _mm_setzero_si128()); }
    __m128i LastUnits() const { return _mm_unpackhi_epi8(bytes, _mm_setzero_si128()); }
};

template <>
struct UnitBlock<wchar_t> {
    __m128i first;
    __m128i last;

    explicit UnitBlock(const wchar_t *at) : first(LoadVector(at)), last(LoadVector(at + kLanes<wchar_t>)) {}

    template <uint32_t kLimit>
    uint32_t EndsOfRun() const
    {
        const __m128i high = _mm_set1_epi16(static_cast<short>(~(kLimit - 1)));
        const auto below = [high](__m128i units) {
            return EqualUnits<wchar_t>(_mm_and_si128(units, high), _mm_setzero_si128());
        };
        return BitsOf(_mm_packs_epi16(below(first), below(last))) ^ 0xFFFF;
    }

    __m128i AsBytes() const { return _mm_packus_epi16(first, last); }
    __m128i FirstUnits() const { return first; }
    __m128i LastUnits() const { return last; }
};

constexpr uint32_t kBlockUnits = 16;

template <typename Source>
void StoreBlock(uint8_t *target, const UnitBlock<Source> &block)
{
    StoreVector(target, block.AsBytes());
}

template <typename Source>
void StoreBlock(wchar_t *target, const UnitBlock<Source> &block)
{
    StoreVector(target, block.FirstUnits());
    StoreVector(target + kLanes<wchar_t>, block.LastUnits());
}

template <uint32_t kLimit, typename Source, typename Target>
uint32_t CopyRun(const Source *source, Target *target, uint32_t count)
{
    uint32_t at = 0;
    for (; count - at >= kBlockUnits; at += kBlockUnits) {
        const UnitBlock<Source> block(source + at);
        StoreBlock(target + at, block);
        if (const uint32_t ends = block.template EndsOfRun<kLimit>())
            return at + static_cast<uint32_t>(__builtin_ctz(ends));
    }
    return at + plain::CopyRun<kLimit>(source + at, target + at, count - at);
}

template <uint32_t kLimit, typename Source>
uint32_t CountRun(const Source *source, uint32_t count)
{
    uint32_t at = 0;
    for (; count - at >= kBlockUnits; at += kBlockUnits) {
        if (const uint32_t ends = UnitBlock<Source>(source + at).template EndsOfRun<kLimit>())
            return at + static_cast<uint32_t>(__builtin_ctz(ends));
    }
    return at + plain::CountRun<kLimit>(source + at, count - at);
}

} // namespace detail

// Counts and copies runs of units that mean the same in two encodings, a vector at a time: ASCII between
// UTF-8, Latin-1 and UTF-16, and all of Latin-1 to and from UTF-16.
//
// A run ends at the first unit that is not below the limit, 0x80 or 0x100. Units are uint8_t or wchar_t, at
// any address. A function that takes a count reads and writes no unit beyond it.

#pragma once

#include "text/vector.h"

namespace detail
{

namespace plain
{

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

/// A block of 8 or 16 units of a text, held in one or two vectors.
template <typename T, uint32_t kUnits>
struct UnitBlock;

template <>
struct UnitBlock<uint8_t, 8> {
    __m128i bytes;

    explicit UnitBlock(const uint8_t *at) : bytes(_mm_loadl_epi64(reinterpret_cast<const __m128i *>(at))) {}

    /// One bit for each unit that is not below the limit.
    template <uint32_t kLimit>
    uint32_t EndsOfRun() const
    {
        return kLimit == 0x80 ? BitsOf(bytes) : 0;
    }

    void Store(uint8_t *target) const { _mm_storel_epi64(reinterpret_cast<__m128i *>(target), bytes); }
    void Store(wchar_t *target) const { StoreVector(target, _mm_unpacklo_epi8(bytes, _mm_setzero_si128())); }
};

template <>
struct UnitBlock<uint8_t, 16> {
    __m128i bytes;

    explicit UnitBlock(const uint8_t *at) : bytes(LoadVector(at)) {}

    template <uint32_t kLimit>
    uint32_t EndsOfRun() const
    {
        return kLimit == 0x80 ? BitsOf(bytes) : 0;
    }

    void Store(uint8_t *target) const { StoreVector(target, bytes); }
    void Store(wchar_t *target) const
    {
        StoreVector(target, _mm_unpacklo_epi8(bytes, _mm_setzero_si128()));
        StoreVector(target + kLanes<wchar_t>, _mm_unpackhi_epi8(bytes, _mm_setzero_si128()));
    }
};

/// A mask with all bits set of the units that are below the limit.
template <uint32_t kLimit>
__m128i UnitsBelow(__m128i units)
{
    const __m128i high = _mm_set1_epi16(static_cast<short>(~(kLimit - 1)));
    return EqualUnits<wchar_t>(_mm_and_si128(units, high), _mm_setzero_si128());
}

template <>
struct UnitBlock<wchar_t, 8> {
    __m128i units;

    explicit UnitBlock(const wchar_t *at) : units(LoadVector(at)) {}

    template <uint32_t kLimit>
    uint32_t EndsOfRun() const
    {
        return BitsOf(_mm_packs_epi16(UnitsBelow<kLimit>(units), _mm_set1_epi8(-1))) ^ 0xFFFF;
    }

    void Store(uint8_t *target) const
    {
        _mm_storel_epi64(reinterpret_cast<__m128i *>(target), _mm_packus_epi16(units, units));
    }
};

template <>
struct UnitBlock<wchar_t, 16> {
    __m128i first;
    __m128i last;

    explicit UnitBlock(const wchar_t *at) : first(LoadVector(at)), last(LoadVector(at + kLanes<wchar_t>)) {}

    template <uint32_t kLimit>
    uint32_t EndsOfRun() const
    {
        return BitsOf(_mm_packs_epi16(UnitsBelow<kLimit>(first), UnitsBelow<kLimit>(last))) ^ 0xFFFF;
    }

    void Store(uint8_t *target) const { StoreVector(target, _mm_packus_epi16(first, last)); }
};

/// Copies the whole blocks of a run within `count` units. Returns the number of units copied.
template <uint32_t kLimit, typename Source, typename Target>
__declspec(noinline) uint32_t CopyBlocks(const Source *source, Target *target, uint32_t count)
{
    constexpr uint32_t kUnits = 16;
    uint32_t at = 0;
    for (; count - at >= kUnits; at += kUnits) {
        const UnitBlock<Source, kUnits> block(source + at);
        if (block.template EndsOfRun<kLimit>())
            break;
        block.Store(target + at);
    }
    return at;
}

/// The length of a run of at most `count` units.
template <uint32_t kLimit, typename Source>
uint32_t CountRun(const Source *source, uint32_t count)
{
    constexpr uint32_t kUnits = 16;
    uint32_t at = 0;
    for (; count - at >= kUnits; at += kUnits) {
        if (const uint32_t ends = UnitBlock<Source, kUnits>(source + at).template EndsOfRun<kLimit>())
            return at + static_cast<uint32_t>(__builtin_ctz(ends));
    }
    return at + plain::CountRun<kLimit>(source + at, count - at);
}

} // namespace detail

// Converts runs of UTF-16 beyond ASCII to UTF-8 without a decision for each unit: units below 0x800 eight at
// a time; other code points of one unit without checking for the end of text or room each time.

#pragma once

#include "text/utf16.h"
#include "text/utf8.h"

namespace detail
{

namespace plain
{

/// Writes two bytes for each unit of a run of at most eight units from 0x80 to 0x7FF. Returns the length of
/// the run.
inline uint32_t EncodeTwoByteUnits(const wchar_t *from, uint8_t *to)
{
    uint32_t at = 0;
    for (; at < kBlockUnits; at++) {
        const uint32_t unit = LoadUnit(from + at);
        if (unit < 0x80 || unit >= 0x800)
            break;
        StoreUnit(reinterpret_cast<uint16_t *>(to) + at,
                  static_cast<uint16_t>(0x80C0 | unit >> 6 | (unit & 0x3F) << 8));
    }
    return at;
}

} // namespace plain

/// The same with vectors. It always reads eight units and writes sixteen bytes.
inline uint32_t EncodeTwoByteUnits(const wchar_t *from, uint8_t *to)
{
    const __m128i units = LoadVector(from);
    const __m128i lead = _mm_srli_epi16(units, 6);
    const __m128i continuation = _mm_slli_epi16(_mm_and_si128(units, _mm_set1_epi16(0x3F)), 8);
    StoreVector(to,
                _mm_or_si128(_mm_or_si128(lead, continuation), _mm_set1_epi16(static_cast<short>(0x80C0))));
    // A unit is in the run exactly if the unit minus 0x80, unsigned, is at most 0x77F.
    const __m128i offset = _mm_sub_epi16(units, _mm_set1_epi16(0x80));
    const __m128i within =
        _mm_cmpeq_epi16(_mm_subs_epu16(offset, _mm_set1_epi16(0x77F)), _mm_setzero_si128());
    return static_cast<uint32_t>(__builtin_ctz(~BitsOf(within))) / sizeof(wchar_t);
}

template <>
struct RunEncoder<Utf16, Utf8> {
    static bool Encode(const wchar_t *&from, const wchar_t *fromEnd, uint8_t *&to, const uint8_t *toEnd)
    {
        const wchar_t *const start = from;
        const uint32_t left = UnitsBetween(from, fromEnd);
        const uint32_t fitting = UnitsBetween<uint8_t>(to, toEnd) / Utf8::kLongest;
        for (uint32_t count = left < fitting ? left : fitting; count;) {
            const uint32_t unit = LoadUnit(from);
            if (unit < 0x80 || IsSurrogate(unit))
                break;
            // For a single such unit, like an accented letter within a word, a block does not pay.
            if (unit < 0x800 && count >= kBlockUnits && LoadUnit(from + 1) >= 0x80) {
                const uint32_t run = EncodeTwoByteUnits(from, to);
                from += run;
                to += 2 * run;
                count -= run;
                continue;
            }
            to = Utf8::Encode(to, unit);
            from++;
            count--;
        }
        return from != start;
    }
};

} // namespace detail

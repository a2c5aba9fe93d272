// UTF-16, little-endian, at any address. A surrogate without its other half is malformed.

#pragma once

#include "text/transcode.h"

namespace detail
{

/// The surrogate pair of a code point: the first unit is in the lower 16 bits, the second one in the upper.
constexpr uint32_t SurrogatePair(uint32_t codePoint)
{
    const uint32_t offset = codePoint - kFirstSupplementary;
    return (0xD800 | offset >> 10) | (0xDC00 | (offset & 0x3FF)) << 16;
}

struct Utf16 {
    typedef wchar_t Unit;
    static constexpr uint32_t kPlainLimit = 0x100;
    static constexpr uint32_t kLongest = 2;

    static __forceinline const wchar_t *Decode(const wchar_t *at, uint32_t &codePoint)
    {
        codePoint = LoadUnit(at);
        if (!IsSurrogate(codePoint))
            return at + 1;
        const uint32_t low = LoadUnit(at + 1);
        if (!IsHighSurrogate(codePoint) || !IsLowSurrogate(low))
            return nullptr;
        codePoint = CombineSurrogates(codePoint, low);
        return at + 2;
    }

    static __forceinline wchar_t *Encode(wchar_t *at, uint32_t codePoint)
    {
        if (codePoint < kFirstSupplementary) {
            StoreUnit(at, static_cast<wchar_t>(codePoint));
            return at + 1;
        }
        StoreUnit(reinterpret_cast<uint32_t *>(at), SurrogatePair(codePoint));
        return at + 2;
    }

    static uint32_t Length(uint32_t codePoint) { return codePoint < kFirstSupplementary ? 1 : 2; }
};

} // namespace detail

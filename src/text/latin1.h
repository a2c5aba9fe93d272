// Latin-1: each byte is the code point of the same value. Other code points are written as a question mark.

#pragma once

#include "text/transcode.h"

namespace detail
{

struct Latin1 {
    typedef uint8_t Unit;
    static constexpr uint32_t kPlainLimit = 0x100;
    static constexpr uint32_t kLongest = 1;

    static __forceinline const uint8_t *Decode(const uint8_t *at, uint32_t &codePoint)
    {
        codePoint = *at;
        return at + 1;
    }

    static __forceinline uint8_t *Encode(uint8_t *at, uint32_t codePoint)
    {
        *at = codePoint < kPlainLimit ? static_cast<uint8_t>(codePoint) : uint8_t('?');
        return at + 1;
    }

    static uint32_t Length(uint32_t /*codePoint*/) { return 1; }
};

} // namespace detail

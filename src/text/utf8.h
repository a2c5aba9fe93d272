// UTF-8 (RFC 3629). Only the shortest form of a code point is accepted; surrogates and values above U+10FFFF
// are malformed. So text that was read can always be written again, byte for byte.

#pragma once

#include "text/transcode.h"

namespace detail
{

struct Utf8 {
    typedef uint8_t Unit;
    static constexpr uint32_t kPlainLimit = 0x80;
    static constexpr uint32_t kLongest = 4;

    static __forceinline const uint8_t *Decode(const uint8_t *at, uint32_t &codePoint)
    {
        const uint32_t lead = at[0];
        const uint32_t second = at[1] ^ 0x80u; // below 0x40 for a continuation byte only: its six bits
        if (lead < 0xE0) {
            codePoint = lead < 0x80 ? lead : (lead & 0x1F) << 6 | second;
            if (lead < 0x80)
                return at + 1;
            // A lead below 0xC2 is a continuation byte or starts an overlong form: malformed.
            return lead >= 0xC2 && second < 0x40 ? at + 2 : nullptr;
        }
        const uint32_t third = at[2] ^ 0x80u;
        if (lead < 0xF0) {
            codePoint = (lead & 0x0F) << 12 | second << 6 | third;
            const bool text = (second | third) < 0x40 && codePoint >= 0x800 && !IsSurrogate(codePoint);
            return text ? at + 3 : nullptr;
        }
        const uint32_t fourth = at[3] ^ 0x80u;
        codePoint = (lead & 0x07) << 18 | second << 12 | third << 6 | fourth;
        const bool text = lead < 0xF8 && (second | third | fourth) < 0x40 &&
                          codePoint >= kFirstSupplementary && codePoint <= kLastCodePoint;
        return text ? at + 4 : nullptr;
    }

    static __forceinline uint8_t *Encode(uint8_t *at, uint32_t codePoint)
    {
        // Six bits of the code point from bit `from` on, shifted to the place of their byte.
        const auto bits = [codePoint](uint32_t from, uint32_t byte) {
            return (codePoint >> from & 0x3F) << 8 * byte;
        };
        const auto store = [at](uint32_t bytes) { StoreUnit(reinterpret_cast<uint32_t *>(at), bytes); };
        if (codePoint < 0x80) {
            *at = static_cast<uint8_t>(codePoint);
            return at + 1;
        }
        if (codePoint < 0x800) {
            store(0x80C0 | codePoint >> 6 | bits(0, 1));
            return at + 2;
        }
        if (codePoint < kFirstSupplementary) {
            store(0x8080E0 | codePoint >> 12 | bits(6, 1) | bits(0, 2));
            return at + 3;
        }
        store(0x808080F0 | codePoint >> 18 | bits(12, 1) | bits(6, 2) | bits(0, 3));
        return at + 4;
    }

    static uint32_t Length(uint32_t codePoint)
    {
        return 1u + (codePoint >= 0x80) + (codePoint >= 0x800) + (codePoint >= kFirstSupplementary);
    }
};

} // namespace detail

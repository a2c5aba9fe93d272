// UTF-8 (RFC 3629). Only the shortest form of a code point is text, surrogates and values above U+10FFFF are
// not: what is read can always be written again, byte for byte.

#pragma once

#include "text/transcode.h"

namespace detail
{

class Utf8Reader
{
public:
    static constexpr uint32_t kPlainLimit = 0x80;

    Utf8Reader(const uint8_t *bytes, uint32_t size) : source_(bytes, size) {}

    SourceUnits<uint8_t> &Source() { return source_; }

    ReadStep Read(uint32_t &codePoint)
    {
        if (source_.Left() == 0)
            return ReadStep::kEnd;
        const uint32_t lead = source_.Peek();
        if (lead < 0x80) {
            codePoint = lead;
            source_.Skip(1);
            return ReadStep::kCodePoint;
        }
        if (lead < 0xC2) // a continuation byte, or the lead of an overlong form
            return ReadStep::kMalformed;
        if (lead < 0xE0)
            return ReadSequence<2>(lead & 0x1F, codePoint);
        if (lead < 0xF0) {
            const ReadStep step = ReadSequence<3>(lead & 0x0F, codePoint);
            return codePoint < 0x800 || IsSurrogate(codePoint) ? ReadStep::kMalformed : step;
        }
        if (lead > 0xF4)
            return ReadStep::kMalformed;
        const ReadStep step = ReadSequence<4>(lead & 0x07, codePoint);
        return codePoint < kFirstSupplementary || codePoint > kLastCodePoint ? ReadStep::kMalformed : step;
    }

private:
    template <uint32_t kLength>
    ReadStep ReadSequence(uint32_t value, uint32_t &codePoint)
    {
        if (source_.Left() < kLength)
            return ReadStep::kMalformed;
        uint32_t faults = 0;
        for (uint32_t i = 1; i < kLength; i++) {
            const uint32_t continuation = source_.Peek(i) ^ 0x80;
            faults |= continuation;
            value = value << 6 | (continuation & 0x3F);
        }
        codePoint = value;
        if (faults > 0x3F)
            return ReadStep::kMalformed;
        source_.Skip(kLength);
        return ReadStep::kCodePoint;
    }

    SourceUnits<uint8_t> source_;
};

template <template <typename> class TargetOf>
class Utf8Writer
{
public:
    static constexpr uint32_t kPlainLimit = 0x80;

    explicit Utf8Writer(const TargetOf<uint8_t> &target) : target_(target) {}

    TargetOf<uint8_t> &Target() { return target_; }

    bool Put(uint32_t codePoint)
    {
        // Bits 6 to 11 and so on, where the byte that carries them stands.
        const auto bits = [codePoint](uint32_t from, uint32_t byte) {
            return (codePoint >> from & 0x3F) << 8 * byte;
        };
        if (codePoint < 0x80)
            return target_.Append(codePoint, 1);
        if (codePoint < 0x800)
            return target_.Append(0x80C0 | codePoint >> 6 | bits(0, 1), 2);
        if (codePoint < kFirstSupplementary)
            return target_.Append(0x8080E0 | codePoint >> 12 | bits(6, 1) | bits(0, 2), 3);
        return target_.Append(0x808080F0 | codePoint >> 18 | bits(12, 1) | bits(6, 2) | bits(0, 3), 4);
    }

    bool Finish() { return true; }

private:
    TargetOf<uint8_t> target_;
};

} // namespace detail

// UTF-16, little-endian, in bytes that may stand at any address. A surrogate without its other half, and half
// a unit at the end, are no text.

#pragma once

#include "text/transcode.h"

namespace detail
{

class Utf16Reader
{
public:
    static constexpr uint32_t kPlainLimit = 0x100;

    Utf16Reader(const uint8_t *bytes, uint32_t size)
        : source_(bytes, size), halfUnit_(size % sizeof(wchar_t) != 0)
    {
    }

    SourceUnits<wchar_t> &Source() { return source_; }

    ReadStep Read(uint32_t &codePoint)
    {
        if (source_.Left() == 0)
            return halfUnit_ ? ReadStep::kMalformed : ReadStep::kEnd;
        const uint32_t unit = source_.Peek();
        if (!IsSurrogate(unit)) {
            codePoint = unit;
            source_.Skip(1);
            return ReadStep::kCodePoint;
        }
        if (!IsHighSurrogate(unit) || source_.Left() < 2 || !IsLowSurrogate(source_.Peek(1)))
            return ReadStep::kMalformed;
        codePoint = CombineSurrogates(unit, source_.Peek(1));
        source_.Skip(2);
        return ReadStep::kCodePoint;
    }

private:
    SourceUnits<wchar_t> source_;
    const bool halfUnit_;
};

/// The low unit of a packed pair is the first one.
constexpr uint32_t SurrogatePair(uint32_t codePoint)
{
    const uint32_t offset = codePoint - kFirstSupplementary;
    return (0xD800 | offset >> 10) | (0xDC00 | (offset & 0x3FF)) << 16;
}

template <template <typename> class TargetOf>
class Utf16Writer
{
public:
    static constexpr uint32_t kPlainLimit = 0x100;

    explicit Utf16Writer(const TargetOf<wchar_t> &target) : target_(target) {}

    TargetOf<wchar_t> &Target() { return target_; }

    bool Put(uint32_t codePoint)
    {
        if (codePoint < kFirstSupplementary)
            return target_.Append(codePoint, 1);
        return target_.Append(SurrogatePair(codePoint), 2);
    }

    bool Finish() { return true; }

private:
    TargetOf<wchar_t> target_;
};

} // namespace detail

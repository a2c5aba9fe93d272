// Latin-1: each byte is the code point of the same value. What lies beyond is written as a question mark.

#pragma once

#include "text/transcode.h"

namespace detail
{

class Latin1Reader
{
public:
    static constexpr uint32_t kPlainLimit = 0x100;

    Latin1Reader(const uint8_t *bytes, uint32_t size) : source_(bytes, size) {}

    SourceUnits<uint8_t> &Source() { return source_; }

    ReadStep Read(uint32_t &codePoint)
    {
        if (source_.Left() == 0)
            return ReadStep::kEnd;
        codePoint = source_.Peek();
        source_.Skip(1);
        return ReadStep::kCodePoint;
    }

private:
    SourceUnits<uint8_t> source_;
};

template <template <typename> class TargetOf>
class Latin1Writer
{
public:
    static constexpr uint32_t kPlainLimit = 0x100;

    explicit Latin1Writer(const TargetOf<uint8_t> &target) : target_(target) {}

    TargetOf<uint8_t> &Target() { return target_; }

    bool Put(uint32_t codePoint) { return target_.Append(codePoint < 0x100 ? codePoint : '?', 1); }
    bool Finish() { return true; }

private:
    TargetOf<uint8_t> target_;
};

} // namespace detail

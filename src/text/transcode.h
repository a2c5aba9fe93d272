// Conversion from one encoding to another, code point by code point: a reader of the source's encoding, a
// writer of the target's, and one loop between them.
//
// A reader is made of the source's bytes. Read(codePoint) gives the next code point, kEnd behind the last
// one, kMalformed where the bytes are no text; a code point that it gives is never a surrogate. A writer
// stands on a target, an array or a mere count, so that what a text needs is measured by the very code that
// writes it. Put(codePoint) and Finish() are false when the target is full.
//
// Encodings whose units below some limit are the code points of the same value say so by kPlainLimit; a run
// of those is carried over at once. An encoding with a state has a limit of 0.

#pragma once

#include "orv/runtime/result.h"
#include "text/unit_run.h"

namespace detail
{

enum class ReadStep : uint8_t { kCodePoint, kEnd, kMalformed };

constexpr uint32_t kFirstSupplementary = 0x10000;
constexpr uint32_t kLastCodePoint = 0x10FFFF;

/// Of either half.
constexpr bool IsSurrogate(uint32_t unit)
{
    return (unit & 0xFFFFF800) == 0xD800;
}

constexpr bool IsHighSurrogate(uint32_t unit)
{
    return (unit & 0xFFFFFC00) == 0xD800;
}

constexpr bool IsLowSurrogate(uint32_t unit)
{
    return (unit & 0xFFFFFC00) == 0xDC00;
}

constexpr uint32_t CombineSurrogates(uint32_t high, uint32_t low)
{
    return kFirstSupplementary + ((high & 0x3FF) << 10 | (low & 0x3FF));
}

/// What is left of a source.
template <typename T>
class SourceUnits
{
public:
    typedef T Unit;

    SourceUnits(const uint8_t *bytes, uint32_t size)
        : next_(reinterpret_cast<const T *>(bytes)), left_(size / sizeof(T))
    {
    }

    uint32_t Left() const { return left_; }
    uint32_t Peek(uint32_t at = 0) const { return LoadUnit(next_ + at); }
    const T *Next() const { return next_; }

    void Skip(uint32_t count)
    {
        next_ += count;
        left_ -= count;
    }

private:
    const T *next_;
    uint32_t left_;
};

/// A target that is written.
template <typename T>
class TargetArray
{
public:
    TargetArray(uint8_t *bytes, uint32_t room) : next_(reinterpret_cast<T *>(bytes)), room_(room / sizeof(T))
    {
        whole_ = room_;
    }

    /// Appends the units that stand in `packed`, from its low bits up.
    bool Append(uint32_t packed, uint32_t count)
    {
        if (room_ < count)
            return false;
        if (count == 1) {
            StoreUnit(next_, static_cast<T>(packed));
        } else if (room_ >= sizeof packed / sizeof(T)) {
            // What is stored too much lies in the room that is left.
            StoreUnit(reinterpret_cast<uint32_t *>(next_), packed);
        } else {
            for (uint32_t i = 0; i < count; i++)
                StoreUnit(next_ + i, static_cast<T>(packed >> 8 * sizeof(T) * i));
        }
        next_ += count;
        room_ -= count;
        return true;
    }

    /// Takes over a run from the source, as far as there is room; false when there is none.
    template <uint32_t kLimit, typename Source>
    bool AppendRun(Source &source)
    {
        if (room_ == 0)
            return false;
        const uint32_t count = source.Left() < room_ ? source.Left() : room_;
        const uint32_t copied = CopyRun<kLimit>(source.Next(), next_, count);
        source.Skip(copied);
        next_ += copied;
        room_ -= copied;
        return true;
    }

    /// Bytes written.
    uint64_t Size() const { return (whole_ - room_) * sizeof(T); }

private:
    T *next_;
    uint32_t room_;
    uint32_t whole_;
};

/// A target that is only measured, and never full.
template <typename T>
class TargetCount
{
public:
    bool Append(uint32_t /*packed*/, uint32_t count)
    {
        count_ += count;
        return true;
    }

    template <uint32_t kLimit, typename Source>
    bool AppendRun(Source &source)
    {
        const uint32_t counted = CountRun<kLimit>(source.Next(), source.Left());
        source.Skip(counted);
        count_ += counted;
        return true;
    }

    uint64_t Size() const { return count_ * sizeof(T); }

private:
    uint64_t count_ = 0;
};

template <typename Reader, typename Writer>
OrvResult Transcode(Reader &reader, Writer &writer)
{
    constexpr uint32_t kLimit =
        Reader::kPlainLimit < Writer::kPlainLimit ? Reader::kPlainLimit : Writer::kPlainLimit;
    for (;;) {
        if constexpr (kLimit != 0) {
            auto &source = reader.Source();
            if (source.Left() != 0 && source.Peek() < kLimit) {
                if (!writer.Target().template AppendRun<kLimit>(source))
                    return ORV_E_BUFFER_TOO_SMALL;
                continue;
            }
        }
        uint32_t codePoint = 0;
        const ReadStep step = reader.Read(codePoint);
        if (step == ReadStep::kMalformed)
            return ORV_E_INVALID_DATA;
        if (step == ReadStep::kEnd)
            return writer.Finish() ? ORV_S_OK : ORV_E_BUFFER_TOO_SMALL;
        if (!writer.Put(codePoint))
            return ORV_E_BUFFER_TOO_SMALL;
    }
}

} // namespace detail

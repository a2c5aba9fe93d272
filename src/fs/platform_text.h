// Texts on their way to and from the platform: terminated, in an array that is on the stack while they are of
// an ordinary length.

#pragma once

#include "fs/path_text.h"
#include "nt/nt.h"
#include "runtime/heap.h"

namespace detail
{

/// The platform counts in bytes with 16 bits, the terminator included.
constexpr uint32_t kLongestPath = 32766;

/// Room for a text.
class TextArray
{
public:
    TextArray() = default;
    TextArray(const TextArray &) = delete;
    TextArray &operator=(const TextArray &) = delete;

    wchar_t *Get() { return large_ ? large_.Get() : small_; }
    uint32_t Capacity() const { return capacity_; }

    /// Makes room for `capacity` characters; the text is lost. False when the heap refuses.
    bool Grow(uint32_t capacity)
    {
        if (capacity <= capacity_)
            return true;
        large_.Reset(HeapArray<wchar_t>::Allocate(capacity).Detach());
        capacity_ = large_ ? capacity : kSmall;
        return static_cast<bool>(large_);
    }

private:
    static constexpr uint32_t kSmall = 260;

    wchar_t small_[kSmall];
    HeapArray<wchar_t> large_;
    uint32_t capacity_ = kSmall;
};

/// A text with a terminator, copied only if it has none.
class TerminatedText
{
public:
    TerminatedText() = default;

    /// Pieces are copied; so is a text whose length is given. Returns 0, ORV_E_NOT_PRODUCED when it is longer
    /// than any path or has a zero in it, or ORV_E_OUT_OF_MEMORY.
    OrvResult Set(const PathPieces &pieces)
    {
        if (pieces.Length() > kLongestPath)
            return ORV_E_NOT_PRODUCED;
        if (!array_.Grow(static_cast<uint32_t>(pieces.Length()) + 1))
            return ORV_E_OUT_OF_MEMORY;
        pieces.WriteTo(array_.Get());
        text_ = array_.Get();
        return OrvGetStringSizeInElements(text_) == pieces.Length() ? ORV_S_OK : ORV_E_NOT_PRODUCED;
    }

    OrvResult Set(const wchar_t *path, uint32_t length)
    {
        if (length != OrvTerminated || !path)
            return Set(PathPieces(PathText(path, length)));
        if (OrvGetStringSizeInElements(path, kLongestPath + 1) > kLongestPath)
            return ORV_E_NOT_PRODUCED;
        text_ = path;
        return 0;
    }

    const wchar_t *Get() const { return text_; }

private:
    const wchar_t *text_ = nullptr;
    TextArray array_;
};

} // namespace detail

// Texts that are passed to the platform or received from it: terminated, in an array that is on the stack
// while the text has an ordinary length.

#pragma once

#include "fs/path_text.h"
#include "nt/counted_string.h"
#include "orv/runtime/result.h"
#include "runtime/small_array.h"

namespace detail
{

/// Room for a path of an ordinary length, terminated.
using TextArray = SmallArray<wchar_t, 260>;

/// A terminated text. The text is copied only if it is not known to be terminated.
class TerminatedText
{
public:
    TerminatedText() = default;

    /// Copies pieces, and a text whose length is given. Returns 0, ORV_E_NOT_PRODUCED when the text is longer
    /// than any path or contains a zero, or ORV_E_OUT_OF_MEMORY.
    OrvResult Set(const PathPieces &pieces)
    {
        if (pieces.Length() > kLongestCounted)
            return ORV_E_NOT_PRODUCED;
        if (!array_.Reserve(static_cast<uint32_t>(pieces.Length()) + 1))
            return ORV_E_OUT_OF_MEMORY;
        pieces.WriteTo(array_.Get());
        text_ = array_.Get();
        return OrvGetStringSizeInElements(text_) == pieces.Length() ? ORV_S_OK : ORV_E_NOT_PRODUCED;
    }

    OrvResult Set(const wchar_t *path, uint32_t length)
    {
        if (length != OrvTerminated || !path)
            return Set(PathPieces(PathText(path, length)));
        if (OrvGetStringSizeInElements(path, kLongestCounted + 1) > kLongestCounted)
            return ORV_E_NOT_PRODUCED;
        text_ = path;
        return ORV_S_OK;
    }

    const wchar_t *Get() const { return text_; }

private:
    const wchar_t *text_ = nullptr;
    TextArray array_;
};

} // namespace detail

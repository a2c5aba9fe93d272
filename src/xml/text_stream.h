// A buffered stream of text over a stream of bytes: UTF-16 in, UTF-8 out.

#pragma once

#include "orv/stream/stream.h"
#include "orv/text/interfaces.h"
#include "orv/xml/line_end.h"

namespace detail
{

/// After the first failure the caller must stop writing. The buffer is part of the object.
class OrvBasTextStreamImpl final : public OrvBasAppendable<wchar_t>
{
public:
    explicit OrvBasTextStreamImpl(IOrvStream &stream) : stream_(stream) {}
    OrvBasTextStreamImpl(const OrvBasTextStreamImpl &) = delete;
    OrvBasTextStreamImpl &operator=(const OrvBasTextStreamImpl &) = delete;

    void SetLineEnd(LineEndSequence lineEnd) { lineEnd_ = lineEnd; }

    /// Writes text. It may end between the halves of a surrogate pair; the next text then starts with the
    /// other half.
    ///
    /// Returns 0; ORV_E_INVALID_DATA for a surrogate without its other half; the stream's failure.
    OrvResult Append(const wchar_t *first, const wchar_t *last) override;

    OrvResult WriteLineEnd();

    /// Writes everything to the stream. Returns 0; ORV_E_INVALID_DATA when half of a surrogate pair is left;
    /// the stream's failure.
    OrvResult Flush();

private:
    OrvResult Encode(const wchar_t *units, uint32_t count);
    OrvResult FlushBytes();

    static constexpr uint32_t kCapacity = 4096;

    IOrvStream &stream_;
    LineEndSequence lineEnd_ = LineEndCrLf;
    wchar_t highSurrogate_ = 0; // a first half whose second half must follow; 0 when there is none
    uint32_t size_ = 0;
    uint8_t bytes_[kCapacity];
};

} // namespace detail

// A buffered stream of text over a stream of bytes: UTF-16 in, UTF-8 out.

#pragma once

#include "orv/stream/stream.h"
#include "orv/text/interfaces.h"
#include "orv/xml/line_end.h"

namespace detail
{

/// Its first failure is its last: whoever writes has to stop. The buffer is part of the object.
class OrvBasTextStreamImpl final : public OrvBasAppendable<wchar_t>
{
public:
    explicit OrvBasTextStreamImpl(IOrvStream &stream) : stream_(stream) {}
    OrvBasTextStreamImpl(const OrvBasTextStreamImpl &) = delete;
    OrvBasTextStreamImpl &operator=(const OrvBasTextStreamImpl &) = delete;

    void SetLineEnd(LineEndSequence lineEnd) { lineEnd_ = lineEnd; }

    /// Writes text, which may end between the halves of a pair: the next one goes on with it.
    ///
    /// Returns 0; ORV_E_INVALID_DATA for a surrogate without its other half; the stream's failure.
    OrvResult Append(const wchar_t *first, const wchar_t *last) override;

    OrvResult WriteLineEnd();

    /// Hands everything to the stream. ORV_E_INVALID_DATA when half of a pair is left.
    OrvResult Flush();

private:
    OrvResult Encode(const wchar_t *units, uint32_t count);
    OrvResult FlushBytes();

    static constexpr uint32_t kCapacity = 4096;

    IOrvStream &stream_;
    LineEndSequence lineEnd_ = LineEndCrLf;
    wchar_t highSurrogate_ = 0; // waits for its other half; 0 when none does
    uint32_t size_ = 0;
    uint8_t bytes_[kCapacity];
};

} // namespace detail

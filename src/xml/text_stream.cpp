// Encodes text into the buffer, and writes the buffer to the stream of bytes.

#include "xml/text_stream.h"

#include "stream/write_all.h"
#include "text/utf8_run.h"

namespace detail
{

OrvResult OrvBasTextStreamImpl::Append(const wchar_t *first, const wchar_t *last)
{
    if (first == last)
        return ORV_S_OK;
    if (highSurrogate_) {
        if (!IsLowSurrogate(*first))
            return ORV_E_INVALID_DATA;
        const OrvResult result = size_ + Utf8::kLongest > kCapacity ? FlushBytes() : ORV_S_OK;
        if (OrvFailed(result))
            return result;
        size_ = static_cast<uint32_t>(
            Utf8::Encode(bytes_ + size_, CombineSurrogates(highSurrogate_, *first++)) - bytes_);
        highSurrogate_ = 0;
    }
    if (first != last && IsHighSurrogate(last[-1]))
        highSurrogate_ = *--last;
    // A unit needs at most three bytes, so a piece of this size fits into an empty buffer.
    constexpr uint32_t kMostUnits = kCapacity / 3;
    while (first != last) {
        const auto left = static_cast<uint32_t>(last - first);
        uint32_t count = left < kMostUnits ? left : kMostUnits;
        if (count < left && IsHighSurrogate(first[count - 1]))
            count--;
        const OrvResult result = Encode(first, count);
        if (OrvFailed(result))
            return result;
        first += count;
    }
    return ORV_S_OK;
}

/// Encodes units that fit into an empty buffer. Usually they fit into its remaining room; else it is flushed
/// first.
OrvResult OrvBasTextStreamImpl::Encode(const wchar_t *units, uint32_t count)
{
    for (;;) {
        uint64_t encoded = 0;
        const OrvResult result =
            Transcode<Utf16, Utf8>(reinterpret_cast<const uint8_t *>(units), count * sizeof *units,
                                   bytes_ + size_, kCapacity - size_, encoded);
        size_ += static_cast<uint32_t>(encoded); // 0 on failure
        if (result != ORV_E_BUFFER_TOO_SMALL)
            return result;
        const OrvResult flushed = FlushBytes();
        if (OrvFailed(flushed))
            return flushed;
    }
}

OrvResult OrvBasTextStreamImpl::WriteLineEnd()
{
    static constexpr wchar_t kCrLf[] = L"\r\n";
    switch (lineEnd_) {
    case LineEndLf:
        return Append(kCrLf + 1, kCrLf + 2);
    case LineEndCr:
        return Append(kCrLf, kCrLf + 1);
    default:
        return Append(kCrLf, kCrLf + 2);
    }
}

OrvResult OrvBasTextStreamImpl::FlushBytes()
{
    const OrvResult result = WriteAll(stream_, bytes_, size_);
    if (OrvSucceeded(result))
        size_ = 0;
    return result;
}

OrvResult OrvBasTextStreamImpl::Flush()
{
    return highSurrogate_ ? ORV_E_INVALID_DATA : FlushBytes();
}

} // namespace detail

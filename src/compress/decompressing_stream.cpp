// Decompresses from a stream: the context's buffer holds the bytes read from the source, and each step writes
// directly to the caller's memory.

#include "orv/compress/decompressing_stream.h"

#include "orv/runtime/result.h"

namespace
{

constexpr unsigned kBufferSize = 16384;

OrvResult Start(detail::OrvDeflateContext &context, bool raw)
{
    return context.Initialize(kBufferSize, false, detail::OrvDeflateContext::kDefaultLevel, raw);
}

OrvResult Start(detail::OrvBZ2Context &context, bool)
{
    return context.Initialize(kBufferSize, false);
}

/// Whether a step failed only because it had no input. zlib reports an error when it gets no input and
/// produces no output.
bool IsStarved(const detail::OrvDeflateContext &, unsigned given, OrvResult result)
{
    return given == 0 && result == ORV_E_NOT_PRODUCED;
}

bool IsStarved(const detail::OrvBZ2Context &, unsigned, OrvResult)
{
    return false;
}

} // namespace

namespace detail
{

template <typename Context>
OrvResult OrvDecompressingStream<Context>::Begin(IOrvStream &source, bool raw)
{
    const OrvResult result = Start(context_, raw);
    if (OrvFailed(result))
        return result;
    source_ = &source;
    result_ = ORV_S_OK;
    raw_ = raw;
    mayHoldOutput_ = false;
    position_ = 0;
    return ORV_S_OK;
}

template <typename Context>
OrvResult OrvDecompressingStream<Context>::CheckState() const
{
    return source_ ? result_ : ORV_E_INVALID_STATE;
}

template <typename Context>
OrvResult OrvDecompressingStream<Context>::Keep(OrvResult result)
{
    if (OrvFailed(result))
        result_ = result;
    return result;
}

/// Reads a piece of the source into the buffer, whose previous content is used up. Returns ORV_E_END_OF_DATA
/// when the source has ended; that result is not kept.
template <typename Context>
OrvResult OrvDecompressingStream<Context>::Fill()
{
    uint32_t count = 0;
    const OrvResult result = source_->Read(context_.GetBuffer(), kBufferSize, count);
    if (result == ORV_E_END_OF_DATA || (OrvSucceeded(result) && count == 0))
        return ORV_E_END_OF_DATA;
    if (OrvFailed(result) || count > kBufferSize)
        return Keep(OrvFailed(result) ? result : ORV_E_READ_FAULT);
    context_.SetNextIn(context_.GetBuffer());
    context_.SetAvailIn(count);
    return ORV_S_OK;
}

template <typename Context>
OrvResult OrvDecompressingStream<Context>::Read(void *bytes, uint32_t size, uint32_t &read)
{
    read = 0;
    OrvResult result = CheckState();
    while (OrvSucceeded(result) && size && read == 0) {
        if (context_.IsFinished())
            return ORV_E_END_OF_DATA;
        if (context_.GetAvailIn() == 0 && !mayHoldOutput_) {
            result = Fill();
            if (result == ORV_E_END_OF_DATA) // before the compressed stream has ended
                return Keep(ORV_E_NOT_PRODUCED);
            if (OrvFailed(result))
                return result;
        }
        const unsigned given = context_.GetAvailIn();
        context_.SetNextOut(static_cast<unsigned char *>(bytes));
        context_.SetAvailOut(size);
        result = context_.Decompress();
        read = size - context_.GetAvailOut();
        mayHoldOutput_ = read == size;
        result = IsStarved(context_, given, result) ? ORV_S_OK : Keep(result);
    }
    position_ += read;
    return read ? ORV_S_OK : result; // a fault after these bytes is reported by the next call
}

template <typename Context>
OrvResult OrvDecompressingStream<Context>::NextStream()
{
    OrvResult result = CheckState();
    if (OrvFailed(result))
        return result;
    if (!context_.IsFinished())
        return ORV_E_INVALID_STATE;
    if (context_.GetAvailIn() == 0) {
        result = Fill();
        if (OrvFailed(result))
            return result;
    }
    // Destroy keeps the buffer and the input that is left in it.
    const unsigned char *const next = context_.GetNextIn();
    const unsigned left = context_.GetAvailIn();
    context_.Destroy();
    result = Keep(Start(context_, raw_));
    context_.SetNextIn(next);
    context_.SetAvailIn(left);
    mayHoldOutput_ = false;
    return result;
}

template <typename Context>
OrvResult OrvDecompressingStream<Context>::GetPosition(uint64_t &position)
{
    position = position_;
    return ORV_S_OK;
}

template <typename Context>
void OrvDecompressingStream<Context>::Destroy()
{
    context_.Destroy();
    source_ = nullptr;
    position_ = 0;
}

template <typename Context>
OrvResult OrvDecompressingStream<Context>::Close()
{
    Destroy();
    return ORV_S_OK;
}

template class OrvDecompressingStream<OrvDeflateContext>;
template class OrvDecompressingStream<OrvBZ2Context>;

} // namespace detail

OrvResult OrvInflateReadStream::Create(IOrvStream &source, OrvDeflateFormat format)
{
    if (IsInitialized())
        return ORV_E_ALREADY_EXISTS;
    return format > OrvDeflateRaw ? ORV_E_INVALID_ARGUMENT : Begin(source, format == OrvDeflateRaw);
}

OrvResult OrvBZ2ReadStream::Create(IOrvStream &source)
{
    return IsInitialized() ? ORV_E_ALREADY_EXISTS : Begin(source, false);
}

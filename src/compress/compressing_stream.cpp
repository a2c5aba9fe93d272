// Compresses to a stream: the context's buffer collects the compressed bytes until they are written.

#include "orv/compress/compressing_stream.h"

#include "orv/runtime/result.h"
#include "stream/write_all.h"

namespace
{

constexpr unsigned kBufferSize = 16384;

}

namespace detail
{

template <typename Context>
OrvResult OrvCompressingStream<Context>::Begin(IOrvStream &target, OrvResult initialized)
{
    if (OrvFailed(initialized))
        return initialized;
    target_ = &target;
    result_ = ORV_S_OK;
    finished_ = false;
    position_ = 0;
    return ORV_S_OK;
}

template <typename Context>
OrvResult OrvCompressingStream<Context>::CheckState() const
{
    return target_ ? result_ : ORV_E_INVALID_STATE;
}

template <typename Context>
OrvResult OrvCompressingStream<Context>::Keep(OrvResult result)
{
    if (OrvFailed(result))
        result_ = result;
    return result;
}

/// Writes what is in the buffer to the target.
template <typename Context>
OrvResult OrvCompressingStream<Context>::HandOn()
{
    const unsigned count = kBufferSize - context_.GetAvailOut();
    context_.SetNextOut(context_.GetBuffer());
    context_.SetAvailOut(kBufferSize);
    return Keep(WriteAll(*target_, context_.GetBuffer(), count));
}

template <typename Context>
OrvResult OrvCompressingStream<Context>::Write(const void *bytes, uint32_t size, uint32_t &written)
{
    written = 0;
    OrvResult result = CheckState();
    if (OrvFailed(result))
        return result;
    if (finished_)
        return ORV_E_INVALID_STATE;
    context_.SetNextIn(static_cast<const unsigned char *>(bytes));
    context_.SetAvailIn(size);
    while (OrvSucceeded(result) && context_.GetAvailIn()) {
        result = Keep(context_.Compress());
        if (OrvSucceeded(result) && context_.GetAvailOut() == 0)
            result = HandOn();
    }
    if (OrvFailed(result))
        return result;
    written = size;
    position_ += size;
    return ORV_S_OK;
}

template <typename Context>
OrvResult OrvCompressingStream<Context>::Finish()
{
    OrvResult result = CheckState();
    if (OrvFailed(result) || finished_)
        return result;
    while (result == ORV_S_OK) {
        result = Keep(context_.CompressFinish());
        const OrvResult handedOn = OrvSucceeded(result) ? HandOn() : result;
        if (OrvFailed(handedOn))
            return handedOn;
    }
    finished_ = true;
    return ORV_S_OK;
}

template <typename Context>
OrvResult OrvCompressingStream<Context>::Close()
{
    return Finish();
}

template <typename Context>
OrvResult OrvCompressingStream<Context>::Flush()
{
    const OrvResult result = CheckState();
    return OrvFailed(result) || finished_ ? result : HandOn();
}

template <typename Context>
OrvResult OrvCompressingStream<Context>::GetPosition(uint64_t &position)
{
    position = position_;
    return ORV_S_OK;
}

template <typename Context>
void OrvCompressingStream<Context>::Destroy()
{
    context_.Destroy(); // it fails for a stream that was not finished, but frees it
    target_ = nullptr;
    position_ = 0;
}

template class OrvCompressingStream<OrvDeflateContext>;
template class OrvCompressingStream<OrvBZ2Context>;

} // namespace detail

OrvResult OrvDeflateWriteStream::Create(IOrvStream &target, OrvDeflateFormat format, int level)
{
    if (IsInitialized())
        return ORV_E_ALREADY_EXISTS;
    if (format > OrvDeflateRaw)
        return ORV_E_INVALID_ARGUMENT;
    return Begin(target, context_.Initialize(kBufferSize, true, level, format == OrvDeflateRaw));
}

OrvResult OrvBZ2WriteStream::Create(IOrvStream &target, unsigned char blockSize100k)
{
    if (IsInitialized())
        return ORV_E_ALREADY_EXISTS;
    return Begin(target, context_.Initialize(kBufferSize, true, blockSize100k));
}

// The deflate context, implemented with zlib.

#include "orv/compress/deflate_context.h"

#include "compress/stream_context.h"

#include <zlib.h>

namespace detail
{

struct OrvDeflateStream : z_stream {
};

template class OrvStreamContext<OrvDeflateStream>;

namespace
{

OrvResult ResultFromAnswer(int answer)
{
    switch (answer) {
    case Z_OK:
        return ORV_S_OK;
    case Z_STREAM_END:
        return ORV_S_END_OF_DATA;
    case Z_MEM_ERROR:
        return ORV_E_OUT_OF_MEMORY;
    default:
        return ORV_E_NOT_PRODUCED;
    }
}

int Begin(OrvDeflateStream &stream, bool compress, int level, bool raw)
{
    constexpr int kMemoryLevel = 8; // zlib's default
    const int windowBits = raw ? -MAX_WBITS : MAX_WBITS;
    if (!compress)
        return inflateInit2(&stream, windowBits);
    return deflateInit2(&stream, level, Z_DEFLATED, windowBits, kMemoryLevel, Z_DEFAULT_STRATEGY);
}

} // namespace

OrvDeflateContext::OrvDeflateContext() = default;

OrvDeflateContext::~OrvDeflateContext()
{
    Destroy();
}

OrvResult OrvDeflateContext::Initialize(unsigned bufferSize, bool compress, int level)
{
    return Initialize(bufferSize, compress, level, false);
}

OrvResult OrvDeflateContext::Initialize(unsigned bufferSize, bool compress, int level, bool raw)
{
    const OrvResult reserved = ReserveBuffer(bufferSize);
    if (OrvFailed(reserved))
        return reserved;
    if (level == kDefaultLevel)
        level = Z_DEFAULT_COMPRESSION;
    else if (static_cast<unsigned>(level) > Z_BEST_COMPRESSION)
        return ORV_E_INVALID_ARGUMENT;
    auto *const stream = AllocateStream<OrvDeflateStream>();
    if (!stream)
        return ORV_E_OUT_OF_MEMORY;
    stream->zalloc = AllocateForLibrary<uInt>;
    stream->zfree = FreeForLibrary;
    if (compress) {
        stream->next_out = buffer_;
        stream->avail_out = bufferSize;
    }
    const OrvResult result = ResultFromAnswer(Begin(*stream, compress, level, raw));
    if (OrvFailed(result)) {
        FreeBytes(stream);
        return result;
    }
    stream_ = stream;
    compresses_ = compress;
    finished_ = false;
    return result;
}

OrvResult OrvDeflateContext::Destroy()
{
    if (!stream_)
        return ORV_S_OK;
    const int answer = compresses_ ? deflateEnd(stream_) : inflateEnd(stream_);
    FreeBytes(stream_);
    stream_ = nullptr;
    return ResultFromAnswer(answer);
}

// zlib itself refuses a call in the wrong direction, by a number in its state; but its documentation does not
// promise that, so it is checked here.

OrvResult OrvDeflateContext::Compress()
{
    return stream_ && compresses_ ? ResultFromAnswer(deflate(stream_, Z_NO_FLUSH)) : ORV_E_NOT_PRODUCED;
}

OrvResult OrvDeflateContext::CompressFinish()
{
    return stream_ && compresses_ ? ResultFromAnswer(deflate(stream_, Z_FINISH)) : ORV_E_NOT_PRODUCED;
}

OrvResult OrvDeflateContext::Decompress()
{
    if (!stream_ || compresses_)
        return ORV_E_NOT_PRODUCED;
    const int answer = inflate(stream_, Z_NO_FLUSH);
    finished_ |= answer == Z_STREAM_END;
    return ResultFromAnswer(answer);
}

} // namespace detail

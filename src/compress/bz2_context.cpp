// The bzip2 context, implemented with libbzip2.

#include "orv/compress/bz2_context.h"

#include "compress/stream_context.h"

#include <bzlib.h>

namespace detail
{

struct OrvBZ2Stream : bz_stream {
};

template class OrvStreamContext<OrvBZ2Stream>;

namespace
{

constexpr unsigned char kLargestBlock = 9;

OrvResult ResultFromAnswer(int answer)
{
    switch (answer) {
    case BZ_OK:
    case BZ_RUN_OK:
    case BZ_FLUSH_OK:
    case BZ_FINISH_OK:
        return ORV_S_OK;
    case BZ_STREAM_END:
        return ORV_S_END_OF_DATA;
    case BZ_MEM_ERROR:
        return ORV_E_OUT_OF_MEMORY;
    default:
        return ORV_E_NOT_PRODUCED;
    }
}

int Begin(OrvBZ2Stream &stream, bool compress, unsigned char blockSize100k)
{
    constexpr int kVerbosity = 0;
    constexpr int kDefaultWorkFactor = 0;
    constexpr int kFast = 0; // the fast decompressor, not the one that saves memory
    if (!compress)
        return BZ2_bzDecompressInit(&stream, kVerbosity, kFast);
    const unsigned char block = blockSize100k == 0              ? 1
                                : blockSize100k > kLargestBlock ? kLargestBlock
                                                                : blockSize100k;
    return BZ2_bzCompressInit(&stream, block, kVerbosity, kDefaultWorkFactor);
}

} // namespace

OrvBZ2Context::OrvBZ2Context() = default;

OrvBZ2Context::~OrvBZ2Context()
{
    Destroy();
}

OrvResult OrvBZ2Context::Initialize(unsigned bufferSize, bool compress)
{
    return Initialize(bufferSize, compress, kLargestBlock);
}

OrvResult OrvBZ2Context::Initialize(unsigned bufferSize, bool compress, unsigned char blockSize100k)
{
    const OrvResult reserved = ReserveBuffer(bufferSize);
    if (OrvFailed(reserved))
        return reserved;
    auto *const stream = AllocateStream<OrvBZ2Stream>();
    if (!stream)
        return ORV_E_OUT_OF_MEMORY;
    stream->bzalloc = AllocateForLibrary<int>;
    stream->bzfree = FreeForLibrary;
    if (compress) {
        stream->next_out = reinterpret_cast<char *>(buffer_);
        stream->avail_out = bufferSize;
    }
    const OrvResult result = ResultFromAnswer(Begin(*stream, compress, blockSize100k));
    if (OrvFailed(result)) {
        FreeBytes(stream);
        return result;
    }
    stream_ = stream;
    compresses_ = compress;
    finished_ = false;
    return result;
}

OrvResult OrvBZ2Context::Destroy()
{
    if (!stream_)
        return ORV_S_OK;
    const int answer = compresses_ ? BZ2_bzCompressEnd(stream_) : BZ2_bzDecompressEnd(stream_);
    FreeBytes(stream_);
    stream_ = nullptr;
    return ResultFromAnswer(answer);
}

// A call in the wrong direction must not reach the library: it would take one kind of state for the other.

OrvResult OrvBZ2Context::Compress()
{
    return stream_ && compresses_ ? ResultFromAnswer(BZ2_bzCompress(stream_, BZ_RUN)) : ORV_E_NOT_PRODUCED;
}

OrvResult OrvBZ2Context::CompressFinish()
{
    return stream_ && compresses_ ? ResultFromAnswer(BZ2_bzCompress(stream_, BZ_FINISH)) : ORV_E_NOT_PRODUCED;
}

OrvResult OrvBZ2Context::Decompress()
{
    if (!stream_ || compresses_)
        return ORV_E_NOT_PRODUCED;
    const int answer = BZ2_bzDecompress(stream_);
    finished_ |= answer == BZ_STREAM_END;
    return ResultFromAnswer(answer);
}

} // namespace detail

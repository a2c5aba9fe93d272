// Step-wise compression in the bzip2 format.

#pragma once

#include "orv/compress/stream_context.h"

namespace detail
{

struct OrvBZ2Stream;

/// Compression by libbzip2. It is used like OrvDeflateContext and returns the same result codes.
class OrvBZ2Context : public OrvStreamContext<OrvBZ2Stream>
{
public:
    ORV_API OrvBZ2Context();
    ORV_API ~OrvBZ2Context();

    /// With blocks of 900,000 bytes.
    ORV_API OrvResult Initialize(unsigned bufferSize, bool compress);

    /// Makes a stream. It also makes a buffer of `bufferSize` bytes, unless the previous Initialize requested
    /// at least as many. A block has `blockSize100k` times 100,000 bytes; 0 counts as 1, and more than 9 as
    /// 9. When compressing, the output range is the buffer.
    ///
    /// A stream that the context still has is neither ended nor freed: call Destroy first. On failure there
    /// is no new stream, but the buffer may have been replaced.
    ORV_API OrvResult Initialize(unsigned bufferSize, bool compress, unsigned char blockSize100k);

    /// Ends the stream and frees it; the buffer stays. Returns 0 also when there is no stream.
    ORV_API OrvResult Destroy();

    /// One step of compression. Returns ORV_E_NOT_PRODUCED after CompressFinish was called.
    ORV_API OrvResult Compress();

    /// One step towards the end of the stream; repeat until ORV_S_END_OF_DATA.
    ORV_API OrvResult CompressFinish();

    /// One step of decompression.
    ORV_API OrvResult Decompress();
};

} // namespace detail

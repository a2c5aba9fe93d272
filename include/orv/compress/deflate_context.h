// Step-wise compression in the zlib format (RFC 1950) and as raw deflate (RFC 1951).

#pragma once

#include "orv/compress/stream_context.h"

namespace detail
{

struct OrvDeflateStream;

/// Compression by zlib. A context belongs to one thread at a time. Every operation that returns a result code
/// returns
///
///   0                    the step was taken
///   ORV_S_END_OF_DATA    the stream is complete
///   ORV_E_OUT_OF_MEMORY  the heap refused
///   ORV_E_NOT_PRODUCED   any other result of zlib: corrupt data, or no progress because a range is used up;
///                        also a step in the wrong direction or without a stream
///
/// After a failed step the stream is as zlib left it: destroy it.
class OrvDeflateContext : public OrvStreamContext<OrvDeflateStream>
{
public:
    /// Stands for zlib's default level.
    static constexpr int kDefaultLevel = 4096;

    ORV_API OrvDeflateContext();
    ORV_API ~OrvDeflateContext();

    /// Makes a stream in the zlib format.
    ORV_API OrvResult Initialize(unsigned bufferSize, bool compress, int level);

    /// Makes a stream. It also makes a buffer of `bufferSize` bytes, unless the previous Initialize requested
    /// at least as many. `level` is 0 to 9 or kDefaultLevel, also for decompression, which ignores it; `raw`
    /// leaves out the zlib format's header and checksum. When compressing, the output range is the buffer.
    ///
    /// A stream that the context still has is neither ended nor freed: call Destroy first.
    ///
    /// Returns ORV_E_INVALID_ARGUMENT for any other level, and the codes above; on failure there is no new
    /// stream, but the buffer may have been replaced.
    ORV_API OrvResult Initialize(unsigned bufferSize, bool compress, int level, bool raw);

    /// Ends the stream and frees it; the buffer stays. Returns 0 also when there is no stream;
    /// ORV_E_NOT_PRODUCED when a compression was not finished, and the stream is freed all the same.
    ORV_API OrvResult Destroy();

    /// One deflate step without flushing.
    ORV_API OrvResult Compress();

    /// One deflate step towards the end of the stream; repeat until ORV_S_END_OF_DATA.
    ORV_API OrvResult CompressFinish();

    /// One inflate step.
    ORV_API OrvResult Decompress();
};

} // namespace detail

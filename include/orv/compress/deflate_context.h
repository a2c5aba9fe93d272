// Step-wise compression in the zlib format (RFC 1950) and as raw deflate (RFC 1951).

#pragma once

#include "orv/compress/stream_context.h"

namespace detail
{

struct OrvDeflateStream;

/// Over zlib. A context belongs to one thread at a time. Every operation that returns a result code returns
///
///   0                    the step was taken
///   ORV_S_END_OF_DATA    the stream is complete
///   ORV_E_OUT_OF_MEMORY  the heap refused
///   ORV_E_NOT_PRODUCED   anything else that zlib answers: corrupt data, or no progress because a range is at
///                        its end; and a step in the wrong direction or without a stream
///
/// After a failed step the stream is as zlib left it: destroy it.
class OrvDeflateContext : public OrvStreamContext<OrvDeflateStream>
{
public:
    /// The level that zlib takes when none is asked for.
    static constexpr int kDefaultLevel = 4096;

    ORV_API OrvDeflateContext();
    ORV_API ~OrvDeflateContext();

    /// Makes a stream in the zlib format.
    ORV_API OrvResult Initialize(unsigned bufferSize, bool compress, int level);

    /// Makes a stream, and a buffer of `bufferSize` bytes unless the context has one that was asked to be as
    /// large. `level` is 0 to 9 or kDefaultLevel, also for decompression, which makes no use of it; `raw`
    /// leaves out the zlib format's header and checksum. When compressing, the output range is the buffer.
    ///
    /// A stream that the context still has is not ended, only forgotten: call Destroy first.
    ///
    /// Returns ORV_E_INVALID_ARGUMENT for any other level, and the codes above; on failure there is no new
    /// stream, but the buffer may have been replaced.
    ORV_API OrvResult Initialize(unsigned bufferSize, bool compress, int level, bool raw);

    /// Ends the stream and frees it; the buffer stays. 0 when there is none. Compression that was not
    /// finished is answered with ORV_E_NOT_PRODUCED, and the stream is gone all the same.
    ORV_API OrvResult Destroy();

    /// One deflate step without flushing.
    ORV_API OrvResult Compress();

    /// One deflate step towards the end of the stream; repeat until ORV_S_END_OF_DATA.
    ORV_API OrvResult CompressFinish();

    /// One inflate step.
    ORV_API OrvResult Decompress();
};

} // namespace detail

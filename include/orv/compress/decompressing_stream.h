// Streams that read a compressed stream from another stream, and return the original data.
//
// The source is read in pieces, possibly beyond the end of the compressed stream: GetUnread tells how far.
// Read returns bytes before the end of the stream and its checksum have been checked: only ORV_E_END_OF_DATA
// means that all of the data was intact. After the first failure, of the source or of the decompression,
// every Read and NextStream returns that failure. A stream belongs to one thread at a time.

#pragma once

#include "orv/compress/bz2_context.h"
#include "orv/compress/compressing_stream.h"
#include "orv/compress/deflate_context.h"
#include "orv/stream/stream.h"

namespace detail
{

/// What the formats share: an IOrvStream that is read. Positions cannot be set, and the size is not known.
template <typename Context>
class OrvDecompressingStream : public IOrvStream
{
public:
    OrvDecompressingStream(const OrvDecompressingStream &) = delete;
    OrvDecompressingStream &operator=(const OrvDecompressingStream &) = delete;

    /// Reads at least one byte and at most `size`, unless `size` is 0.
    ///
    /// Returns 0; ORV_E_END_OF_DATA, and 0 bytes, at the end of the compressed stream; the source's failure,
    /// or ORV_E_READ_FAULT when the source claims to have read more than it was asked for; ORV_E_NOT_PRODUCED
    /// when the data is corrupt, or the source ends before the compressed stream does; ORV_E_OUT_OF_MEMORY;
    /// ORV_E_INVALID_STATE before Create.
    ORV_API OrvResult Read(void *bytes, uint32_t size, uint32_t &read) override;

    /// Continues with the compressed stream that directly follows the one that has ended, as in a file that
    /// was made by joining compressed files.
    ///
    /// Returns 0; ORV_E_END_OF_DATA when the source has no more bytes; ORV_E_INVALID_STATE when no stream has
    /// ended yet; otherwise as Read.
    ORV_API OrvResult NextStream();

    /// How many bytes were read from the source but not decompressed yet: at the end of the stream, the bytes
    /// that follow it.
    uint32_t GetUnread() const { return context_.GetAvailIn(); }

    /// How many bytes were read from this stream. Always 0.
    ORV_API OrvResult GetPosition(uint64_t &position) override;

    /// Frees what Create made; the stream may be created again.
    ORV_API void Destroy();

    /// Calls Destroy. The source is not closed. Always 0.
    ORV_API OrvResult Close() override;

    /// Whether it was created and not destroyed.
    bool IsInitialized() const { return source_ != nullptr; }

protected:
    OrvDecompressingStream() = default;
    ~OrvDecompressingStream() = default;

    /// Initializes the context, for raw deflate if `raw` is set, and takes the source. Returns what the
    /// context returns.
    OrvResult Begin(IOrvStream &source, bool raw);

private:
    OrvResult CheckState() const;
    OrvResult Keep(OrvResult result);
    OrvResult Fill();

    Context context_; ///< its input range is its buffer
    IOrvStream *source_ = nullptr;
    OrvResult result_ = ORV_S_OK; ///< the first failure
    bool raw_ = false;
    bool mayHoldOutput_ = false; ///< the last step filled its output
    uint64_t position_ = 0;
};

} // namespace detail

/// Inflates what it reads.
class OrvInflateReadStream final : public detail::OrvDecompressingStream<detail::OrvDeflateContext>
{
public:
    /// Begins to read a compressed stream from `source`, which must outlive its use here.
    ///
    /// Returns 0; ORV_E_ALREADY_EXISTS when the stream was created before; ORV_E_INVALID_ARGUMENT for a
    /// format outside its enumeration; ORV_E_OUT_OF_MEMORY. On failure nothing has changed.
    ORV_API OrvResult Create(IOrvStream &source, OrvDeflateFormat format = OrvDeflateZlib);
};

/// Decompresses what it reads from the bzip2 format.
class OrvBZ2ReadStream final : public detail::OrvDecompressingStream<detail::OrvBZ2Context>
{
public:
    /// Begins to read a compressed stream from `source`, which must outlive its use here.
    ///
    /// Returns 0; ORV_E_ALREADY_EXISTS when the stream was created before; ORV_E_OUT_OF_MEMORY. On failure
    /// nothing has changed.
    ORV_API OrvResult Create(IOrvStream &source);
};

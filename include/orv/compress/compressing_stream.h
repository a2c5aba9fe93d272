// Streams that compress what is written to them, and write the compressed bytes to another stream.
//
//     OrvDeflateWriteStream packed;
//     OrvResult result = packed.Create(target);
//     if (OrvSucceeded(result))
//         result = WriteReport(packed); // or anything else that writes to an IOrvStream
//     if (OrvSucceeded(result))
//         result = packed.Finish();
//
// Without Finish the compressed stream has no end, and its reader gets a failure. After the first failure, of
// the target or of the compression, Write, Flush, Finish and Close return that failure. A stream belongs to
// one thread at a time.

#pragma once

#include "orv/compress/bz2_context.h"
#include "orv/compress/deflate_context.h"
#include "orv/stream/stream.h"

/// What surrounds the deflated data.
enum OrvDeflateFormat : uint32_t {
    OrvDeflateZlib = 0, ///< the zlib format: a header, and a checksum at the end
    OrvDeflateRaw = 1,  ///< nothing, for containers that have their own
};

namespace detail
{

/// What the formats share: an IOrvStream that is written to. Positions cannot be set, and there is no size.
template <typename Context>
class OrvCompressingStream : public IOrvStream
{
public:
    OrvCompressingStream(const OrvCompressingStream &) = delete;
    OrvCompressingStream &operator=(const OrvCompressingStream &) = delete;

    /// Compresses all of the bytes. The compressed bytes are collected and written to the target 16,384 at a
    /// time.
    ///
    /// Returns 0; the target's failure, or ORV_E_WRITE_FAULT when the target claims to have written nothing
    /// or more than it was given; ORV_E_NOT_PRODUCED when the compression fails; ORV_E_INVALID_STATE before
    /// Create and after Finish. On failure `written` is 0.
    ORV_API OrvResult Write(const void *bytes, uint32_t size, uint32_t &written) override;

    /// Ends the compressed stream and writes the rest of it to the target, which is neither flushed nor
    /// closed. Another call does nothing and returns 0.
    ///
    /// Returns as Write.
    ORV_API OrvResult Finish();

    /// Calls Finish.
    ORV_API OrvResult Close() override;

    /// Writes the compressed bytes that exist so far to the target. The compression keeps input that it can
    /// pack better together with later input.
    ///
    /// Returns as Write.
    ORV_API OrvResult Flush() override;

    /// How many bytes were written to this stream. Always 0.
    ORV_API OrvResult GetPosition(uint64_t &position) override;

    /// Frees what Create made, without finishing; the stream may be created again.
    ORV_API void Destroy();

    /// Whether it was created and not destroyed.
    bool IsInitialized() const { return target_ != nullptr; }

protected:
    OrvCompressingStream() = default;
    ~OrvCompressingStream() = default;

    /// Takes the target if `initialized`, the result of initializing the context, is a success. Returns
    /// `initialized`.
    OrvResult Begin(IOrvStream &target, OrvResult initialized);

    Context context_; ///< its output range is its buffer

private:
    OrvResult CheckState() const;
    OrvResult Keep(OrvResult result);
    OrvResult HandOn();

    IOrvStream *target_ = nullptr;
    OrvResult result_ = ORV_S_OK; ///< the first failure
    bool finished_ = false;
    uint64_t position_ = 0;
};

} // namespace detail

/// Deflates what is written to it.
class OrvDeflateWriteStream final : public detail::OrvCompressingStream<detail::OrvDeflateContext>
{
public:
    /// Begins a compressed stream to `target`, which must outlive its use here. The level is 0 (no
    /// compression) to 9 (best compression), or detail::OrvDeflateContext::kDefaultLevel.
    ///
    /// Returns 0; ORV_E_ALREADY_EXISTS when the stream was created before; ORV_E_INVALID_ARGUMENT for another
    /// level, or a format outside its enumeration; ORV_E_OUT_OF_MEMORY. On failure nothing has changed.
    ORV_API OrvResult Create(IOrvStream &target, OrvDeflateFormat format = OrvDeflateZlib,
                             int level = detail::OrvDeflateContext::kDefaultLevel);
};

/// Compresses what is written to it in the bzip2 format.
class OrvBZ2WriteStream final : public detail::OrvCompressingStream<detail::OrvBZ2Context>
{
public:
    /// Begins a compressed stream to `target`, which must outlive its use here. A block has `blockSize100k`
    /// times 100,000 bytes; 0 counts as 1, and more than 9 as 9.
    ///
    /// Returns 0; ORV_E_ALREADY_EXISTS when the stream was created before; ORV_E_OUT_OF_MEMORY. On failure
    /// nothing has changed.
    ORV_API OrvResult Create(IOrvStream &target, unsigned char blockSize100k = 9);
};

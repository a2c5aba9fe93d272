// What both compression contexts share: the stream of a compression library, and a buffer that a caller may
// use as its output range.
//
// A caller sets the input and output ranges itself: it points the stream to input and to room for output,
// takes one step, and looks at what is left of both. The ranges belong to the caller and must stay valid for
// the step. Without a stream, before Initialize and after Destroy, the ranges are empty and setting them does
// nothing.

#pragma once

#include "orv/base.h"

/// The contexts of the compression libraries. The name is a part of the binary interface.
namespace detail
{

/// Stream is the library's stream structure, whose layout callers do not see.
template <typename Stream>
class OrvStreamContext
{
public:
    OrvStreamContext(const OrvStreamContext &) = delete;
    OrvStreamContext &operator=(const OrvStreamContext &) = delete;

    /// Where the next step reads. A step moves it past what it has read.
    ORV_API void SetNextIn(const unsigned char *next);

    /// Where the next step reads.
    ORV_API const unsigned char *GetNextIn() const;

    /// How many bytes the next step may read. A step subtracts what it has read.
    ORV_API void SetAvailIn(unsigned bytes);

    /// How many bytes are still to be read.
    ORV_API unsigned GetAvailIn() const;

    /// Where the next step writes. A step moves it past what it has written.
    ORV_API void SetNextOut(unsigned char *next);

    /// Where the next step writes.
    ORV_API unsigned char *GetNextOut() const;

    /// How many bytes the next step may write. A step subtracts what it has written.
    ORV_API void SetAvailOut(unsigned bytes);

    /// How much room is left.
    ORV_API unsigned GetAvailOut() const;

    /// The context's own buffer, null before the first Initialize. It lives until the destructor or until an
    /// Initialize that asks for more.
    unsigned char *GetBuffer() const { return buffer_; }

    /// The size of that buffer in bytes, as the last Initialize requested it.
    unsigned GetBufferSize() const { return bufferSize_; }

    /// The most that an input or output range can hold at once: 0xFFFFFFFF bytes.
    unsigned GetMaxAvail() const { return 0xFFFFFFFF; }

    /// Whether decompression has reached the end of the stream.
    bool IsFinished() const { return finished_; }

protected:
    OrvStreamContext() = default;
    ~OrvStreamContext();

    /// Makes the buffer at least that large. Returns 0 or ORV_E_OUT_OF_MEMORY.
    OrvResult ReserveBuffer(unsigned bytes);

    Stream *stream_ = nullptr;        ///< on the process heap; null when there is none
    unsigned char *buffer_ = nullptr; ///< what GetBuffer returns
    uint32_t bufferSize_ = 0;         ///< as it was last requested
    uint32_t bufferCapacity_ = 0;     ///< as it was allocated
    bool compresses_ = false;         ///< the direction
    bool finished_ = false;           ///< what IsFinished returns
};

} // namespace detail

// What both compression contexts share: the stream of a compression library, and a buffer that a caller may
// use as its output range.
//
// A caller moves the input and output ranges itself: it points the stream at some input and at some room,
// takes one step, and looks at what is left of both. The ranges belong to the caller and must stay valid for
// the step. Without a stream, before Initialize and after Destroy, the ranges read as empty and setting them
// does nothing.

#pragma once

#include "orv/base.h"

namespace detail
{

/// Stream is the library's stream structure, whose layout callers do not see.
template <typename Stream>
class OrvStreamContext
{
public:
    OrvStreamContext(const OrvStreamContext &) = delete;
    OrvStreamContext &operator=(const OrvStreamContext &) = delete;

    ORV_API void SetNextIn(const unsigned char *next);
    ORV_API const unsigned char *GetNextIn() const;
    ORV_API void SetAvailIn(unsigned bytes);
    ORV_API unsigned GetAvailIn() const;
    ORV_API void SetNextOut(unsigned char *next);
    ORV_API unsigned char *GetNextOut() const;
    ORV_API void SetAvailOut(unsigned bytes);
    ORV_API unsigned GetAvailOut() const;

    /// The context's own buffer, null before the first Initialize. It lives until the destructor or until an
    /// Initialize that asks for more.
    unsigned char *GetBuffer() const { return buffer_; }

    /// Its size in bytes, as the last Initialize asked for it.
    unsigned GetBufferSize() const { return bufferSize_; }

    /// The most that an input or output range can hold at once: 0xFFFFFFFF bytes.
    unsigned GetMaxAvail() const { return 0xFFFFFFFF; }

    /// Whether decompression has reached the end of the stream.
    bool IsFinished() const { return finished_; }

protected:
    OrvStreamContext() = default;
    ~OrvStreamContext();

    OrvResult ReserveBuffer(unsigned bytes);

    Stream *stream_ = nullptr; ///< on the process heap; null when there is none
    unsigned char *buffer_ = nullptr;
    uint32_t bufferSize_ = 0;
    uint32_t bufferCapacity_ = 0;
    bool compresses_ = false;
    bool finished_ = false;
};

} // namespace detail

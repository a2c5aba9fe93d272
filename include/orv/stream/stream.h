// The byte stream that callers implement and operations read and write.

#pragma once

#include "orv/base.h"
#include "orv/runtime/result.h"

/// A stream of bytes. The slots stand in this order; reading is the sixth and writing the seventh. The
/// library calls no other, so a stream has to implement the one or two that it is used for. Streams are not
/// deleted through this type.
class IOrvStream
{
public:
    /// Ends the use of the stream.
    virtual OrvResult Close() { return ORV_E_NOT_PROVIDED; }

    /// Hands on what was written.
    virtual OrvResult Flush() { return ORV_E_NOT_PROVIDED; }

    /// Where the stream stands, in bytes from its start.
    virtual OrvResult GetPosition(uint64_t & /*position*/) { return ORV_E_NOT_PROVIDED; }

    /// Where it goes on.
    virtual OrvResult SetPosition(uint64_t /*position*/) { return ORV_E_NOT_PROVIDED; }

    /// How many bytes it has.
    virtual OrvResult GetSize(uint64_t & /*size*/) { return ORV_E_NOT_PROVIDED; }

    /// Reads at most `size` bytes and stores how many they were. There may be fewer at any time.
    ///
    /// Returns 0 or a remark; ORV_E_END_OF_DATA when there are no more; any other failure ends what is
    /// reading.
    virtual OrvResult Read(void * /*bytes*/, uint32_t /*size*/, uint32_t & /*read*/)
    {
        return ORV_E_NOT_PROVIDED;
    }

    /// Writes at most `size` bytes, at least one unless `size` is 0, and stores how many they were.
    ///
    /// Returns 0 or a remark; any failure ends what is writing.
    virtual OrvResult Write(const void * /*bytes*/, uint32_t /*size*/, uint32_t & /*written*/)
    {
        return ORV_E_NOT_PROVIDED;
    }

protected:
    ~IOrvStream() = default;
};

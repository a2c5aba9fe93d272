// The byte stream that callers implement and operations read and write.

#pragma once

#include "orv/base.h"
#include "orv/runtime/result.h"

/// A stream of bytes. The virtual functions have this order; Read is the sixth and Write the seventh. The
/// library calls no others, so a stream has to implement only the one or two that it is used for. Streams are
/// not deleted through this type.
class IOrvStream
{
public:
    /// Ends the use of the stream.
    virtual OrvResult Close() { return ORV_E_NOT_PROVIDED; }

    /// Passes on all that was written.
    virtual OrvResult Flush() { return ORV_E_NOT_PROVIDED; }

    /// Gets the position, in bytes from the start of the stream.
    virtual OrvResult GetPosition(uint64_t & /*position*/) { return ORV_E_NOT_PROVIDED; }

    /// Sets the position.
    virtual OrvResult SetPosition(uint64_t /*position*/) { return ORV_E_NOT_PROVIDED; }

    /// Gets the number of bytes in the stream.
    virtual OrvResult GetSize(uint64_t & /*size*/) { return ORV_E_NOT_PROVIDED; }

    /// Reads at most `size` bytes and stores how many they were. There may be fewer at any time.
    ///
    /// Returns 0 or a remark; ORV_E_END_OF_DATA when there are no more; any other failure ends the operation
    /// that reads.
    virtual OrvResult Read(void * /*bytes*/, uint32_t /*size*/, uint32_t & /*read*/)
    {
        return ORV_E_NOT_PROVIDED;
    }

    /// Writes at most `size` bytes, at least one unless `size` is 0, and stores how many they were.
    ///
    /// Returns 0 or a remark; any failure ends the operation that writes.
    virtual OrvResult Write(const void * /*bytes*/, uint32_t /*size*/, uint32_t & /*written*/)
    {
        return ORV_E_NOT_PROVIDED;
    }

protected:
    ~IOrvStream() = default;
};

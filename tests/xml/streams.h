// Streams for the XML tests: in pieces of any size, and failing at a chosen call.

#pragma once

#include "orv/runtime/result.h"
#include "orv/stream/memory_stream.h"

namespace test
{

/// Gives at most `piece` bytes a read, and fails at the read of that number.
class PiecewiseStream final : public IOrvStream
{
public:
    PiecewiseStream(const void *bytes, uint32_t size, uint32_t piece, uint32_t failAt = 0)
        : memory_(bytes, size), piece_(piece), failAt_(failAt)
    {
    }

    OrvResult Read(void *bytes, uint32_t size, uint32_t &read) override
    {
        if (++reads == failAt_)
            return ORV_E_READ_FAULT;
        const OrvResult result = memory_.Read(bytes, size < piece_ ? size : piece_, read);
        if (result == ORV_E_END_OF_DATA)
            read = 1; // which is not to be believed
        return result;
    }

    uint32_t reads = 0;

private:
    OrvMemoryStream memory_;
    uint32_t piece_;
    uint32_t failAt_;
};

/// Takes at most `piece` bytes a write, and fails at the write of that number.
class SlowStream final : public IOrvStream
{
public:
    explicit SlowStream(uint32_t piece, uint32_t failAt = 0) : piece_(piece), failAt_(failAt) {}

    OrvResult Write(const void *bytes, uint32_t size, uint32_t &written) override
    {
        if (++writes == failAt_)
            return ORV_E_DISK_FULL;
        return buffer.Write(bytes, size < piece_ ? size : piece_, written);
    }

    /// What was written, terminated.
    const char *Text()
    {
        uint32_t written = 0;
        buffer.Write("", 1, written);
        return reinterpret_cast<const char *>(buffer.GetBytes());
    }

    OrvBufferStream buffer;
    uint32_t writes = 0;

private:
    uint32_t piece_;
    uint32_t failAt_;
};

} // namespace test

// Streams over memory: one that reads a caller's bytes, and one that collects what is written in a buffer
// that grows.

#pragma once

#include "orv/stream/stream.h"

/// Reads bytes that belong to the caller and must outlive the stream.
class OrvMemoryStream : public IOrvStream
{
public:
    /// A stream over `size` bytes, positioned at the first.
    OrvMemoryStream(const void *bytes, uint32_t size)
        : bytes_(static_cast<const uint8_t *>(bytes)), size_(size), position_(0)
    {
    }

    /// 0 to the size.
    ORV_API OrvResult GetPosition(uint64_t &position) override;

    /// Returns 0, or ORV_E_INVALID_ARGUMENT for a position after the end; the position is then as it was.
    ORV_API OrvResult SetPosition(uint64_t position) override;

    /// How many bytes there are. Always 0.
    ORV_API OrvResult GetSize(uint64_t &size) override;

    /// Returns 0, or ORV_E_END_OF_DATA, and 0 bytes, at the end.
    ORV_API OrvResult Read(void *bytes, uint32_t size, uint32_t &read) override;

private:
    const uint8_t *bytes_;
    uint32_t size_;
    uint32_t position_;
};

/// Collects what is written at its end, and reads it back from its position. The buffer grows by doubling.
class OrvBufferStream : public IOrvStream
{
public:
    OrvBufferStream() = default;
    OrvBufferStream(const OrvBufferStream &) = delete;
    OrvBufferStream &operator=(const OrvBufferStream &) = delete;
    ORV_API ~OrvBufferStream();

    /// The bytes written so far; null while there was none. They move when more are written.
    const uint8_t *GetBytes() const { return bytes_; }
    uint32_t GetLength() const { return size_; }

    /// Forgets all bytes and goes to the start; the buffer stays.
    ORV_API void Clear();

    /// Where the next read starts. Always 0.
    ORV_API OrvResult GetPosition(uint64_t &position) override;

    /// Sets where the next read starts. Returns 0, or ORV_E_INVALID_ARGUMENT for a position after the end;
    /// the position is then as it was.
    ORV_API OrvResult SetPosition(uint64_t position) override;

    /// How many bytes there are. Always 0.
    ORV_API OrvResult GetSize(uint64_t &size) override;

    /// Returns 0, or ORV_E_END_OF_DATA, and 0 bytes, at the end.
    ORV_API OrvResult Read(void *bytes, uint32_t size, uint32_t &read) override;

    /// Appends all of the bytes, which may be the stream's own. Returns 0, or ORV_E_OUT_OF_MEMORY, and
    /// nothing is appended.
    ORV_API OrvResult Write(const void *bytes, uint32_t size, uint32_t &written) override;

private:
    uint8_t *bytes_ = nullptr;
    uint32_t size_ = 0;
    uint32_t capacity_ = 0;
    uint32_t position_ = 0;
};

// Streams over memory: one reads a caller's bytes, the other appends to a buffer of its own that grows.

#include "orv/stream/memory_stream.h"

#include "crt/memory.h"
#include "runtime/growth.h"
#include "runtime/heap.h"

namespace
{

OrvResult ReadFrom(const uint8_t *source, uint32_t sourceSize, uint32_t &position, void *bytes, uint32_t size,
                   uint32_t &read)
{
    const uint32_t left = sourceSize - position;
    read = size < left ? size : left;
    if (read == 0)
        return left == 0 ? ORV_E_END_OF_DATA : ORV_S_OK;
    memcpy(bytes, source + position, read);
    position += read;
    return ORV_S_OK;
}

OrvResult MoveTo(uint32_t &position, uint64_t wanted, uint32_t size)
{
    if (wanted > size)
        return ORV_E_INVALID_ARGUMENT;
    position = static_cast<uint32_t>(wanted);
    return ORV_S_OK;
}

} // namespace

OrvResult OrvMemoryStream::GetPosition(uint64_t &position)
{
    position = position_;
    return ORV_S_OK;
}

OrvResult OrvMemoryStream::SetPosition(uint64_t position)
{
    return MoveTo(position_, position, size_);
}

OrvResult OrvMemoryStream::GetSize(uint64_t &size)
{
    size = size_;
    return ORV_S_OK;
}

OrvResult OrvMemoryStream::Read(void *bytes, uint32_t size, uint32_t &read)
{
    return ReadFrom(bytes_, size_, position_, bytes, size, read);
}

OrvBufferStream::~OrvBufferStream()
{
    detail::FreeBytes(bytes_);
}

void OrvBufferStream::Clear()
{
    size_ = 0;
    position_ = 0;
}

OrvResult OrvBufferStream::GetPosition(uint64_t &position)
{
    position = position_;
    return ORV_S_OK;
}

OrvResult OrvBufferStream::SetPosition(uint64_t position)
{
    return MoveTo(position_, position, size_);
}

OrvResult OrvBufferStream::GetSize(uint64_t &size)
{
    size = size_;
    return ORV_S_OK;
}

OrvResult OrvBufferStream::Read(void *bytes, uint32_t size, uint32_t &read)
{
    return ReadFrom(bytes_, size_, position_, bytes, size, read);
}

OrvResult OrvBufferStream::Write(const void *bytes, uint32_t size, uint32_t &written)
{
    written = 0;
    const auto *source = static_cast<const uint8_t *>(bytes);
    if (size > capacity_ - size_) {
        constexpr uint32_t kFirstCapacity = 4096;
        if (size > UINT32_MAX - size_)
            return ORV_E_OUT_OF_MEMORY;
        const uint32_t capacity = detail::GrownCapacity(capacity_, size_ + size, kFirstCapacity);
        auto *const grown = static_cast<uint8_t *>(detail::ReallocateBytes(bytes_, capacity));
        if (!grown)
            return ORV_E_OUT_OF_MEMORY;
        const uintptr_t offset = reinterpret_cast<uintptr_t>(source) - reinterpret_cast<uintptr_t>(bytes_);
        if (offset < capacity_)
            source = grown + offset; // the source is part of the stream's own bytes, which have moved
        bytes_ = grown;
        capacity_ = capacity;
    }
    if (size) // `bytes` may be null when the size is 0
        memmove(bytes_ + size_, source, size);
    size_ += size;
    written = size;
    return ORV_S_OK;
}

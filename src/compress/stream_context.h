// The common part of the compression contexts, for the two files that instantiate it. Stream is derived from
// the library's own structure, so its fields have the library's names.

#pragma once

#include "orv/compress/stream_context.h"
#include "orv/runtime/result.h"
#include "runtime/heap.h"

namespace detail
{

template <typename Stream>
OrvStreamContext<Stream>::~OrvStreamContext()
{
    FreeBytes(buffer_);
}

template <typename Stream>
void OrvStreamContext<Stream>::SetNextIn(const unsigned char *next)
{
    // Both libraries only read their input, but declare the pointer to it without const.
    if (stream_)
        stream_->next_in = reinterpret_cast<decltype(stream_->next_in)>(const_cast<unsigned char *>(next));
}

template <typename Stream>
const unsigned char *OrvStreamContext<Stream>::GetNextIn() const
{
    return stream_ ? reinterpret_cast<const unsigned char *>(stream_->next_in) : nullptr;
}

template <typename Stream>
void OrvStreamContext<Stream>::SetAvailIn(unsigned bytes)
{
    if (stream_)
        stream_->avail_in = bytes;
}

template <typename Stream>
unsigned OrvStreamContext<Stream>::GetAvailIn() const
{
    return stream_ ? stream_->avail_in : 0;
}

template <typename Stream>
void OrvStreamContext<Stream>::SetNextOut(unsigned char *next)
{
    if (stream_)
        stream_->next_out = reinterpret_cast<decltype(stream_->next_out)>(next);
}

template <typename Stream>
unsigned char *OrvStreamContext<Stream>::GetNextOut() const
{
    return stream_ ? reinterpret_cast<unsigned char *>(stream_->next_out) : nullptr;
}

template <typename Stream>
void OrvStreamContext<Stream>::SetAvailOut(unsigned bytes)
{
    if (stream_)
        stream_->avail_out = bytes;
}

template <typename Stream>
unsigned OrvStreamContext<Stream>::GetAvailOut() const
{
    return stream_ ? stream_->avail_out : 0;
}

/// Compares with the size that was requested last, not with the buffer's capacity.
template <typename Stream>
OrvResult OrvStreamContext<Stream>::ReserveBuffer(unsigned bytes)
{
    if (bufferSize_ < bytes) {
        auto *const buffer = static_cast<unsigned char *>(AllocateBytes(bytes));
        if (!buffer)
            return ORV_E_OUT_OF_MEMORY;
        FreeBytes(buffer_);
        buffer_ = buffer;
        bufferCapacity_ = bytes;
    }
    bufferSize_ = bytes;
    return ORV_S_OK;
}

/// A zeroed stream that takes its memory from the process heap; null when the heap refuses.
template <typename Stream>
Stream *AllocateStream()
{
    auto *const stream = static_cast<Stream *>(AllocateBytes(sizeof(Stream)));
    if (stream)
        *stream = {};
    return stream;
}

/// The libraries' allocation function. The product of both numbers may not fit into 32 bits.
template <typename Count>
void *AllocateForLibrary(void *, Count items, Count size)
{
    const uint64_t bytes = static_cast<uint64_t>(static_cast<uint32_t>(items)) * static_cast<uint32_t>(size);
    return bytes > SIZE_MAX ? nullptr : AllocateBytes(static_cast<size_t>(bytes));
}

inline void FreeForLibrary(void *, void *block)
{
    FreeBytes(block);
}

} // namespace detail

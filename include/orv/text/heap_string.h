// Containers on the process heap for operations that take the abstract ones of orv/text/interfaces.h.

#pragma once

#include "orv/text/heap_buffer.h"
#include "orv/text/interfaces.h"

/// A string over a heap buffer of its own.
class OrvUtf16HeapString final : public IOrvString<wchar_t>
{
public:
    /// ORV_E_OUT_OF_MEMORY: the string is as it was.
    OrvResult Set(const wchar_t *characters, uint32_t length) override
    {
        return length ? buffer_.Assign(characters, length) : buffer_.Resize(0);
    }

    /// Terminated; never null.
    const wchar_t *GetCharacters() const override { return buffer_.GetValue(); }

    /// In characters.
    uint32_t GetLength() const override { return buffer_.GetInternal().length; }

    /// The heap buffer itself.
    OrvUtf16CharHeapBuffer &GetBuffer() { return buffer_; }

private:
    OrvUtf16CharHeapBuffer buffer_;
};

/// Bytes in a heap buffer of their own.
class OrvByteHeapBuffer final : public IOrvBuffer<unsigned char>
{
public:
    /// ORV_E_OUT_OF_MEMORY: the bytes are as they were.
    OrvResult Resize(uint32_t size) override { return bytes_.Resize(size); }

    /// Null while there has been no byte.
    unsigned char *GetElements() override { return reinterpret_cast<unsigned char *>(bytes_.GetBuffer()); }

    /// In bytes.
    uint32_t GetSize() const override { return bytes_.GetInternal().length; }

private:
    OrvMbCharHeapBuffer bytes_;
};

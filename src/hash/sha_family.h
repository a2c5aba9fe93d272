// What the SHA classes share: how input is counted and buffered, and how a message ends.

#pragma once

#include "hash/block_buffer.h"
#include "orv/base.h"
#include "orv/runtime/result.h"

namespace detail
{

/// Adds to a message whose length must stay within 32 bits.
template <uint32_t blockSize, typename Compress>
OrvResult AddSha(uint32_t &messageLength, uint8_t (&buffer)[blockSize], const uint8_t *data, uint32_t length,
                 Compress compress)
{
    if (length > UINT32_MAX - messageLength)
        return ORV_E_INVALID_DATA;
    const uint32_t index = messageLength % blockSize;
    messageLength += length;
    AddToBlocks(buffer, index, data, length, compress);
    return ORV_S_OK;
}

/// Pads the message with 0x80, zeros and `bitLength` in the last eight bytes, and takes the last blocks in.
/// `lengthSize` is the room that the standard keeps for the length.
template <uint32_t lengthSize, uint32_t blockSize, typename Compress>
void PadSha(uint32_t messageLength, uint64_t bitLength, uint8_t (&buffer)[blockSize], Compress compress)
{
    uint32_t index = messageLength % blockSize;
    buffer[index++] = 0x80;
    if (index > blockSize - lengthSize) {
        memset(buffer + index, 0, blockSize - index);
        compress(buffer, 1);
        index = 0;
    }
    memset(buffer + index, 0, blockSize - 8 - index);
    StoreBig32(buffer + blockSize - 8, static_cast<uint32_t>(bitLength >> 32));
    StoreBig32(buffer + blockSize - 4, static_cast<uint32_t>(bitLength));
    compress(buffer, 1);
}

inline uint32_t RotateRight(uint32_t word, uint32_t bits)
{
    return word >> bits | word << (32 - bits);
}

} // namespace detail

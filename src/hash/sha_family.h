// The part that the SHA classes share: the start and the end of a message, counting and buffering of input.
// The classes differ in the compression function, the size of its words, and how many bits of the length
// enter the digest.

#pragma once

#include "hash/block_buffer.h"
#include "orv/base.h"
#include "orv/runtime/result.h"

namespace detail
{

/// References to the state of a digest; its class owns it.
template <typename Word, uint32_t words, uint32_t blockSize>
struct ShaState {
    uint32_t &length;
    uint8_t (&buffer)[blockSize];
    Word (&chain)[words];
    uint32_t &finalized;

    typedef void Compress(Word (&chain)[words], const uint8_t *blocks, uint32_t count);

    void Start(const Word (&initial)[words]) const
    {
        length = 0;
        finalized = 0;
        for (uint32_t i = 0; i < words; i++)
            chain[i] = initial[i];
    }

    /// Returns 0, or ORV_E_INVALID_DATA when the length of the message would exceed 32 bits. After Finish
    /// nothing is added, because the chaining values are then the digest.
    OrvResult Add(const uint8_t *data, uint32_t count, Compress *compress) const
    {
        if (count > UINT32_MAX - length)
            return ORV_E_INVALID_DATA;
        if (finalized)
            return ORV_S_OK;
        const uint32_t index = length % blockSize;
        length += count;
        AddToBlocks(buffer, index, data, count, [this, compress](const uint8_t *blocks, uint32_t blockCount) {
            compress(chain, blocks, blockCount);
        });
        return ORV_S_OK;
    }

    /// Pads the message with 0x80, zeros and `bitLength`, compresses the last blocks, and turns the chaining
    /// values into the digest. The standard reserves two words for the length.
    void Finish(uint64_t bitLength, Compress *compress) const
    {
        if (finalized)
            return;
        uint32_t index = length % blockSize;
        buffer[index++] = 0x80;
        if (index > blockSize - 2 * sizeof(Word)) {
            memset(buffer + index, 0, blockSize - index);
            compress(chain, buffer, 1);
            index = 0;
        }
        memset(buffer + index, 0, blockSize - 8 - index);
        StoreBig32(buffer + blockSize - 8, static_cast<uint32_t>(bitLength >> 32));
        StoreBig32(buffer + blockSize - 4, static_cast<uint32_t>(bitLength));
        compress(chain, buffer, 1);
        for (Word &word : chain)
            word = ToBigEndian(word);
        finalized = 1;
    }

private:
    static uint32_t ToBigEndian(uint32_t word) { return __builtin_bswap32(word); }
    static uint64_t ToBigEndian(uint64_t word) { return __builtin_bswap64(word); }
};

inline uint32_t RotateRight(uint32_t word, uint32_t bits)
{
    return word >> bits | word << (32 - bits);
}

} // namespace detail

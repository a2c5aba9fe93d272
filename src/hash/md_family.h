// The part that MD4 and MD5 share: the input buffer, the length in bits, and the end of a message.

#pragma once

#include "hash/block_buffer.h"

namespace detail
{

constexpr uint32_t kMdBlock = 64;
constexpr uint32_t kMdInitial[4] = {0x67452301, 0xEFCDAB89, 0x98BADCFE, 0x10325476};

/// References to the state of either digest; the digest's class owns it.
struct MdState {
    uint32_t (&chain)[4];
    uint32_t &bitLengthLow;
    uint32_t &bitLengthHigh;
    uint8_t (&buffer)[kMdBlock];
};

inline uint32_t RotateLeft(uint32_t word, uint32_t bits)
{
    return word << bits | word >> (32 - bits);
}

inline void StartMd(const MdState &state)
{
    for (uint32_t i = 0; i < 4; i++)
        state.chain[i] = kMdInitial[i];
    state.bitLengthLow = 0;
    state.bitLengthHigh = 0;
}

typedef void MdCompress(uint32_t (&chain)[4], const uint8_t *blocks, uint32_t count);

template <MdCompress *compress>
void AddMd(const MdState &state, const uint8_t *data, uint32_t length)
{
    const uint32_t index = state.bitLengthLow / 8 % kMdBlock;
    state.bitLengthLow += length << 3;
    state.bitLengthHigh += (length >> 29) + (state.bitLengthLow < length << 3);
    AddToBlocks(state.buffer, index, data, length,
                [&state](const uint8_t *blocks, uint32_t count) { compress(state.chain, blocks, count); });
}

/// Pads the message, writes its digest and clears the whole state. The padding is 0x80 followed by zeros.
template <MdCompress *compress>
void FinishMd(const MdState &state, const uint8_t (&padding)[kMdBlock], uint8_t (&digest)[16])
{
    uint8_t length[8];
    StoreLittle32(length, state.bitLengthLow);
    StoreLittle32(length + 4, state.bitLengthHigh);
    constexpr uint32_t kLengthPlace = kMdBlock - sizeof length;
    const uint32_t index = state.bitLengthLow / 8 % kMdBlock;
    AddMd<compress>(state, padding, (index < kLengthPlace ? kLengthPlace : kLengthPlace + kMdBlock) - index);
    AddMd<compress>(state, length, sizeof length);
    for (uint32_t i = 0; i < 4; i++) {
        StoreLittle32(digest + 4 * i, state.chain[i]);
        state.chain[i] = 0;
    }
    state.bitLengthLow = 0;
    state.bitLengthHigh = 0;
    memset(state.buffer, 0, kMdBlock);
}

} // namespace detail

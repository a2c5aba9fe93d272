// How a digest takes its input: the compression function reads whole blocks directly from the caller's
// memory; only bytes that do not fill a block are copied. Also the loads and stores of little-endian and
// big-endian words.

#pragma once

#include "crt/memory.h"

#include <stdint.h>

namespace detail
{

/// Adds `length` bytes to a message of which `index` bytes are already in the buffer. `compress` is called
/// with a pointer to whole blocks and their number.
template <uint32_t blockSize, typename Compress>
void AddToBlocks(uint8_t (&buffer)[blockSize], uint32_t index, const uint8_t *data, uint32_t length,
                 Compress compress)
{
    if (length == 0) // `data` may be null then
        return;
    if (index) {
        const uint32_t room = blockSize - index;
        if (length < room) {
            memcpy(buffer + index, data, length);
            return;
        }
        memcpy(buffer + index, data, room);
        compress(buffer, 1);
        data += room;
        length -= room;
    }
    if (const uint32_t blocks = length / blockSize) {
        compress(data, blocks);
        data += blocks * blockSize;
        length %= blockSize;
    }
    memcpy(buffer, data, length);
}

inline uint32_t LoadLittle32(const uint8_t *bytes)
{
    uint32_t word = 0;
    __builtin_memcpy(&word, bytes, sizeof word);
    return word;
}

inline uint32_t LoadBig32(const uint8_t *bytes)
{
    return __builtin_bswap32(LoadLittle32(bytes));
}

inline uint64_t LoadBig64(const uint8_t *bytes)
{
    return static_cast<uint64_t>(LoadBig32(bytes)) << 32 | LoadBig32(bytes + 4);
}

inline void StoreLittle32(uint8_t *bytes, uint32_t word)
{
    __builtin_memcpy(bytes, &word, sizeof word);
}

inline void StoreBig32(uint8_t *bytes, uint32_t word)
{
    StoreLittle32(bytes, __builtin_bswap32(word));
}

} // namespace detail

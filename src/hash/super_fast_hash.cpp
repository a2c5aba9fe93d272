// SuperFastHash, a fast 32-bit hash that is not cryptographic.

#include "orv/hash/super_fast_hash.h"

#include "hash/block_buffer.h"

namespace
{

constexpr uint32_t kBlock = 4;

uint32_t Load16(const uint8_t *bytes)
{
    return bytes[0] | static_cast<uint32_t>(bytes[1]) << 8;
}

uint32_t MixBlock(uint32_t hash, uint32_t block)
{
    hash += block & 0xFFFF;
    const uint32_t upper = (block >> 16) << 11 ^ hash;
    hash = hash << 16 ^ upper;
    return hash + (hash >> 11);
}

uint32_t MixBlocks(uint32_t hash, const uint8_t *data, uint32_t blocks)
{
    for (; blocks; blocks--, data += kBlock)
        hash = MixBlock(hash, detail::LoadLittle32(data));
    return hash;
}

/// Mixes in the last bytes, up to three, and applies the final mixing.
uint32_t Finish(uint32_t hash, const uint8_t *tail, uint32_t length)
{
    switch (length) {
    case 3:
        hash += Load16(tail);
        hash ^= hash << 16;
        hash ^= static_cast<uint32_t>(tail[2]) << 18;
        hash += hash >> 11;
        break;
    case 2:
        hash += Load16(tail);
        hash ^= hash << 11;
        hash += hash >> 17;
        break;
    case 1:
        hash += tail[0];
        hash ^= hash << 10;
        hash += hash >> 1;
        break;
    default:
        break;
    }
    hash ^= hash << 3;
    hash += hash >> 5;
    hash ^= hash << 4;
    hash += hash >> 17;
    hash ^= hash << 25;
    return hash + (hash >> 6);
}

} // namespace

void OrvMiniSuperFastHash::Initialize()
{
    Reset(0);
}

void OrvMiniSuperFastHash::Reset(uint32_t seed)
{
    hash_ = seed;
    pendingCount_ = 0;
}

void OrvMiniSuperFastHash::Add(const uint8_t *data, uint32_t length)
{
    detail::AddToBlocks(pending_, pendingCount_, data, length, [this](const uint8_t *blocks, uint32_t count) {
        hash_ = MixBlocks(hash_, blocks, count);
    });
    pendingCount_ = static_cast<uint8_t>((pendingCount_ + length) % kBlock);
}

uint32_t OrvMiniSuperFastHash::Get()
{
    return Finish(hash_, pending_, pendingCount_);
}

uint32_t OrvMiniSuperFastHash::Get() const
{
    return Finish(hash_, pending_, pendingCount_);
}

uint32_t OrvMiniSuperFastHash::Hash(const uint8_t *begin, const uint8_t *end, uint32_t seed)
{
    const auto length = static_cast<uint32_t>(end - begin);
    const uint32_t blocks = length / kBlock;
    return Finish(MixBlocks(seed, begin, blocks), begin + blocks * kBlock, length % kBlock);
}

// SHA-1.

#include "orv/hash/sha1.h"

#include "hash/sha1_blocks.h"
#include "hash/sha_family.h"
#include "runtime/cpu.h"

namespace
{

constexpr uint32_t kInitial[5] = {0x67452301, 0xEFCDAB89, 0x98BADCFE, 0x10325476, 0xC3D2E1F0};

void Compress(uint32_t (&chain)[5], const uint8_t *blocks, uint32_t count)
{
    if (detail::CpuHas(detail::kCpuSha | detail::kCpuSsse3 | detail::kCpuSse41))
        detail::CompressSha1ByInstruction(chain, blocks, count);
    else
        detail::plain::CompressSha1(chain, blocks, count);
}

} // namespace

OrvMiniHashSha1::OrvMiniHashSha1() : buffer_{}
{
    Initialize();
}

void OrvMiniHashSha1::Initialize()
{
    length_ = 0;
    finalized_ = 0;
    for (uint32_t i = 0; i < 5; i++)
        chain_[i] = kInitial[i];
}

OrvResult OrvMiniHashSha1::Add(const uint8_t *data, uint32_t length)
{
    if (finalized_) // the chaining values are the digest now
        return length > UINT32_MAX - length_ ? ORV_E_INVALID_DATA : ORV_S_OK;
    return detail::AddSha(length_, buffer_, data, length,
                          [this](const uint8_t *blocks, uint32_t count) { Compress(chain_, blocks, count); });
}

void OrvMiniHashSha1::Finish()
{
    if (finalized_)
        return;
    // The product keeps 32 bits, and the upper half of the length stays 0.
    detail::PadSha<8>(length_, length_ * 8, buffer_,
                      [this](const uint8_t *blocks, uint32_t count) { Compress(chain_, blocks, count); });
    for (uint32_t &chainWord : chain_) {
        const uint32_t word = chainWord;
        auto *const bytes = reinterpret_cast<uint8_t *>(&chainWord);
        detail::StoreBig32(bytes, word);
    }
    finalized_ = 1;
}

void OrvMiniHashSha1::Get(HashType &digest)
{
    Finish();
    memcpy(&digest, chain_, sizeof digest);
}

OrvMiniHashSha1::HashType OrvMiniHashSha1::Get()
{
    HashType digest;
    Get(digest);
    return digest;
}

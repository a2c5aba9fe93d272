// SHA-256.

#include "orv/hash/sha256.h"

#include "hash/sha256_blocks.h"
#include "hash/sha_family.h"
#include "runtime/cpu.h"

namespace
{

constexpr uint32_t kInitial[8] = {0x6A09E667, 0xBB67AE85, 0x3C6EF372, 0xA54FF53A,
                                  0x510E527F, 0x9B05688C, 0x1F83D9AB, 0x5BE0CD19};

void Compress(uint32_t (&chain)[8], const uint8_t *blocks, uint32_t count)
{
    if (detail::CpuHas(detail::kCpuSha | detail::kCpuSsse3 | detail::kCpuSse41))
        detail::CompressSha256ByInstruction(chain, blocks, count);
    else
        detail::plain::CompressSha256(chain, blocks, count);
}

} // namespace

OrvMiniHashSha256::OrvMiniHashSha256() : buffer_{}
{
    Initialize();
}

void OrvMiniHashSha256::Initialize()
{
    length_ = 0;
    finalized_ = 0;
    for (uint32_t i = 0; i < 8; i++)
        chain_[i] = kInitial[i];
}

OrvResult OrvMiniHashSha256::Add(const uint8_t *data, uint32_t length)
{
    if (finalized_) // the chaining values are the digest now
        return length > UINT32_MAX - length_ ? ORV_E_INVALID_DATA : ORV_S_OK;
    return detail::AddSha(length_, buffer_, data, length,
                          [this](const uint8_t *blocks, uint32_t count) { Compress(chain_, blocks, count); });
}

void OrvMiniHashSha256::Finish()
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

void OrvMiniHashSha256::Get(HashType &digest)
{
    Finish();
    memcpy(&digest, chain_, sizeof digest);
}

OrvMiniHashSha256::HashType OrvMiniHashSha256::Get()
{
    HashType digest;
    Get(digest);
    return digest;
}

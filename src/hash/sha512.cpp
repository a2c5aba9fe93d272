// SHA-512.

#include "orv/hash/sha512.h"

#include "hash/sha512_blocks.h"
#include "hash/sha_family.h"

namespace
{

constexpr uint64_t kInitial[8] = {0x6A09E667F3BCC908, 0xBB67AE8584CAA73B, 0x3C6EF372FE94F82B,
                                  0xA54FF53A5F1D36F1, 0x510E527FADE682D1, 0x9B05688C2B3E6C1F,
                                  0x1F83D9ABFB41BD6B, 0x5BE0CD19137E2179};

void Compress(uint64_t (&chain)[8], const uint8_t *blocks, uint32_t count)
{
    detail::CompressSha512InVectors(chain, blocks, count);
}

} // namespace

OrvMiniHashSha512::OrvMiniHashSha512() : buffer_{}
{
    Initialize();
}

void OrvMiniHashSha512::Initialize()
{
    length_ = 0;
    finalized_ = 0;
    for (uint32_t i = 0; i < 8; i++)
        chain_[i] = kInitial[i];
}

OrvResult OrvMiniHashSha512::Add(const uint8_t *data, uint32_t length)
{
    if (finalized_) // the chaining values are the digest now
        return length > UINT32_MAX - length_ ? ORV_E_INVALID_DATA : ORV_S_OK;
    return detail::AddSha(length_, buffer_, data, length,
                          [this](const uint8_t *blocks, uint32_t count) { Compress(chain_, blocks, count); });
}

void OrvMiniHashSha512::Finish()
{
    if (finalized_)
        return;
    detail::PadSha<16>(length_, static_cast<uint64_t>(length_) * 8, buffer_,
                       [this](const uint8_t *blocks, uint32_t count) { Compress(chain_, blocks, count); });
    for (uint64_t &chainWord : chain_) {
        const uint64_t word = chainWord;
        auto *const bytes = reinterpret_cast<uint8_t *>(&chainWord);
        detail::StoreBig32(bytes, static_cast<uint32_t>(word >> 32));
        detail::StoreBig32(bytes + 4, static_cast<uint32_t>(word));
    }
    finalized_ = 1;
}

void OrvMiniHashSha512::Get(HashType &digest)
{
    Finish();
    memcpy(&digest, chain_, sizeof digest);
}

OrvMiniHashSha512::HashType OrvMiniHashSha512::Get()
{
    HashType digest;
    Get(digest);
    return digest;
}

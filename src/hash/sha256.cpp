// The SHA-256 message digest (FIPS 180-4).

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

typedef detail::ShaState<uint32_t, 8, detail::kSha256Block> State;

} // namespace

OrvMiniHashSha256::OrvMiniHashSha256() : buffer_{}
{
    Initialize();
}

void OrvMiniHashSha256::Initialize()
{
    State{length_, buffer_, chain_, finalized_}.Start(kInitial);
}

OrvResult OrvMiniHashSha256::Add(const uint8_t *data, uint32_t length)
{
    return State{length_, buffer_, chain_, finalized_}.Add(data, length, Compress);
}

void OrvMiniHashSha256::Finish()
{
    // The product is cut to 32 bits; the upper half of the length in bits is always 0.
    State{length_, buffer_, chain_, finalized_}.Finish(length_ * 8, Compress);
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

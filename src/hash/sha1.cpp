// The SHA-1 message digest (FIPS 180-4).

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

typedef detail::ShaState<uint32_t, 5, detail::kSha1Block> State;

} // namespace

OrvMiniHashSha1::OrvMiniHashSha1() : buffer_{}
{
    Initialize();
}

void OrvMiniHashSha1::Initialize()
{
    State{length_, buffer_, chain_, finalized_}.Start(kInitial);
}

OrvResult OrvMiniHashSha1::Add(const uint8_t *data, uint32_t length)
{
    return State{length_, buffer_, chain_, finalized_}.Add(data, length, Compress);
}

void OrvMiniHashSha1::Finish()
{
    // The product is cut to 32 bits; the upper half of the length in bits is always 0.
    State{length_, buffer_, chain_, finalized_}.Finish(length_ * 8, Compress);
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

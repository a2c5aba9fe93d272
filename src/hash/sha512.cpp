// The SHA-512 message digest (FIPS 180-4).

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

typedef detail::ShaState<uint64_t, 8, detail::kSha512Block> State;

} // namespace

OrvMiniHashSha512::OrvMiniHashSha512() : buffer_{}
{
    Initialize();
}

void OrvMiniHashSha512::Initialize()
{
    State{length_, buffer_, chain_, finalized_}.Start(kInitial);
}

OrvResult OrvMiniHashSha512::Add(const uint8_t *data, uint32_t length)
{
    return State{length_, buffer_, chain_, finalized_}.Add(data, length, Compress);
}

void OrvMiniHashSha512::Finish()
{
    // Unlike in SHA-1 and SHA-256, no bit of the length is cut off.
    State{length_, buffer_, chain_, finalized_}.Finish(static_cast<uint64_t>(length_) * 8, Compress);
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

// Computes digests: one loop for every algorithm. The algorithms differ only in how they return the digest.

#include "digest.h"

#include "orv/hash/crc32.h"
#include "orv/hash/md4.h"
#include "orv/hash/md5.h"
#include "orv/hash/sha1.h"
#include "orv/hash/sha256.h"
#include "orv/hash/sha512.h"
#include "orv/hash/super_fast_hash.h"
#include "orv/runtime/result.h"

namespace orvtool
{

namespace
{

void Store(uint8_t *digest, uint32_t checksum)
{
    for (int shift = 24; shift >= 0; shift -= 8)
        *digest++ = static_cast<uint8_t>(checksum >> shift);
}

template <typename HashType>
void Store(uint8_t *digest, const HashType &hash)
{
    for (const uint8_t byte : hash.bytes)
        *digest++ = byte;
}

template <typename Hash>
void Finish(Hash &hash, uint8_t *digest)
{
    Store(digest, hash.Get());
}

void Finish(OrvMiniHashMd4 &hash, uint8_t *digest)
{
    uint8_t bytes[16];
    hash.Get(bytes);
    for (const uint8_t byte : bytes)
        *digest++ = byte;
}

/// Adds a piece. Some algorithms take a message of any length, and their Add returns nothing. The others
/// refuse a message that becomes too long.
template <typename Hash>
OrvResult Add(Hash &hash, const uint8_t *piece, uint32_t count)
{
    if constexpr (__is_void(decltype(hash.Add(piece, count)))) {
        hash.Add(piece, count);
        return ORV_S_OK;
    } else {
        return OrvFailed(hash.Add(piece, count)) ? ORV_E_BAD_LENGTH : ORV_S_OK;
    }
}

template <typename Hash>
OrvResult DigestInput(Input &input, Progress &progress, uint8_t *piece, uint64_t mostBytes, uint8_t *digest)
{
    Hash hash;
    uint64_t length = 0;
    for (uint32_t count = Digester::kPieceSize; count == Digester::kPieceSize;) {
        OrvResult result = input.Read(piece, Digester::kPieceSize, count);
        length += count;
        if (OrvSucceeded(result))
            result = length > mostBytes ? ORV_E_BAD_LENGTH : Add(hash, piece, count);
        if (OrvFailed(result))
            return result;
        progress.Advance(count);
    }
    Finish(hash, digest);
    return ORV_S_OK;
}

constexpr LengthLimit kNoLimit = {UINT64_MAX, L"", L""};
constexpr LengthLimit kBitsIn32Bits = {(512u << 20) - 1, L"512 MiB",
                                       L"sha512 for less than 4 GiB, or md5 for any length"};
constexpr LengthLimit kBytesIn32Bits = {UINT32_MAX, L"4 GiB", L"md5, which takes any length"};

/// Of several algorithms with the same size of digest the best known comes first.
constexpr Algorithm kAlgorithms[] = {
    {L"crc32", 4, kNoLimit, DigestInput<OrvMiniHashCrc32>},
    {L"crc32c", 4, kNoLimit, DigestInput<OrvMiniHashCrc32C>},
    {L"superfast", 4, kNoLimit, DigestInput<OrvMiniSuperFastHash>},
    {L"md5", 16, kNoLimit, DigestInput<OrvMiniHashMd5>},
    {L"md4", 16, kNoLimit, DigestInput<OrvMiniHashMd4>},
    {L"sha1", 20, kBitsIn32Bits, DigestInput<OrvMiniHashSha1>},
    {L"sha256", 32, kBitsIn32Bits, DigestInput<OrvMiniHashSha256>},
    {L"sha512", kLongestDigest, kBytesIn32Bits, DigestInput<OrvMiniHashSha512>},
};

} // namespace

const Algorithm *FindAlgorithm(const wchar_t *name)
{
    for (const Algorithm &algorithm : kAlgorithms) {
        if (Equal(algorithm.name, name))
            return &algorithm;
    }
    return nullptr;
}

const Algorithm *FindAlgorithm(uint32_t digestSize)
{
    for (const Algorithm &algorithm : kAlgorithms) {
        if (algorithm.digestSize == digestSize)
            return &algorithm;
    }
    return nullptr;
}

OrvResult Digester::Digest(const Algorithm &algorithm, Stream &error, Input &input,
                           uint8_t (&digest)[kLongestDigest])
{
    if (!piece_)
        return ORV_E_OUT_OF_MEMORY;
    const uint64_t size = input.Size();
    if (size > algorithm.limit.mostBytes)
        return ORV_E_BAD_LENGTH;
    Progress progress(error, size);
    return algorithm.digest(input, progress, piece_.Get(), algorithm.limit.mostBytes, digest);
}

} // namespace orvtool

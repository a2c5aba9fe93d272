// The hash family, compared with other code that computes the same: zlib, ntdll.dll's own digests, and our plain
// kernels. The size of a row is the number of bytes in a message.

#include "bench.h"

#include "hash/crc32_kernels.h"
#include "hash/sha256_blocks.h"
#include "hash/sha512_blocks.h"
#include "nt/programs.h"
#include "orv/orv.h"

#include <zlib.h>

namespace
{

constexpr uint32_t kMost = 1 << 20;
constexpr uint32_t kSizes[] = {64, 4096, kMost};

uint8_t data[kMost];

/// Hashes a message with a class of ours.
template <typename Hash>
void Digest(uint32_t size)
{
    Hash hash;
    hash.Add(data, size);
    bench::Use(hash.Get());
}

/// Hashes the whole blocks of the message, one at least, with a plain kernel. The padding is omitted, which favours
/// the peer.
template <typename Word, uint32_t words>
void CompressPlain(void (*compress)(Word (&)[words], const uint8_t *, uint32_t), uint32_t blocks)
{
    Word chain[words] = {};
    compress(chain, data, blocks ? blocks : 1);
    bench::Use(chain);
}

} // namespace

BENCHMARK(HashChecksums)
{
    for (const uint32_t size : kSizes) {
        bench::Compare(
            {"CRC-32", size, "zlib"}, [size] { Digest<OrvMiniHashCrc32>(size); },
            [size] { bench::Use(crc32(0, data, size)); });
        bench::Compare(
            {"CRC-32C", size, "a table"}, [size] { Digest<OrvMiniHashCrc32C>(size); },
            [size] { bench::Use(detail::plain::UpdateCrc32C(0, data, size)); });
    }
}

BENCHMARK(HashDigests)
{
    for (const uint32_t size : kSizes) {
        bench::Compare(
            {"MD4", size, "MD4Update"},
            [size] {
                OrvMiniHashMd4 hash;
                uint8_t digest[16];
                hash.Add(data, size);
                hash.Get(digest);
                bench::Use(digest);
            },
            [size] {
                MD4_CTX context;
                MD4Init(&context);
                MD4Update(&context, data, size);
                MD4Final(&context);
                bench::Use(context);
            });
        bench::Compare(
            {"MD5", size, "MD5Update"}, [size] { Digest<OrvMiniHashMd5>(size); },
            [size] {
                MD5_CTX context;
                MD5Init(&context);
                MD5Update(&context, data, size);
                MD5Final(&context);
                bench::Use(context);
            });
        bench::Compare(
            {"SHA-1", size, "A_SHAUpdate"}, [size] { Digest<OrvMiniHashSha1>(size); },
            [size] {
                SHA_CTX context;
                ULONG digest[5];
                A_SHAInit(&context);
                A_SHAUpdate(&context, data, size);
                A_SHAFinal(&context, digest);
                bench::Use(digest);
            });
        bench::Compare(
            {"SHA-256", size, "plain kernel"}, [size] { Digest<OrvMiniHashSha256>(size); },
            [size] { CompressPlain(detail::plain::CompressSha256, size / detail::kSha256Block); });
        bench::Compare(
            {"SHA-512", size, "plain kernel"}, [size] { Digest<OrvMiniHashSha512>(size); },
            [size] { CompressPlain(detail::plain::CompressSha512, size / detail::kSha512Block); });
    }
}

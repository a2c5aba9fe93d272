// The plain kernels and the wide ones give the same answers, on every length and alignment, where the
// processor has what they need. A processor without it leaves the plain kernels, which the vectors test.

#include "harness/memory.h"
#include "harness/test.h"
#include "hash/crc32_kernels.h"
#include "hash/messages.h"
#include "hash/sha1_blocks.h"
#include "hash/sha256_blocks.h"
#include "hash/sha512_blocks.h"
#include "runtime/cpu.h"

namespace
{

using test::kMessage;

/// Three blocks at every address within a vector.
template <typename Word, uint32_t words>
void CheckBlocks(void (*plain)(Word (&)[words], const uint8_t *, uint32_t),
                 void (*wide)(Word (&)[words], const uint8_t *, uint32_t), uint32_t blockSize)
{
    constexpr uint32_t kMostBlocks = 2;
    test::GuardedPages pages;
    for (uint32_t offset = 0; offset < test::kSlacks; offset++) {
        for (uint32_t count = 0; count <= kMostBlocks; count++) {
            test::Note("offset", offset);
            Word expected[words];
            Word actual[words];
            for (uint32_t i = 0; i < words; i++)
                expected[i] = actual[i] = static_cast<Word>(0x0123456789ABCDEF * (i + 1));
            const uint8_t *const blocks = pages.Copy(kMessage.bytes, count * blockSize, offset);
            plain(expected, blocks, count);
            wide(actual, blocks, count);
            CHECK(__builtin_memcmp(actual, expected, sizeof expected) == 0);
        }
    }
}

} // namespace

TEST_CASE(WideBlocksEqualPlainBlocks)
{
    if (detail::CpuHas(detail::kCpuSha | detail::kCpuSsse3 | detail::kCpuSse41)) {
        CheckBlocks<uint32_t, 5>(detail::plain::CompressSha1, detail::CompressSha1ByInstruction,
                                 detail::kSha1Block);
        CheckBlocks<uint32_t, 8>(detail::plain::CompressSha256, detail::CompressSha256ByInstruction,
                                 detail::kSha256Block);
    }
    CheckBlocks<uint64_t, 8>(detail::plain::CompressSha512, detail::CompressSha512InVectors,
                             detail::kSha512Block);
}

TEST_CASE(WideChecksumsEqualPlainOnes)
{
    static uint8_t data[7000];
    for (uint32_t i = 0; i < sizeof data; i++)
        data[i] = static_cast<uint8_t>(i * i * 7 + i * 31 + 5);
    test::GuardedPages pages(sizeof data);
    for (uint32_t length = 0; length < 6600; length += length < 400 ? 1 : 97) {
        for (uint32_t offset = 0; offset < test::kSlacks; offset += 1 + length / 100) {
            test::Note("length", length);
            const uint8_t *const bytes = pages.Copy(data, length, offset);
            if (length >= detail::kWideCrcBytes && detail::CpuHas(detail::kCpuPclmulqdq))
                CHECK_EQUAL(detail::UpdateCrc32ByFolding(length, bytes, length),
                            detail::plain::UpdateCrc32(length, bytes, length));
            if (detail::CpuHas(detail::kCpuSse42))
                CHECK_EQUAL(detail::UpdateCrc32CByInstruction(~length, bytes, length),
                            detail::plain::UpdateCrc32C(~length, bytes, length));
        }
    }
}

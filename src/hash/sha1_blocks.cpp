// The compression function of SHA-1, in plain code and with the SHA instructions.

#include "hash/sha1_blocks.h"

#include "hash/md_family.h"

#include <immintrin.h>

namespace detail
{

namespace plain
{

void CompressSha1(uint32_t (&chain)[5], const uint8_t *blocks, uint32_t count)
{
    static constexpr uint32_t kConstants[4] = {0x5A827999, 0x6ED9EBA1, 0x8F1BBCDC, 0xCA62C1D6};
    for (; count; count--, blocks += kSha1Block) {
        uint32_t schedule[16];
        uint32_t a = chain[0];
        uint32_t b = chain[1];
        uint32_t c = chain[2];
        uint32_t d = chain[3];
        uint32_t e = chain[4];
#pragma clang loop unroll_count(20)
        for (uint32_t step = 0; step < 80; step++) {
            uint32_t &word = schedule[step % 16];
            if (step < 16)
                word = LoadBig32(blocks + 4 * step);
            else
                word = RotateLeft(word ^ schedule[(step + 2) % 16] ^ schedule[(step + 8) % 16] ^
                                      schedule[(step + 13) % 16],
                                  1);
            uint32_t mixed = b ^ c ^ d;
            if (step < 20)
                mixed = d ^ (b & (c ^ d));
            else if (step >= 40 && step < 60)
                mixed = (b & (c | d)) | (c & d);
            const uint32_t sum = RotateLeft(a, 5) + mixed + e + kConstants[step / 20] + word;
            e = d;
            d = c;
            c = RotateLeft(b, 30);
            b = a;
            a = sum;
        }
        chain[0] += a;
        chain[1] += b;
        chain[2] += c;
        chain[3] += d;
        chain[4] += e;
    }
}

} // namespace plain

// The instructions compute four rounds at a time. One register holds a, b, c and d; the upper lane of another
// holds e. The schedule is computed four words at a time, each group of four from the four groups before it.

__attribute__((target("sha,ssse3,sse4.1"))) void CompressSha1ByInstruction(uint32_t (&chain)[5],
                                                                           const uint8_t *blocks,
                                                                           uint32_t count)
{
    const __m128i bigEndian = _mm_set_epi64x(0x0001020304050607, 0x08090A0B0C0D0E0F);
    __m128i abcd = _mm_shuffle_epi32(_mm_loadu_si128(reinterpret_cast<const __m128i *>(chain)), 0x1B);
    __m128i e = _mm_set_epi32(static_cast<int>(chain[4]), 0, 0, 0);
    for (; count; count--, blocks += kSha1Block) {
        const __m128i abcdBefore = abcd;
        const __m128i eBefore = e;
        __m128i words[4];
        __m128i previous = abcd;
#pragma clang loop unroll(full)
        for (uint32_t group = 0; group < 20; group++) {
            __m128i &word = words[group % 4];
            if (group < 4) {
                word = _mm_shuffle_epi8(_mm_loadu_si128(reinterpret_cast<const __m128i *>(blocks) + group),
                                        bigEndian);
            } else {
                const __m128i partial =
                    _mm_xor_si128(_mm_sha1msg1_epu32(word, words[(group + 1) % 4]), words[(group + 2) % 4]);
                word = _mm_sha1msg2_epu32(partial, words[(group + 3) % 4]);
            }
            // The first four rounds add e itself; later rounds derive e from the a of four rounds before.
            const __m128i sum = group == 0 ? _mm_add_epi32(e, word) : _mm_sha1nexte_epu32(previous, word);
            previous = abcd;
            if (group < 5)
                abcd = _mm_sha1rnds4_epu32(abcd, sum, 0);
            else if (group < 10)
                abcd = _mm_sha1rnds4_epu32(abcd, sum, 1);
            else if (group < 15)
                abcd = _mm_sha1rnds4_epu32(abcd, sum, 2);
            else
                abcd = _mm_sha1rnds4_epu32(abcd, sum, 3);
        }
        e = _mm_sha1nexte_epu32(previous, eBefore);
        abcd = _mm_add_epi32(abcd, abcdBefore);
    }
    _mm_storeu_si128(reinterpret_cast<__m128i *>(chain), _mm_shuffle_epi32(abcd, 0x1B));
    chain[4] = static_cast<uint32_t>(_mm_extract_epi32(e, 3));
}

} // namespace detail

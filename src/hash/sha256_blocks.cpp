// The compression function of SHA-256, in plain code and with the SHA instructions.

#include "hash/sha256_blocks.h"

#include "hash/sha_family.h"

#include <immintrin.h>

namespace detail
{

namespace
{

alignas(16) constexpr uint32_t kConstants[64] = {
    0x428A2F98, 0x71374491, 0xB5C0FBCF, 0xE9B5DBA5, 0x3956C25B, 0x59F111F1, 0x923F82A4, 0xAB1C5ED5,
    0xD807AA98, 0x12835B01, 0x243185BE, 0x550C7DC3, 0x72BE5D74, 0x80DEB1FE, 0x9BDC06A7, 0xC19BF174,
    0xE49B69C1, 0xEFBE4786, 0x0FC19DC6, 0x240CA1CC, 0x2DE92C6F, 0x4A7484AA, 0x5CB0A9DC, 0x76F988DA,
    0x983E5152, 0xA831C66D, 0xB00327C8, 0xBF597FC7, 0xC6E00BF3, 0xD5A79147, 0x06CA6351, 0x14292967,
    0x27B70A85, 0x2E1B2138, 0x4D2C6DFC, 0x53380D13, 0x650A7354, 0x766A0ABB, 0x81C2C92E, 0x92722C85,
    0xA2BFE8A1, 0xA81A664B, 0xC24B8B70, 0xC76C51A3, 0xD192E819, 0xD6990624, 0xF40E3585, 0x106AA070,
    0x19A4C116, 0x1E376C08, 0x2748774C, 0x34B0BCB5, 0x391C0CB3, 0x4ED8AA4A, 0x5B9CCA4F, 0x682E6FF3,
    0x748F82EE, 0x78A5636F, 0x84C87814, 0x8CC70208, 0x90BEFFFA, 0xA4506CEB, 0xBEF9A3F7, 0xC67178F2,
};

} // namespace

namespace plain
{

void CompressSha256(uint32_t (&chain)[8], const uint8_t *blocks, uint32_t count)
{
    for (; count; count--, blocks += kSha256Block) {
        uint32_t schedule[16];
        uint32_t s[8];
        for (uint32_t i = 0; i < 8; i++)
            s[i] = chain[i];
#pragma clang loop unroll_count(16)
        for (uint32_t step = 0; step < 64; step++) {
            uint32_t &word = schedule[step % 16];
            if (step < 16) {
                word = LoadBig32(blocks + 4 * step);
            } else {
                const uint32_t early = schedule[(step + 1) % 16];
                const uint32_t late = schedule[(step + 14) % 16];
                word += (RotateRight(early, 7) ^ RotateRight(early, 18) ^ early >> 3) +
                        schedule[(step + 9) % 16] +
                        (RotateRight(late, 17) ^ RotateRight(late, 19) ^ late >> 10);
            }
            // The eight words change their roles (a to h) with each step.
            const uint32_t a = s[(64 - step) % 8];
            const uint32_t b = s[(65 - step) % 8];
            const uint32_t c = s[(66 - step) % 8];
            uint32_t &d = s[(67 - step) % 8];
            const uint32_t e = s[(68 - step) % 8];
            const uint32_t f = s[(69 - step) % 8];
            const uint32_t g = s[(70 - step) % 8];
            uint32_t &h = s[(71 - step) % 8];
            const uint32_t sum = h + (RotateRight(e, 6) ^ RotateRight(e, 11) ^ RotateRight(e, 25)) +
                                 (g ^ (e & (f ^ g))) + kConstants[step] + word;
            d += sum;
            h = sum + (RotateRight(a, 2) ^ RotateRight(a, 13) ^ RotateRight(a, 22)) +
                ((a & (b | c)) | (b & c));
        }
        for (uint32_t i = 0; i < 8; i++)
            chain[i] += s[i];
    }
}

} // namespace plain

// The instructions compute two rounds at a time. One register holds a, b, e, f and another c, d, g, h; the
// lower half of a third holds the sums of words and constants for the two rounds. The schedule is computed
// four words at a time, each group of four from the four groups before it.

__attribute__((target("sha,ssse3,sse4.1"))) void CompressSha256ByInstruction(uint32_t (&chain)[8],
                                                                             const uint8_t *blocks,
                                                                             uint32_t count)
{
    const __m128i bigEndian = _mm_set_epi64x(0x0C0D0E0F08090A0B, 0x0405060700010203);
    auto *const halves = reinterpret_cast<__m128i *>(chain);
    const __m128i cdab = _mm_shuffle_epi32(_mm_loadu_si128(halves), 0xB1);
    const __m128i efgh = _mm_shuffle_epi32(_mm_loadu_si128(halves + 1), 0x1B);
    __m128i abef = _mm_alignr_epi8(cdab, efgh, 8);
    __m128i cdgh = _mm_blend_epi16(efgh, cdab, 0xF0);
    for (; count; count--, blocks += kSha256Block) {
        const __m128i abefBefore = abef;
        const __m128i cdghBefore = cdgh;
        __m128i words[4];
#pragma clang loop unroll(full)
        for (uint32_t group = 0; group < 16; group++) {
            __m128i &word = words[group % 4];
            if (group < 4) {
                word = _mm_shuffle_epi8(_mm_loadu_si128(reinterpret_cast<const __m128i *>(blocks) + group),
                                        bigEndian);
            } else {
                const __m128i &last = words[(group + 3) % 4];
                const __m128i seventh = _mm_alignr_epi8(last, words[(group + 2) % 4], 4);
                word = _mm_sha256msg2_epu32(
                    _mm_add_epi32(_mm_sha256msg1_epu32(word, words[(group + 1) % 4]), seventh), last);
            }
            const __m128i sum =
                _mm_add_epi32(word, _mm_load_si128(reinterpret_cast<const __m128i *>(kConstants) + group));
            cdgh = _mm_sha256rnds2_epu32(cdgh, abef, sum);
            abef = _mm_sha256rnds2_epu32(abef, cdgh, _mm_shuffle_epi32(sum, 0x0E));
        }
        abef = _mm_add_epi32(abef, abefBefore);
        cdgh = _mm_add_epi32(cdgh, cdghBefore);
    }
    const __m128i feba = _mm_shuffle_epi32(abef, 0x1B);
    const __m128i dchg = _mm_shuffle_epi32(cdgh, 0xB1);
    _mm_storeu_si128(halves, _mm_blend_epi16(feba, dchg, 0xF0));
    _mm_storeu_si128(halves + 1, _mm_alignr_epi8(dchg, feba, 8));
}

} // namespace detail

// The compression function of SHA-512, in plain code and with SSE2.

#include "hash/sha512_blocks.h"

#include "hash/block_buffer.h"

#include <emmintrin.h>

namespace detail
{

namespace
{

alignas(16) constexpr uint64_t kConstants[80] = {
    0x428A2F98D728AE22, 0x7137449123EF65CD, 0xB5C0FBCFEC4D3B2F, 0xE9B5DBA58189DBBC, 0x3956C25BF348B538,
    0x59F111F1B605D019, 0x923F82A4AF194F9B, 0xAB1C5ED5DA6D8118, 0xD807AA98A3030242, 0x12835B0145706FBE,
    0x243185BE4EE4B28C, 0x550C7DC3D5FFB4E2, 0x72BE5D74F27B896F, 0x80DEB1FE3B1696B1, 0x9BDC06A725C71235,
    0xC19BF174CF692694, 0xE49B69C19EF14AD2, 0xEFBE4786384F25E3, 0x0FC19DC68B8CD5B5, 0x240CA1CC77AC9C65,
    0x2DE92C6F592B0275, 0x4A7484AA6EA6E483, 0x5CB0A9DCBD41FBD4, 0x76F988DA831153B5, 0x983E5152EE66DFAB,
    0xA831C66D2DB43210, 0xB00327C898FB213F, 0xBF597FC7BEEF0EE4, 0xC6E00BF33DA88FC2, 0xD5A79147930AA725,
    0x06CA6351E003826F, 0x142929670A0E6E70, 0x27B70A8546D22FFC, 0x2E1B21385C26C926, 0x4D2C6DFC5AC42AED,
    0x53380D139D95B3DF, 0x650A73548BAF63DE, 0x766A0ABB3C77B2A8, 0x81C2C92E47EDAEE6, 0x92722C851482353B,
    0xA2BFE8A14CF10364, 0xA81A664BBC423001, 0xC24B8B70D0F89791, 0xC76C51A30654BE30, 0xD192E819D6EF5218,
    0xD69906245565A910, 0xF40E35855771202A, 0x106AA07032BBD1B8, 0x19A4C116B8D2D0C8, 0x1E376C085141AB53,
    0x2748774CDF8EEB99, 0x34B0BCB5E19B48A8, 0x391C0CB3C5C95A63, 0x4ED8AA4AE3418ACB, 0x5B9CCA4F7763E373,
    0x682E6FF3D6B2B8A3, 0x748F82EE5DEFB2FC, 0x78A5636F43172F60, 0x84C87814A1F0AB72, 0x8CC702081A6439EC,
    0x90BEFFFA23631E28, 0xA4506CEBDE82BDE9, 0xBEF9A3F7B2C67915, 0xC67178F2E372532B, 0xCA273ECEEA26619C,
    0xD186B8C721C0C207, 0xEADA7DD6CDE0EB1E, 0xF57D4F7FEE6ED178, 0x06F067AA72176FBA, 0x0A637DC5A2C898A6,
    0x113F9804BEF90DAE, 0x1B710B35131C471B, 0x28DB77F523047D84, 0x32CAAB7B40C72493, 0x3C9EBE0A15C9BEBC,
    0x431D67C49C100D4C, 0x4CC5D4BECB3E42B6, 0x597F299CFC657E2A, 0x5FCB6FAB3AD6FAEC, 0x6C44198C4A475817,
};

uint64_t RotateRight64(uint64_t word, uint32_t bits)
{
    return word >> bits | word << (64 - bits);
}

} // namespace

namespace plain
{

void CompressSha512(uint64_t (&chain)[8], const uint8_t *blocks, uint32_t count)
{
    for (; count; count--, blocks += kSha512Block) {
        uint64_t schedule[16];
        uint64_t s[8];
        for (uint32_t i = 0; i < 8; i++)
            s[i] = chain[i];
#pragma clang loop unroll_count(16)
        for (uint32_t step = 0; step < 80; step++) {
            uint64_t &word = schedule[step % 16];
            if (step < 16) {
                word = LoadBig64(blocks + 8 * step);
            } else {
                const uint64_t early = schedule[(step + 1) % 16];
                const uint64_t late = schedule[(step + 14) % 16];
                word += (RotateRight64(early, 1) ^ RotateRight64(early, 8) ^ early >> 7) +
                        schedule[(step + 9) % 16] +
                        (RotateRight64(late, 19) ^ RotateRight64(late, 61) ^ late >> 6);
            }
            // The eight words change their roles (a to h) with each step.
            const uint64_t a = s[(80 - step) % 8];
            const uint64_t b = s[(81 - step) % 8];
            const uint64_t c = s[(82 - step) % 8];
            uint64_t &d = s[(83 - step) % 8];
            const uint64_t e = s[(84 - step) % 8];
            const uint64_t f = s[(85 - step) % 8];
            const uint64_t g = s[(86 - step) % 8];
            uint64_t &h = s[(87 - step) % 8];
            const uint64_t sum = h + (RotateRight64(e, 14) ^ RotateRight64(e, 18) ^ RotateRight64(e, 41)) +
                                 (g ^ (e & (f ^ g))) + kConstants[step] + word;
            d += sum;
            h = sum + (RotateRight64(a, 28) ^ RotateRight64(a, 34) ^ RotateRight64(a, 39)) +
                ((a & (b | c)) | (b & c));
        }
        for (uint32_t i = 0; i < 8; i++)
            chain[i] += s[i];
    }
}

} // namespace plain

// In general registers, 32-bit code needs two registers and carries for each 64-bit word. A vector register
// holds such words whole: one word in the rounds, two words in the schedule.

namespace
{

template <int bits>
__m128i Rotate(__m128i words)
{
    return _mm_or_si128(_mm_srli_epi64(words, bits), _mm_slli_epi64(words, 64 - bits));
}

__m128i Xor(__m128i first, __m128i second, __m128i third)
{
    return _mm_xor_si128(_mm_xor_si128(first, second), third);
}

/// The upper word of `low` and the lower one of `high`.
__m128i Middle(__m128i low, __m128i high)
{
    return _mm_castpd_si128(_mm_shuffle_pd(_mm_castsi128_pd(low), _mm_castsi128_pd(high), 1));
}

__m128i LoadBigPair(const uint8_t *bytes)
{
    const __m128i pair = _mm_loadu_si128(reinterpret_cast<const __m128i *>(bytes));
    const __m128i swapped = _mm_or_si128(_mm_srli_epi16(pair, 8), _mm_slli_epi16(pair, 8));
    return _mm_shufflehi_epi16(_mm_shufflelo_epi16(swapped, 0x1B), 0x1B);
}

/// The element of s that has the role of `letter` (0 for a, up to 7 for h) in this step.
__m128i *Turn(__m128i (&s)[8], uint32_t step, uint32_t letter)
{
    return &s[(80 - step + letter) % 8];
}

/// One round, computed on the lower words.
inline __attribute__((always_inline)) void Round(__m128i (&s)[8], uint32_t step, __m128i wordAndConstant)
{
    const __m128i a = *Turn(s, step, 0);
    const __m128i b = *Turn(s, step, 1);
    const __m128i c = *Turn(s, step, 2);
    __m128i &d = *Turn(s, step, 3);
    const __m128i e = *Turn(s, step, 4);
    const __m128i f = *Turn(s, step, 5);
    const __m128i g = *Turn(s, step, 6);
    __m128i &h = *Turn(s, step, 7);
    const __m128i choice = _mm_xor_si128(g, _mm_and_si128(e, _mm_xor_si128(f, g)));
    const __m128i majority = _mm_or_si128(_mm_and_si128(a, _mm_or_si128(b, c)), _mm_and_si128(b, c));
    __m128i sum = _mm_add_epi64(_mm_add_epi64(h, wordAndConstant), choice);
    sum = _mm_add_epi64(sum, Xor(Rotate<14>(e), Rotate<18>(e), Rotate<41>(e)));
    d = _mm_add_epi64(d, sum);
    h = _mm_add_epi64(_mm_add_epi64(sum, majority), Xor(Rotate<28>(a), Rotate<34>(a), Rotate<39>(a)));
}

} // namespace

void CompressSha512InVectors(uint64_t (&chain)[8], const uint8_t *blocks, uint32_t count)
{
    __m128i s[8];
    for (uint32_t i = 0; i < 8; i++)
        s[i] = _mm_loadl_epi64(reinterpret_cast<const __m128i *>(&chain[i]));
    for (; count; count--, blocks += kSha512Block) {
        __m128i before[8];
        for (uint32_t i = 0; i < 8; i++)
            before[i] = s[i];
        __m128i schedule[8];
#pragma clang loop unroll_count(8)
        for (uint32_t pair = 0; pair < 40; pair++) {
            __m128i &words = schedule[pair % 8];
            if (pair < 8) {
                words = LoadBigPair(blocks + 16 * pair);
            } else {
                const __m128i early = Middle(words, schedule[(pair + 1) % 8]);
                const __m128i late = schedule[(pair + 7) % 8];
                const __m128i ninth = Middle(schedule[(pair + 4) % 8], schedule[(pair + 5) % 8]);
                words = _mm_add_epi64(
                    _mm_add_epi64(words, ninth),
                    _mm_add_epi64(Xor(Rotate<1>(early), Rotate<8>(early), _mm_srli_epi64(early, 7)),
                                  Xor(Rotate<19>(late), Rotate<61>(late), _mm_srli_epi64(late, 6))));
            }
            const __m128i sums =
                _mm_add_epi64(words, _mm_load_si128(reinterpret_cast<const __m128i *>(kConstants) + pair));
            Round(s, 2 * pair, sums);
            Round(s, 2 * pair + 1, _mm_unpackhi_epi64(sums, sums));
        }
        for (uint32_t i = 0; i < 8; i++)
            s[i] = _mm_add_epi64(s[i], before[i]);
    }
    for (uint32_t i = 0; i < 8; i++)
        _mm_storel_epi64(reinterpret_cast<__m128i *>(&chain[i]), s[i]);
}

} // namespace detail

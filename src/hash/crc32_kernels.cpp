// The implementations of CRC-32 and CRC-32C: by a table, one byte at a time, and by the processor's
// instructions, many bytes at a time.
//
// Both polynomials are reflected: bit 31 of a word is the coefficient of x^0. The compiler computes all
// tables and constants here from the polynomials.

#include "hash/crc32_kernels.h"

#include <nmmintrin.h>
#include <wmmintrin.h>

namespace detail
{

namespace
{

constexpr uint32_t kPolynomial = 0xEDB88320;
constexpr uint32_t kPolynomialC = 0x82F63B78;

/// A word times x, modulo the polynomial.
constexpr uint32_t TimesX(uint32_t word, uint32_t polynomial)
{
    return word >> 1 ^ (word & 1 ? polynomial : 0);
}

struct ByteTable {
    uint32_t entries[256];

    explicit constexpr ByteTable(uint32_t polynomial) : entries{}
    {
        for (uint32_t byte = 0; byte < 256; byte++) {
            uint32_t word = byte;
            for (uint32_t bit = 0; bit < 8; bit++)
                word = TimesX(word, polynomial);
            entries[byte] = word;
        }
    }
};

constexpr ByteTable kTable(kPolynomial);
constexpr ByteTable kTableC(kPolynomialC);

uint32_t UpdateByTable(const ByteTable &table, uint32_t crc, const uint8_t *data, uint32_t length)
{
    for (; length; length--)
        crc = crc >> 8 ^ table.entries[(crc ^ *data++) & 0xFF];
    return crc;
}

} // namespace

namespace plain
{

uint32_t UpdateCrc32(uint32_t crc, const uint8_t *data, uint32_t length)
{
    return UpdateByTable(kTable, crc, data, length);
}

uint32_t UpdateCrc32C(uint32_t crc, const uint8_t *data, uint32_t length)
{
    return UpdateByTable(kTableC, crc, data, length);
}

} // namespace plain

// Folding. 128 bits of the message, moved by D bits, are congruent to the sum of two products of 64 by 33
// bits: the lower half times x^(D+32) and the upper half times x^(D-32). So the start of a message can be
// folded into the bytes that follow, 128 bits at a time and four such lanes in parallel, until 128 bits are
// left. They have the same remainder as the whole message.

namespace
{

/// x^power modulo the polynomial, shifted as the carry-less multiplication needs its second operand.
constexpr uint64_t FoldingConstant(uint32_t power)
{
    uint32_t word = 0x80000000; // x^0
    while (power--)
        word = TimesX(word, kPolynomial);
    return static_cast<uint64_t>(word) << 1;
}

constexpr uint32_t kLaneBits = 128;
constexpr uint64_t kFoldFourLow = FoldingConstant(4 * kLaneBits + 32);
constexpr uint64_t kFoldFourHigh = FoldingConstant(4 * kLaneBits - 32);
constexpr uint64_t kFoldOneLow = FoldingConstant(kLaneBits + 32);
constexpr uint64_t kFoldOneHigh = FoldingConstant(kLaneBits - 32);
static_assert(kFoldFourLow == 0x154442bd4 && kFoldOneHigh == 0x0ccaa009e, "the values in general use");

__attribute__((target("pclmul"))) inline __m128i Fold(__m128i value, __m128i constants, __m128i next)
{
    return _mm_xor_si128(_mm_xor_si128(_mm_clmulepi64_si128(value, constants, 0x00),
                                       _mm_clmulepi64_si128(value, constants, 0x11)),
                         next);
}

inline __m128i Load(const uint8_t *data, uint32_t lane)
{
    return _mm_loadu_si128(reinterpret_cast<const __m128i *>(data) + lane);
}

} // namespace

__attribute__((target("pclmul"))) uint32_t UpdateCrc32ByFolding(uint32_t crc, const uint8_t *data,
                                                                uint32_t length)
{
    constexpr uint32_t kLaneBytes = kLaneBits / 8;
    constexpr uint32_t kStep = 4 * kLaneBytes;
    static_assert(kStep <= kWideCrcBytes);
    const __m128i byFour = _mm_set_epi64x(kFoldFourHigh, kFoldFourLow);
    const __m128i byOne = _mm_set_epi64x(kFoldOneHigh, kFoldOneLow);

    __m128i first = _mm_xor_si128(Load(data, 0), _mm_cvtsi32_si128(static_cast<int>(crc)));
    __m128i second = Load(data, 1);
    __m128i third = Load(data, 2);
    __m128i fourth = Load(data, 3);
    for (data += kStep, length -= kStep; length >= kStep; data += kStep, length -= kStep) {
        first = Fold(first, byFour, Load(data, 0));
        second = Fold(second, byFour, Load(data, 1));
        third = Fold(third, byFour, Load(data, 2));
        fourth = Fold(fourth, byFour, Load(data, 3));
    }
    first = Fold(Fold(Fold(first, byOne, second), byOne, third), byOne, fourth);
    for (; length >= kLaneBytes; data += kLaneBytes, length -= kLaneBytes)
        first = Fold(first, byOne, Load(data, 0));

    uint8_t folded[kLaneBytes];
    _mm_storeu_si128(reinterpret_cast<__m128i *>(folded), first);
    return plain::UpdateCrc32(plain::UpdateCrc32(0, folded, kLaneBytes), data, length);
}

// The CRC instruction takes four bytes and can start in every cycle, but its result is ready only after three
// cycles; so three streams are computed in parallel. To join a stream with the n bytes of the next one, its
// register is moved on by n zero bytes. That is a linear map of the register: four tables, one for each of
// its bytes, hold the map.

namespace
{

constexpr uint32_t kStreamBytes = 1024;

/// Moves a register on by kStreamBytes zero bytes.
struct StreamShift {
    uint32_t entries[4][256];

    constexpr StreamShift() : entries{}
    {
        // A column is the image of one bit. Squaring the map doubles the distance.
        uint32_t columns[32] = {};
        for (uint32_t bit = 0; bit < 32; bit++)
            columns[bit] = TimesX(1u << bit, kPolynomialC);
        for (uint32_t distance = 1; distance < kStreamBytes * 8; distance *= 2) {
            uint32_t squared[32] = {};
            for (uint32_t bit = 0; bit < 32; bit++)
                squared[bit] = Apply(columns, columns[bit]);
            for (uint32_t bit = 0; bit < 32; bit++)
                columns[bit] = squared[bit];
        }
        for (uint32_t place = 0; place < 4; place++) {
            for (uint32_t byte = 0; byte < 256; byte++)
                entries[place][byte] = Apply(columns, byte << place * 8);
        }
    }

    static constexpr uint32_t Apply(const uint32_t (&columns)[32], uint32_t word)
    {
        uint32_t sum = 0;
        for (uint32_t bit = 0; word; bit++, word >>= 1)
            sum ^= word & 1 ? columns[bit] : 0;
        return sum;
    }

    uint32_t operator()(uint32_t crc) const
    {
        return entries[0][crc & 0xFF] ^ entries[1][crc >> 8 & 0xFF] ^ entries[2][crc >> 16 & 0xFF] ^
               entries[3][crc >> 24];
    }
};

constexpr StreamShift kShiftStream;

inline uint32_t LoadWord(const uint8_t *data)
{
    uint32_t word = 0;
    __builtin_memcpy(&word, data, sizeof word);
    return word;
}

} // namespace

__attribute__((target("sse4.2"))) uint32_t UpdateCrc32CByInstruction(uint32_t crc, const uint8_t *data,
                                                                     uint32_t length)
{
    for (; length >= 3 * kStreamBytes; data += 3 * kStreamBytes, length -= 3 * kStreamBytes) {
        uint32_t second = 0;
        uint32_t third = 0;
        for (uint32_t i = 0; i < kStreamBytes; i += sizeof(uint32_t)) {
            crc = _mm_crc32_u32(crc, LoadWord(data + i));
            second = _mm_crc32_u32(second, LoadWord(data + kStreamBytes + i));
            third = _mm_crc32_u32(third, LoadWord(data + 2 * kStreamBytes + i));
        }
        crc = kShiftStream(kShiftStream(crc) ^ second) ^ third;
    }
    for (; length >= sizeof(uint32_t); data += sizeof(uint32_t), length -= sizeof(uint32_t))
        crc = _mm_crc32_u32(crc, LoadWord(data));
    for (; length; length--)
        crc = _mm_crc32_u8(crc, *data++);
    return crc;
}

} // namespace detail

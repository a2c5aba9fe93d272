// The inner loops of Base64: plain code for one group at a time, SSSE3 code for four.
//
// The SSSE3 encoder spreads twelve bytes over sixteen lanes with one shuffle. Two multiplications, which
// shift each lane by its own distance, move the six bits of each lane into place. The values become
// characters by adding an offset, which a second shuffle looks up for each range of the alphabet.
//
// The SSSE3 decoder does the reverse. It checks a character by its two nibbles: the low nibble (column)
// selects a set of allowed rows and the high nibble (row) a set that contains it; the character is valid when
// the sets have a common member. Packing UTF-16 into bytes turns units beyond ASCII into 0 or bytes from 0x80
// on, which are never valid.

#include "text/base64_blocks.h"

#include "text/vector.h"

#include <tmmintrin.h>

namespace detail
{

namespace plain
{

void EncodeBase64Groups(wchar_t *text, const uint8_t *data, uint32_t groups)
{
    const auto put = [&text](uint32_t bits) {
        StoreUnit(text++, static_cast<wchar_t>(kBase64Alphabet[bits & 0x3F]));
    };
    for (; groups; groups--, data += kBase64GroupBytes) {
        const uint32_t bits = uint32_t(data[0]) << 16 | uint32_t(data[1]) << 8 | data[2];
        put(bits >> 18);
        put(bits >> 12);
        put(bits >> 6);
        put(bits);
    }
}

uint32_t DecodeBase64Groups(uint8_t *data, const wchar_t *text, uint32_t groups)
{
    for (uint32_t done = 0; done < groups; done++, data += kBase64GroupBytes) {
        uint32_t bits = 0;
        uint32_t faults = 0;
        for (uint32_t i = 0; i < kBase64GroupCharacters; i++) {
            const uint32_t value = Base64Value(LoadUnit(text++));
            bits = bits << 6 | value;
            faults |= value;
        }
        if (faults == kNotBase64)
            return done;
        data[0] = static_cast<uint8_t>(bits >> 16);
        data[1] = static_cast<uint8_t>(bits >> 8);
        data[2] = static_cast<uint8_t>(bits);
    }
    return groups;
}

} // namespace plain

namespace ssse3
{

#define ORV_SSSE3 __attribute__((target("ssse3")))

namespace
{

constexpr uint32_t kBlockGroups = 4;
constexpr uint32_t kBlockBytes = kBlockGroups * kBase64GroupBytes;
constexpr uint32_t kBlockCharacters = kBlockGroups * kBase64GroupCharacters;

/// Encodes the first twelve bytes of a vector as sixteen characters, one per byte.
ORV_SSSE3 inline __m128i EncodeBlock(__m128i bytes)
{
    // Each 32-bit lane gets the bytes 1 0 2 1 of a group, so that each six bits are within one 16-bit half.
    bytes = _mm_shuffle_epi8(bytes, _mm_setr_epi8(1, 0, 2, 1, 4, 3, 5, 4, 7, 6, 8, 7, 10, 9, 11, 10));
    const __m128i firstAndThird =
        _mm_mulhi_epu16(_mm_and_si128(bytes, _mm_set1_epi32(0x0FC0FC00)), _mm_set1_epi32(0x04000040));
    const __m128i secondAndFourth =
        _mm_mullo_epi16(_mm_and_si128(bytes, _mm_set1_epi32(0x003F03F0)), _mm_set1_epi32(0x01000010));
    const __m128i values = _mm_or_si128(firstAndThird, secondAndFourth);

    // The ranges: 13 for A-Z, 0 for a-z, 1 to 10 for the digits, 11 for "+", 12 for "/".
    const __m128i isUpper = _mm_cmplt_epi8(values, _mm_set1_epi8(26));
    const __m128i range =
        _mm_or_si128(_mm_subs_epu8(values, _mm_set1_epi8(51)), _mm_and_si128(isUpper, _mm_set1_epi8(13)));
    constexpr char kDigit = '0' - 52;
    const __m128i offsets = _mm_setr_epi8('a' - 26, kDigit, kDigit, kDigit, kDigit, kDigit, kDigit, kDigit,
                                          kDigit, kDigit, kDigit, '+' - 62, '/' - 63, 'A', 0, 0);
    return _mm_add_epi8(values, _mm_shuffle_epi8(offsets, range));
}

/// The values of sixteen characters. False when one of them is not in the alphabet.
ORV_SSSE3 inline bool ValuesOf(__m128i characters, __m128i &values)
{
    const __m128i low = _mm_and_si128(characters, _mm_set1_epi8(0x0F));
    const __m128i high = _mm_and_si128(_mm_srli_epi32(characters, 4), _mm_set1_epi8(0x0F));
    // `columns`: the rows that have a character in this column. `rows`: the bit of this row, which is 1 for
    // row 2 (+ and /), 2 for row 3 (digits), 4 for rows 4 and 6 (A-O, a-o), 8 for rows 5 and 7 (P-Z, p-z),
    // else 0.
    const __m128i columns = _mm_setr_epi8(0x0A, 0x0E, 0x0E, 0x0E, 0x0E, 0x0E, 0x0E, 0x0E, 0x0E, 0x0E, 0x0C,
                                          0x05, 0x04, 0x04, 0x04, 0x05);
    const __m128i rows = _mm_setr_epi8(0, 0, 1, 2, 4, 8, 4, 8, 0, 0, 0, 0, 0, 0, 0, 0);
    const __m128i allowed = _mm_and_si128(_mm_shuffle_epi8(columns, low), _mm_shuffle_epi8(rows, high));
    if (BitsOf(_mm_cmpeq_epi8(allowed, _mm_setzero_si128())) != 0)
        return false;

    // One offset per row, except that "/" uses the offset of row 1, a row without characters.
    const __m128i isSlash = _mm_cmpeq_epi8(characters, _mm_set1_epi8('/'));
    const __m128i offsets = _mm_setr_epi8(0, 63 - '/', 62 - '+', 52 - '0', -'A', -'A', 26 - 'a', 26 - 'a', 0,
                                          0, 0, 0, 0, 0, 0, 0);
    values = _mm_add_epi8(characters, _mm_shuffle_epi8(offsets, _mm_add_epi8(high, isSlash)));
    return true;
}

} // namespace

ORV_SSSE3 void EncodeBase64Groups(wchar_t *text, const uint8_t *data, uint32_t groups)
{
    for (; groups >= kBlockGroups; groups -= kBlockGroups) {
        // No byte after the twelve may be read.
        const __m128i bytes = _mm_unpacklo_epi64(
            _mm_loadl_epi64(reinterpret_cast<const __m128i *>(data)),
            _mm_cvtsi32_si128(LoadUnit(reinterpret_cast<const int *>(data + sizeof(uint64_t)))));
        const __m128i characters = EncodeBlock(bytes);
        StoreVector(text, _mm_unpacklo_epi8(characters, _mm_setzero_si128()));
        StoreVector(text + kLanes<wchar_t>, _mm_unpackhi_epi8(characters, _mm_setzero_si128()));
        data += kBlockBytes;
        text += kBlockCharacters;
    }
    plain::EncodeBase64Groups(text, data, groups);
}

ORV_SSSE3 uint32_t DecodeBase64Groups(uint8_t *data, const wchar_t *text, uint32_t groups)
{
    uint32_t done = 0;
    for (; groups - done >= kBlockGroups; done += kBlockGroups) {
        __m128i values;
        if (!ValuesOf(_mm_packus_epi16(LoadVector(text), LoadVector(text + kLanes<wchar_t>)), values))
            break;
        // Joins pairs of six bits, then pairs of twelve; then puts the three bytes of each lane in order.
        const __m128i pairs = _mm_maddubs_epi16(values, _mm_set1_epi32(0x01400140));
        const __m128i lanes = _mm_madd_epi16(pairs, _mm_set1_epi32(0x00011000));
        const __m128i bytes =
            _mm_shuffle_epi8(lanes, _mm_setr_epi8(2, 1, 0, 6, 5, 4, 10, 9, 8, 14, 13, 12, -1, -1, -1, -1));
        _mm_storel_epi64(reinterpret_cast<__m128i *>(data), bytes);
        StoreUnit(reinterpret_cast<int *>(data + sizeof(uint64_t)),
                  _mm_cvtsi128_si32(_mm_srli_si128(bytes, 8)));
        data += kBlockBytes;
        text += kBlockCharacters;
    }
    return done + plain::DecodeBase64Groups(data, text, groups - done);
}

#undef ORV_SSSE3

} // namespace ssse3

} // namespace detail

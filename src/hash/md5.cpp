// The MD5 message digest (RFC 1321).

#include "orv/hash/md5.h"

#include "hash/md_family.h"

namespace
{

using detail::RotateLeft;

constexpr uint8_t kPadding[detail::kMdBlock] = {0x80};

/// The integer parts of 2^32 |sin(i + 1)|.
constexpr uint32_t kSines[64] = {
    0xD76AA478, 0xE8C7B756, 0x242070DB, 0xC1BDCEEE, 0xF57C0FAF, 0x4787C62A, 0xA8304613, 0xFD469501,
    0x698098D8, 0x8B44F7AF, 0xFFFF5BB1, 0x895CD7BE, 0x6B901122, 0xFD987193, 0xA679438E, 0x49B40821,
    0xF61E2562, 0xC040B340, 0x265E5A51, 0xE9B6C7AA, 0xD62F105D, 0x02441453, 0xD8A1E681, 0xE7D3FBC8,
    0x21E1CDE6, 0xC33707D6, 0xF4D50D87, 0x455A14ED, 0xA9E3E905, 0xFCEFA3F8, 0x676F02D9, 0x8D2A4C8A,
    0xFFFA3942, 0x8771F681, 0x6D9D6122, 0xFDE5380C, 0xA4BEEA44, 0x4BDECFA9, 0xF6BB4B60, 0xBEBFBC70,
    0x289B7EC6, 0xEAA127FA, 0xD4EF3085, 0x04881D05, 0xD9D4D039, 0xE6DB99E5, 0x1FA27CF8, 0xC4AC5665,
    0xF4292244, 0x432AFF97, 0xAB9423A7, 0xFC93A039, 0x655B59C3, 0x8F0CCC92, 0xFFEFF47D, 0x85845DD1,
    0x6FA87E4F, 0xFE2CE6E0, 0xA3014314, 0x4E0811A1, 0xF7537E82, 0xBD3AF235, 0x2AD7D2BB, 0xEB86D391,
};

void Compress(uint32_t (&chain)[4], const uint8_t *blocks, uint32_t count)
{
    static constexpr uint8_t kShifts[4][4] = {
        {7, 12, 17, 22}, {5, 9, 14, 20}, {4, 11, 16, 23}, {6, 10, 15, 21}};
    for (; count; count--, blocks += detail::kMdBlock) {
        uint32_t s[4] = {chain[0], chain[1], chain[2], chain[3]};
#pragma clang loop unroll(full)
        for (uint32_t step = 0; step < 64; step++) {
            // The four words change their roles (a, b, c and d) with each step.
            uint32_t &a = s[(64 - step) % 4];
            const uint32_t b = s[(65 - step) % 4];
            const uint32_t c = s[(66 - step) % 4];
            const uint32_t d = s[(67 - step) % 4];
            const uint32_t round = step / 16;
            uint32_t mixed = 0;
            uint32_t word = 0;
            if (round == 0) {
                mixed = d ^ (b & (c ^ d));
                word = step;
            } else if (round == 1) {
                // One half of the choice. The other half, c & ~d, has no bit in common with it, and can be
                // added earlier (below).
                mixed = d & b;
                word = 5 * step + 1;
            } else if (round == 2) {
                mixed = b ^ c ^ d;
                word = 3 * step + 5;
            } else {
                mixed = c ^ (b | ~d);
                word = 7 * step;
            }
            // The terms that do not depend on the previous step are added first.
            uint32_t ready = a + detail::LoadLittle32(blocks + 4 * (word % 16)) + kSines[step];
            if (round == 1)
                ready += c & ~d;
            __asm__("" : "+r"(ready)); // else the compiler chooses an order that waits for b
            a = b + RotateLeft(ready + mixed, kShifts[round][step % 4]);
        }
        for (uint32_t i = 0; i < 4; i++)
            chain[i] += s[i];
    }
}

} // namespace

OrvMiniHashMd5::OrvMiniHashMd5() : buffer_{}, digest_{}
{
    Initialize();
}

void OrvMiniHashMd5::Initialize()
{
    detail::StartMd({chain_, bitLengthLow_, bitLengthHigh_, buffer_});
    finalized_ = 0;
}

void OrvMiniHashMd5::Add(const uint8_t *data, uint32_t length)
{
    if (!finalized_)
        detail::AddMd<Compress>({chain_, bitLengthLow_, bitLengthHigh_, buffer_}, data, length);
}

void OrvMiniHashMd5::Finish()
{
    if (finalized_)
        return;
    detail::FinishMd<Compress>({chain_, bitLengthLow_, bitLengthHigh_, buffer_}, kPadding, digest_.bytes);
    finalized_ = 1;
}

void OrvMiniHashMd5::Get(HashType &digest)
{
    digest = Get();
}

OrvMiniHashMd5::HashType &OrvMiniHashMd5::Get()
{
    Finish();
    return digest_;
}

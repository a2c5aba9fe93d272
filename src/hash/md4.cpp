// The MD4 message digest (RFC 1320).

#include "orv/hash/md4.h"

#include "hash/md_family.h"

namespace
{

using detail::RotateLeft;

void Compress(uint32_t (&chain)[4], const uint8_t *blocks, uint32_t count)
{
    static constexpr uint8_t kShifts[3][4] = {{3, 7, 11, 19}, {3, 5, 9, 13}, {3, 9, 11, 15}};
    static constexpr uint8_t kThirdOrder[16] = {0, 8, 4, 12, 2, 10, 6, 14, 1, 9, 5, 13, 3, 11, 7, 15};
    static constexpr uint32_t kConstants[3] = {0, 0x5A827999, 0x6ED9EBA1};
    for (; count; count--, blocks += detail::kMdBlock) {
        uint32_t s[4] = {chain[0], chain[1], chain[2], chain[3]};
#pragma clang loop unroll(full)
        for (uint32_t step = 0; step < 48; step++) {
            // The four words change their roles (a, b, c and d) with each step.
            uint32_t &a = s[(48 - step) % 4];
            const uint32_t b = s[(49 - step) % 4];
            const uint32_t c = s[(50 - step) % 4];
            const uint32_t d = s[(51 - step) % 4];
            const uint32_t round = step / 16;
            const uint32_t place = step % 16;
            uint32_t mixed = 0;
            uint32_t word = 0;
            if (round == 0) {
                mixed = d ^ (b & (c ^ d));
                word = place;
            } else if (round == 1) {
                // One half of the majority. The other half, c & d, has no bit in common with it, and can be
                // added earlier (below).
                mixed = b & (c ^ d);
                word = place % 4 * 4 + place / 4;
            } else {
                mixed = b ^ c ^ d;
                word = kThirdOrder[place];
            }
            // The terms that do not depend on the previous step are added first.
            uint32_t ready = a + detail::LoadLittle32(blocks + 4 * word) + kConstants[round];
            if (round == 1)
                ready += c & d;
            __asm__("" : "+r"(ready)); // else the compiler chooses an order that waits for b
            a = RotateLeft(ready + mixed, kShifts[round][step % 4]);
        }
        for (uint32_t i = 0; i < 4; i++)
            chain[i] += s[i];
    }
}

} // namespace

OrvMiniHashMd4::OrvMiniHashMd4() : padding_{0x80}, buffer_{}
{
    Reset();
}

void OrvMiniHashMd4::Reset()
{
    detail::StartMd({chain_, bitLengthLow_, bitLengthHigh_, buffer_});
}

void OrvMiniHashMd4::Add(const uint8_t *data, uint32_t length)
{
    detail::AddMd<Compress>({chain_, bitLengthLow_, bitLengthHigh_, buffer_}, data, length);
}

void OrvMiniHashMd4::Get(uint8_t (&digest)[16])
{
    detail::FinishMd<Compress>({chain_, bitLengthLow_, bitLengthHigh_, buffer_}, padding_, digest);
}

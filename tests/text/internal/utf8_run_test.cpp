// Units of two bytes by vector beside the plain loop, which processors without it take.

#include "text/utf8_run.h"

#include "harness/test.h"

TEST_CASE(TwoByteUnitsByVectorAreThePlainOnes)
{
    // Every unit that decides something, in each of the eight places.
    const uint32_t units[] = {0,     0x7F,   0x80,   0x7FF,  0x800,  0x87F,
                              0x880, 0x7FFF, 0x8000, 0x807F, 0xD800, 0xFFFF};
    for (const uint32_t unit : units) {
        for (uint32_t place = 0; place < detail::kBlockUnits; place++) {
            test::Note("unit", unit);
            wchar_t from[detail::kBlockUnits];
            for (uint32_t i = 0; i < detail::kBlockUnits; i++)
                from[i] = static_cast<wchar_t>(0x80 + i * 0x101);
            from[place] = static_cast<wchar_t>(unit);
            uint8_t expected[2 * detail::kBlockUnits];
            uint8_t actual[2 * detail::kBlockUnits];
            const uint32_t run = detail::plain::EncodeTwoByteUnits(from, expected);
            CHECK_EQUAL(detail::EncodeTwoByteUnits(from, actual), run);
            CHECK(__builtin_memcmp(actual, expected, 2 * run) == 0);
        }
    }
}

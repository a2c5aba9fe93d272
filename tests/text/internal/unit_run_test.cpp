// Runs by vectors beside runs unit by unit: every length, every place where the run ends, every alignment,
// and nothing written behind the count.

#include "text/unit_run.h"
#include "text/utf8_run.h"

#include "text/texts.h"

namespace
{

constexpr uint32_t kMostUnits = 50;

template <uint32_t kLimit, typename Source, typename Target>
void Check(wchar_t end)
{
    test::TextPages sourcePage;
    test::TextPages targetPage;
    for (uint32_t count = 0; count <= kMostUnits; count++) {
        for (uint32_t endAt = 0; endAt <= count; endAt++) {
            const uint32_t slack = (count + endAt) % test::kSlacks;
            Source *const source = sourcePage.Place<Source>(count, slack);
            for (uint32_t i = 0; i < count; i++)
                detail::StoreUnit(source + i, static_cast<Source>(i == endAt ? end : (i * 37 + 1) % kLimit));
            const uint32_t length = detail::plain::CountRun<kLimit>(source, count);
            CHECK_EQUAL(detail::CountRun<kLimit>(source, count), length);
            targetPage.Fill(0xCC);
            Target *const target = targetPage.Place<Target>(count, slack);
            const uint32_t copied = detail::CopyBlocks<kLimit>(source, target, count);
            CHECK_EQUAL(copied, length / 16 * 16);
            for (uint32_t i = 0; i < copied; i++)
                CHECK_EQUAL(uint32_t(detail::LoadUnit(target + i)), uint32_t(detail::LoadUnit(source + i)));
            for (uint32_t i = 0; i < slack; i++)
                CHECK_EQUAL(reinterpret_cast<const uint8_t *>(target + count)[i], uint8_t(0xCC));
        }
    }
}

} // namespace

TEST_CASE(RunsByVectorsAreThoseUnitByUnit)
{
    for (const wchar_t end : L"\x80\xFF") {
        Check<0x80, uint8_t, uint8_t>(end);
        Check<0x80, uint8_t, wchar_t>(end);
    }
    Check<0x100, uint8_t, wchar_t>(0);
    for (const wchar_t end : L"\x80\x100\x8000\xFFFF") {
        Check<0x80, wchar_t, uint8_t>(end);
        Check<0x100, wchar_t, uint8_t>(end);
    }
}

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

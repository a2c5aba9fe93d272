// The escaper's vectors find what its plain loop finds, at every place and alignment.

#include "xml/escape.h"

#include "harness/memory.h"
#include "harness/test.h"

TEST_CASE(EveryUnitIsFoundWhereverItStands)
{
    constexpr uint32_t kLength = 21;
    wchar_t *const text = test::GuardedArray<wchar_t>(kLength);
    // Every unit that decides something, and its neighbours; all of the low ones.
    const uint32_t ranges[][2] = {{0, 0x7F}, {0xD7FE, 0xD801}, {0xDFFE, 0xE001}, {0xFFFC, 0xFFFF}};
    for (const auto &range : ranges) {
        for (uint32_t unit = range[0]; unit <= range[1]; unit++) {
            for (uint32_t place = 0; place < kLength; place++) {
                for (uint32_t i = 0; i < kLength; i++)
                    text[i] = i % 5 ? L'x' : L'\n';
                text[place] = static_cast<wchar_t>(unit);
                test::Note("unit", unit);
                for (uint32_t start = 0; start < 9; start++) {
                    const uint32_t count = kLength - start;
                    CHECK_EQUAL(detail::CountUnescaped(text + start, count, false),
                                detail::plain::CountUnescaped(text + start, count, false));
                    CHECK_EQUAL(detail::CountUnescaped(text + start, count, true),
                                detail::plain::CountUnescaped(text + start, count, true));
                }
            }
        }
    }
}

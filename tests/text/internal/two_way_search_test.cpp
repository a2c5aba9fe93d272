// Every needle of two letters in every text of them, from both ends.

#include "text/two_way_search.h"

#include "text/texts.h"

namespace
{

constexpr uint32_t kTextLength = 10;
constexpr uint32_t kNeedleLength = 6;

/// The first place from an end at which the needle stands, by looking at each; letters are bits.
uint32_t FirstPlace(uint32_t text, uint32_t needle, uint32_t length, bool isFromRight)
{
    const uint32_t places = kTextLength - length + 1;
    const uint32_t mask = (1u << length) - 1;
    for (uint32_t place = 0; place < places; place++) {
        if ((text >> (isFromRight ? places - 1 - place : place) & mask) == needle)
            return place;
    }
    return places;
}

} // namespace

TEST_CASE(TwoWaySearchFindsTheFirstPlace)
{
    test::ForBothWidths([](auto unit) {
        typedef decltype(unit) T;
        T *const text = test::GuardedArray<T>(kTextLength);
        for (uint32_t length = 1; length <= kNeedleLength; length++) {
            T *const needle = test::GuardedArray<T>(length);
            for (uint32_t bits = 0; bits < 1u << length; bits++) {
                for (uint32_t i = 0; i < length; i++)
                    needle[i] = static_cast<T>('a' + (bits >> i & 1));
                for (uint32_t textBits = 0; textBits < 1u << kTextLength; textBits++) {
                    for (uint32_t i = 0; i < kTextLength; i++)
                        text[i] = static_cast<T>('a' + (textBits >> i & 1));
                    test::Note("text", textBits);
                    const uint32_t places = kTextLength - length + 1;
                    CHECK_EQUAL(detail::TwoWaySearch<T>({text, 1}, places, {needle, 1}, length),
                                FirstPlace(textBits, bits, length, false));
                    CHECK_EQUAL(detail::TwoWaySearch<T>({text + kTextLength - 1, -1}, places,
                                                        {needle + length - 1, -1}, length),
                                FirstPlace(textBits, bits, length, true));
                }
            }
        }
    });
}

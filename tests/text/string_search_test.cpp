// Measuring, finding and comparing: every length and alignment at the end of a page, and generated texts,
// against loops that take one character at a time.

#include "orv/text/string.h"

#include "harness/test.h"
#include "text/texts.h"

using test::Ascii;
using test::ForBothWidths;
using test::Generator;
using test::GuardedPage;

namespace
{

constexpr uint32_t kLongest = 70;
constexpr uint32_t kSlacks = 17; // bytes between the text and the unmapped page: every alignment

/// Units of a small alphabet, so that much matches; the high byte matters too.
template <typename T>
T Letter(Generator &generator, uint32_t letters)
{
    const uint32_t letter = generator.Below(letters);
    return static_cast<T>('a' + letter / 2 + (sizeof(T) > 1 && letter % 2 ? 0x100 : 0));
}

template <typename T>
void FillText(T *text, uint32_t length, Generator &generator, uint32_t letters)
{
    for (uint32_t i = 0; i < length; i++)
        test::Set(text, i, Letter<T>(generator, letters));
}

template <typename T>
int OrderOf(const T *a, const T *b, uint32_t lengthA, uint32_t lengthB)
{
    const auto *const bytesA = reinterpret_cast<const uint8_t *>(a);
    const auto *const bytesB = reinterpret_cast<const uint8_t *>(b);
    const uint32_t common = (lengthA < lengthB ? lengthA : lengthB) * sizeof(T);
    for (uint32_t i = 0; i < common; i++) {
        if (bytesA[i] != bytesB[i])
            return bytesA[i] < bytesB[i] ? -1 : 1;
    }
    return int(lengthA > lengthB) - int(lengthA < lengthB);
}

template <typename T>
bool StandsAt(const T *text, const T *needle, uint32_t needleLength)
{
    uint32_t i = 0;
    while (i < needleLength && test::Get(text, i) == test::Get(needle, i))
        i++;
    return i == needleLength;
}

} // namespace

TEST_CASE(MeasureReadsNothingBehindTheText)
{
    ForBothWidths([](auto unit) {
        typedef decltype(unit) T;
        GuardedPage page;
        for (uint32_t slack = 0; slack < kSlacks; slack++) {
            for (uint32_t length = 0; length <= 3 * kLongest; length++) {
                page.Fill(0);
                T *const text = page.Place<T>(length + 1, slack);
                for (uint32_t i = 0; i < length; i++)
                    test::Set(text, i, static_cast<T>(i % 2 ? 0x80 : 0x7F00 + i)); // half of a unit may be 0
                if (sizeof(T) == 1) {
                    for (uint32_t i = 0; i < length; i++)
                        test::Set(text, i, T(1));
                }
                test::Note("length", length);
                CHECK_EQUAL(OrvGetStringSizeInElements(text), length);
                CHECK_EQUAL(OrvGetStringSizeInElements(text, OrvTerminated), length);
                CHECK_EQUAL(OrvGetStringSizeInElements(text, length + 1), length);
                CHECK_EQUAL(OrvGetStringSizeInElements(text, length / 2), length / 2);
                T *const endless = page.Place<T>(length, slack);
                for (uint32_t i = 0; i < length; i++)
                    test::Set(endless, i, T('x'));
                CHECK_EQUAL(OrvGetStringSizeInElements(endless, length), length);
            }
        }
        CHECK_EQUAL(OrvGetStringSizeInElements(static_cast<const T *>(nullptr)), 0u);
        CHECK_EQUAL(OrvGetStringSizeInElements(static_cast<const T *>(nullptr), 5), 0u);
    });
}

TEST_CASE(FindElementFromBothEnds)
{
    ForBothWidths([](auto unit) {
        typedef decltype(unit) T;
        GuardedPage page;
        Generator generator;
        for (uint32_t slack = 0; slack < kSlacks; slack++) {
            for (uint32_t length = 0; length <= 2 * kLongest; length++) {
                page.Fill('m'); // matches on both sides of the text
                const T wanted = generator.Below(8) ? T('b') : static_cast<T>(0x6D6D6D6D);
                T *const counted = page.Place<T>(length, slack);
                FillText(counted, length, generator, 2 + length / 2);
                uint32_t first = length;
                uint32_t behindLast = 0;
                for (uint32_t i = 0; i < length; i++) {
                    if (test::Get(counted, i) == wanted) {
                        first = first < length ? first : i;
                        behindLast = i + 1;
                    }
                }
                test::Note("length", length);
                CHECK_EQUAL(OrvFindElement(counted, wanted, length),
                            first < length ? counted + first : nullptr);
                CHECK_EQUAL(OrvFindElementFromRight(counted, wanted, length),
                            behindLast ? counted + behindLast - 1 : nullptr);

                T *const terminated = page.Place<T>(length + 1, slack);
                for (uint32_t i = 0; i < length; i++)
                    test::Set(terminated, i, test::Get(counted, i));
                test::Set(terminated, length, T(0));
                CHECK_EQUAL(OrvFindElement(terminated, wanted),
                            first < length ? terminated + first : nullptr);
                CHECK_EQUAL(OrvFindElementFromRight(terminated, wanted),
                            behindLast ? terminated + behindLast - 1 : nullptr);
                CHECK_EQUAL(OrvFindElement(terminated, T(0)), nullptr);
                CHECK_EQUAL(OrvFindElement(terminated, T(0), length + 1), terminated + length);
            }
        }
        const T *const none = nullptr;
        CHECK_EQUAL(OrvFindElement(static_cast<const T *>(Ascii<T>("a")), T('a'), 0), nullptr);
        CHECK_EQUAL(OrvFindElement(none, T('a')), nullptr);
        CHECK_EQUAL(OrvFindElementFromRight(none, T('a')), nullptr);
    });
}

TEST_CASE(FindSubStringFromBothEnds)
{
    ForBothWidths([](auto unit) {
        typedef decltype(unit) T;
        GuardedPage page;
        GuardedPage needlePage;
        Generator generator;
        for (uint32_t round = 0; round < 20000; round++) {
            const uint32_t length = generator.Below(kLongest + 1);
            const uint32_t letters = 2 + generator.Below(4);
            T *const text = page.Place<T>(length, generator.Below(kSlacks));
            FillText(text, length, generator, letters);
            uint32_t needleLength = generator.Below(7);
            T *const needle = needlePage.Place<T>(needleLength, generator.Below(kSlacks));
            FillText(needle, needleLength, generator, letters);
            const T *first = nullptr;
            const T *last = nullptr;
            for (uint32_t i = 0; i + needleLength <= length; i++) {
                if (StandsAt(text + i, needle, needleLength)) {
                    first = first ? first : text + i;
                    last = text + i;
                }
            }
            test::Note("round", round);
            if (!CHECK_EQUAL(OrvFindSubString(text, needle, length, needleLength), first) ||
                !CHECK_EQUAL(OrvFindSubStringFromRight(text, needle, length, needleLength), last))
                break;
        }
        const Ascii<T> text("one two one two");
        CHECK_EQUAL(OrvFindSubString(text.units, Ascii<T>("two").units), text.units + 4);
        CHECK_EQUAL(OrvFindSubStringFromRight(text.units, Ascii<T>("one").units), text.units + 8);
        CHECK_EQUAL(OrvFindSubString(text.units, Ascii<T>("").units), text.units);
        CHECK_EQUAL(OrvFindSubStringFromRight(text.units, Ascii<T>("").units), text.units + 15);
        CHECK_EQUAL(OrvFindSubString(text.units, Ascii<T>("two").units, 6), nullptr);
        CHECK_EQUAL(OrvFindSubString(text.units, Ascii<T>("twofold").units, OrvTerminated, 3),
                    text.units + 4);
        const T *const none = nullptr;
        CHECK_EQUAL(OrvFindSubString(none, none), nullptr);
        CHECK_EQUAL(OrvFindSubStringFromRight(text.units, none), text.units + 15);
        CHECK_EQUAL(OrvFindSubString(none, text.units), nullptr);
    });
}

TEST_CASE(CompareByBytes)
{
    ForBothWidths([](auto unit) {
        typedef decltype(unit) T;
        GuardedPage pageA;
        GuardedPage pageB;
        Generator generator;
        for (uint32_t round = 0; round < 40000; round++) {
            const uint32_t slackA = generator.Below(kSlacks);
            const uint32_t slackB = generator.Below(kSlacks);
            const uint32_t lengthA = generator.Below(2 * kLongest);
            const uint32_t lengthB = generator.Below(3) ? lengthA : generator.Below(2 * kLongest);
            T *const a = pageA.Place<T>(lengthA + 1, slackA);
            T *const b = pageB.Place<T>(lengthB + 1, slackB);
            for (uint32_t i = 0; i < lengthA; i++)
                test::Set(a, i, static_cast<T>(1 + generator.Below(0xFFFF)));
            for (uint32_t i = 0; i < lengthA; i++) { // bytes have terminators by chance
                if (test::Get(a, i) == 0)
                    test::Set(a, i, T(1));
            }
            for (uint32_t i = 0; i < lengthB; i++)
                test::Set(b, i, i < lengthA ? test::Get(a, i) : T('b'));
            if (lengthB && generator.Below(4))
                test::Set(b, generator.Below(lengthB), static_cast<T>(0xFF00 + 1 + generator.Below(0xFF)));
            test::Set(a, lengthA, T(0));
            test::Set(b, lengthB, T(0));

            test::Note("round", round);
            const int order = OrderOf(a, b, lengthA, lengthB);
            const uint32_t n = generator.Below(2 * kLongest);
            const uint32_t cutA = lengthA < n ? lengthA : n;
            const uint32_t cutB = lengthB < n ? lengthB : n;
            const int cutOrder = OrderOf(a, b, cutA, cutB);
            if (!CHECK_EQUAL(OrvCompareString(a, b), order) ||
                !CHECK_EQUAL(OrvCompareString(a, b, lengthA), order) ||
                !CHECK_EQUAL(OrvCompareString(a, b, OrvTerminated, lengthB), order) ||
                !CHECK_EQUAL(OrvCompareString(a, b, lengthA + 1, lengthB + 1),
                             OrderOf(a, b, lengthA + 1, lengthB + 1)) ||
                !CHECK_EQUAL(OrvCompareSubString(a, b, n), cutOrder) ||
                !CHECK_EQUAL(OrvCompareSubString(a, b, n, lengthA, lengthB), cutOrder) ||
                !CHECK_EQUAL(OrvCompareSubString(a, b, n, OrvTerminated, lengthB), cutOrder))
                break;
        }
        const T *const none = nullptr;
        const Ascii<T> text("abcX");
        CHECK_EQUAL(OrvCompareString(Ascii<T>("ab").units, Ascii<T>("abc").units), -1);
        CHECK_EQUAL(OrvCompareSubString(text.units, Ascii<T>("abcY").units, 3), 0);
        CHECK_EQUAL(OrvCompareString(none, none), 0);
        CHECK_EQUAL(OrvCompareString(none, Ascii<T>("").units), 0);
        CHECK_EQUAL(OrvCompareString(text.units, none), 1);
        CHECK_EQUAL(OrvCompareString(none, text.units, 7, 1), -1);
    });
    CHECK_EQUAL(OrvCompareString(L"\x0100", L"\x00FF"), -1);
    CHECK_EQUAL(OrvCompareString("\xFF", "\x01"), 1);
}

TEST_CASE(CompareCrossesPages)
{
    // Two terminated texts over several pages, at distances that put the page ends at different units.
    ForBothWidths([](auto unit) {
        typedef decltype(unit) T;
        constexpr uint32_t kLength = 9000;
        auto *const a = test::GuardedArray<T>(kLength + 1);
        auto *const bytes = test::GuardedArray<uint8_t>((kLength + 1) * sizeof(T) + 16);
        for (uint32_t i = 0; i < kLength; i++)
            a[i] = static_cast<T>('a' + i % 23);
        const uint32_t places[] = {0, 4095, 4096, 8191, 8999};
        for (uint32_t shift = 0; shift <= 16; shift++) {
            auto *const b = reinterpret_cast<T *>(bytes + shift);
            for (uint32_t i = 0; i <= kLength; i++)
                test::Set(b, i, a[i]);
            test::Note("shift", shift);
            CHECK_EQUAL(OrvCompareString(a, b), 0);
            for (const uint32_t at : places) {
                test::Set(b, at, T('z'));
                CHECK_EQUAL(OrvCompareString(a, b), -1);
                CHECK_EQUAL(OrvCompareString(b, a), 1);
                CHECK_EQUAL(OrvFindElement(b, T('z')), b + at);
                test::Set(b, at, a[at]);
            }
        }
    });
}

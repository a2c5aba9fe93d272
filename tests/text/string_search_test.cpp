// Measuring, finding and comparing: generated texts at every alignment before an unmapped page, against the
// loops that take one unit at a time.

#include "orv/text/string.h"

#include "harness/test.h"
#include "text/texts.h"

using test::Ascii;
using test::ForBothWidths;
using test::Generator;
using test::kSlacks;
using test::TextPages;

namespace
{

namespace plain = detail::plain;

constexpr uint32_t kLongest = 140; // several vectors in a block, a vector and units

/// A letter of a small alphabet, so that much matches; the high byte of a UTF-16 unit matters too.
template <typename T>
T Letter(Generator &generator, uint32_t letters)
{
    const uint32_t letter = generator.Below(letters);
    return static_cast<T>('a' + letter / 2 + (letter % 2 ? 0x100 : 0));
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

} // namespace

TEST_CASE(MeasureReadsNothingBehindTheText)
{
    ForBothWidths([](auto unit) {
        typedef decltype(unit) T;
        TextPages page;
        for (uint32_t slack = 0; slack < kSlacks; slack++) {
            for (uint32_t length = 0; length <= kLongest; length++) {
                page.Fill(0);
                const auto halfZero = [](uint32_t i) { return sizeof(T) == 1 ? 1 : i % 2 ? 0x80 : 0x7F00; };
                const T *const text = page.Make<T>(length, slack, halfZero);
                test::Note("length", length);
                CHECK_EQUAL(OrvGetStringSizeInElements(text), length);
                CHECK_EQUAL(OrvGetStringSizeInElements(text, OrvTerminated), length);
                CHECK_EQUAL(OrvGetStringSizeInElements(text, length + 1), length);
                CHECK_EQUAL(OrvGetStringSizeInElements(text, length / 2), length / 2);
                page.Fill('x');
                CHECK_EQUAL(OrvGetStringSizeInElements(page.Place<T>(length, slack), length), length);
            }
        }
        const T *const none = nullptr;
        CHECK_EQUAL(OrvGetStringSizeInElements(none) + OrvGetStringSizeInElements(none, 5), 0u);
    });
}

TEST_CASE(FindElementFromBothEnds)
{
    ForBothWidths([](auto unit) {
        typedef decltype(unit) T;
        TextPages page;
        Generator generator;
        for (uint32_t slack = 0; slack < kSlacks; slack++) {
            for (uint32_t length = 0; length <= kLongest; length++) {
                page.Fill('m'); // matches on both sides of the text
                const T wanted = generator.Below(8) ? T('b') : static_cast<T>(0x6D6D);
                const auto letter = [&](uint32_t) { return Letter<T>(generator, 2 + length / 2); };
                const T *const text = page.Make<T>(length, slack, letter);
                const T *const first = plain::FindFirst(text, length, detail::IsUnit<T>(wanted));
                const T *const last = plain::FindLast(text, length, detail::IsUnit<T>(wanted));
                test::Note("length", length);
                CHECK_EQUAL(OrvFindElement(text, wanted), first);
                CHECK_EQUAL(OrvFindElementFromRight(text, wanted), last);
                CHECK_EQUAL(OrvFindElement(text, T(0)), nullptr);
                CHECK_EQUAL(OrvFindElement(text, T(0), length + 1), text + length);

                // The same text without its terminator, and up to the last byte.
                T *const counted = page.Place<T>(length, slack);
                detail::MoveBytes(counted, text, length * sizeof(T));
                CHECK_EQUAL(OrvFindElement(counted, wanted, length),
                            first ? counted + (first - text) : nullptr);
                CHECK_EQUAL(OrvFindElementFromRight(counted, wanted, length),
                            last ? counted + (last - text) : nullptr);
            }
        }
        const T *const none = nullptr;
        CHECK_EQUAL(OrvFindElement(Ascii<T>("a").units, T('a'), 0), nullptr);
        CHECK_EQUAL(OrvFindElement(none, T('a')), nullptr);
        CHECK_EQUAL(OrvFindElementFromRight(none, T('a')), nullptr);
    });
}

TEST_CASE(FindSubStringFromBothEnds)
{
    ForBothWidths([](auto unit) {
        typedef decltype(unit) T;
        TextPages page;
        TextPages needlePage;
        Generator generator;
        for (uint32_t round = 0; round < 20000; round++) {
            // Both are cut from one text, which repeats itself or does not, and are nearly kept.
            const uint32_t letters = 2 + generator.Below(4);
            const uint32_t period = generator.Below(2) ? 1 + generator.Below(6) : kLongest;
            T pattern[kLongest];
            for (T &letter : pattern)
                letter = Letter<T>(generator, letters);
            uint32_t from = 0;
            const auto letter = [&](uint32_t i) {
                return generator.Below(60) ? pattern[(from + i) % period] : Letter<T>(generator, letters);
            };
            const uint32_t length = generator.Below(kLongest / 2);
            const uint32_t needleLength = generator.Below(round % 2 ? 7 : kLongest / 4);
            const T *const text = page.Make<T>(length, generator.Below(kSlacks), letter);
            from = generator.Below(kLongest / 2);
            const T *const needle = needlePage.Make<T>(needleLength, generator.Below(kSlacks), letter);
            const T *first = nullptr;
            const T *last = nullptr;
            for (uint32_t i = 0; i + needleLength <= length; i++) {
                const auto same = detail::AreEqual<T>();
                if (plain::FirstDifference(text + i, needle, 0, needleLength, same) == needleLength) {
                    first = first ? first : text + i;
                    last = text + i;
                }
            }
            test::Note("round", round);
            if (!CHECK_EQUAL(OrvFindSubString(text, needle), first) ||
                !CHECK_EQUAL(OrvFindSubStringFromRight(text, needle), last))
                break;

            // The same text without its terminator, and up to the last byte.
            T *const counted = page.Place<T>(length, 0);
            detail::MoveBytes(counted, text, length * sizeof(T));
            if (!CHECK_EQUAL(OrvFindSubString(counted, needle, length, needleLength),
                             first ? counted + (first - text) : nullptr) ||
                !CHECK_EQUAL(OrvFindSubStringFromRight(counted, needle, length, needleLength),
                             last ? counted + (last - text) : nullptr))
                break;
        }
        Ascii<T> text("one two one two");
        CHECK_EQUAL(OrvFindSubString(text.units, Ascii<T>("two").units, 6), nullptr);
        CHECK_EQUAL(OrvFindSubString(text.units, Ascii<T>("twofold").units, OrvTerminated, 3),
                    text.units + 4);
        CHECK_EQUAL(OrvFindSubString(text.units, Ascii<T>("").units), text.units);
        CHECK_EQUAL(OrvFindSubStringFromRight(text.units, Ascii<T>("").units), text.units + 15);
        T *const none = nullptr;
        CHECK_EQUAL(OrvFindSubString(none, none), nullptr);
        CHECK_EQUAL(OrvFindSubString(none, text.units), nullptr);
        CHECK_EQUAL(OrvFindSubStringFromRight(text.units, none), text.units + 15);
    });
}

TEST_CASE(CompareByBytes)
{
    ForBothWidths([](auto unit) {
        typedef decltype(unit) T;
        TextPages pageA;
        TextPages pageB;
        Generator generator;
        for (uint32_t round = 0; round < 40000; round++) {
            const uint32_t lengthA = generator.Below(kLongest);
            const uint32_t lengthB = generator.Below(3) ? lengthA : generator.Below(kLongest);
            const auto any = [&](uint32_t) {
                return 1 + generator.Below(0xFF) + (generator.Below(0x100) << 8);
            };
            const T *const a = pageA.Make<T>(lengthA, generator.Below(kSlacks), any);
            const uint32_t changed = generator.Below(4) ? generator.Below(kLongest) : kLongest;
            const auto almostA = [&](uint32_t i) {
                return i >= lengthA || i == changed ? any(i) : detail::LoadUnit(a + i);
            };
            const T *const b = pageB.Make<T>(lengthB, generator.Below(kSlacks), almostA);

            const int order = OrderOf(a, b, lengthA, lengthB);
            const uint32_t n = generator.Below(kLongest);
            const int cut = OrderOf(a, b, lengthA < n ? lengthA : n, lengthB < n ? lengthB : n);
            test::Note("round", round);
            if (!CHECK_EQUAL(OrvCompareString(a, b), order) ||
                !CHECK_EQUAL(OrvCompareString(a, b, lengthA), order) ||
                !CHECK_EQUAL(OrvCompareString(a, b, OrvTerminated, lengthB), order) ||
                !CHECK_EQUAL(OrvCompareString(a, b, lengthA + 1, lengthB + 1),
                             OrderOf(a, b, lengthA + 1, lengthB + 1)) ||
                !CHECK_EQUAL(OrvCompareSubString(a, b, n), cut) ||
                !CHECK_EQUAL(OrvCompareSubString(a, b, n, lengthA, lengthB), cut) ||
                !CHECK_EQUAL(OrvCompareSubString(a, b, n, OrvTerminated, lengthB), cut))
                break;
        }
        const T *const none = nullptr;
        const Ascii<T> text("abcX");
        CHECK_EQUAL(OrvCompareString(none, Ascii<T>("").units), 0);
        CHECK_EQUAL(OrvCompareString(text.units, none), 1);
        CHECK_EQUAL(OrvCompareString(none, text.units, 7, 1), -1);
    });
}

TEST_CASE(CompareCrossesPages)
{
    // Two terminated texts over several pages, at distances that put the page ends at different units.
    constexpr uint32_t kLength = 9000;
    const uint32_t places[] = {0, 2047, 2048, 4095, 4096, 8191, 8999};
    auto *const a = test::GuardedArray<wchar_t>(kLength + 1);
    auto *const bytes = test::GuardedArray<uint8_t>((kLength + 1) * sizeof(wchar_t) + kSlacks);
    for (uint32_t i = 0; i < kLength; i++)
        a[i] = static_cast<wchar_t>('a' + i % 23);
    for (uint32_t shift = 0; shift <= kSlacks; shift++) {
        auto *const b = reinterpret_cast<wchar_t *>(bytes + shift);
        detail::MoveBytes(b, a, (kLength + 1) * sizeof(wchar_t));
        test::Note("shift", shift);
        CHECK_EQUAL(OrvCompareString(a, b), 0);
        for (const uint32_t at : places) {
            detail::StoreUnit(b + at, L'z');
            CHECK_EQUAL(OrvCompareString(a, b), -1);
            CHECK_EQUAL(OrvCompareString(b, a), 1);
            CHECK_EQUAL(OrvFindElement(b, L'z'), b + at);
            detail::StoreUnit(b + at, a[at]);
        }
    }
}

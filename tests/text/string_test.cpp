// Copying, appending, trimming and ASCII case, in both widths and into descriptors.

#include "orv/text/string.h"

#include "harness/memory.h"
#include "harness/test.h"
#include "orv/runtime/result.h"
#include "text/texts.h"

using test::Ascii;
using test::ForBothWidths;

TEST_CASE(CopyFitsOrEmpties)
{
    struct {
        const char *source;
        uint32_t count;
        uint32_t capacity;
        OrvResult result;
        const char *text;
    } const cases[] = {
        {"abc", OrvTerminated, 4, ORV_S_OK, "abc"},
        {"abc", OrvTerminated, 3, ORV_E_BUFFER_TOO_SMALL, ""},
        {"abc", 2, 3, ORV_S_OK, "ab"},
        {"abc", 3, 3, ORV_E_BUFFER_TOO_SMALL, ""},
        {"abc", 0, 1, ORV_S_OK, ""},
        {"", OrvTerminated, 1, ORV_S_OK, ""},
        {nullptr, OrvTerminated, 1, ORV_S_OK, ""},
        {nullptr, 0, 9, ORV_S_OK, ""},
        {"abc", OrvTerminated, 0, ORV_E_INVALID_ARGUMENT, "old"},
    };
    ForBothWidths([&](auto unit) {
        typedef decltype(unit) T;
        for (const auto &c : cases) {
            test::Note("case", &c - cases);
            const Ascii<T> source(c.source ? c.source : "");
            T *const destination = test::GuardedCopy<T>(Ascii<T>("old"), c.capacity ? c.capacity : 4);
            CHECK_EQUAL(OrvCopyString(destination, c.capacity, c.source ? source.units : nullptr, c.count),
                        c.result);
            CHECK_TEXT(destination, static_cast<const T *>(Ascii<T>(c.text)));
        }
        CHECK_EQUAL(OrvCopyString(static_cast<T *>(nullptr), 4, Ascii<T>("abc")), ORV_E_INVALID_ARGUMENT);
    });
}

TEST_CASE(CopyOfARangeChecksItsCountOnly)
{
    ForBothWidths([](auto unit) {
        typedef decltype(unit) T;
        const Ascii<T> source("abcdef");
        T destination[8] = {};
        CHECK_EQUAL(OrvCopySubString(destination, 8, source, 2, 3), ORV_S_OK);
        CHECK_TEXT(destination, static_cast<const T *>(Ascii<T>("cde")));
        CHECK_EQUAL(OrvCopySubString(destination, 8, source, 4, 2, 2), ORV_S_OK); // the start is not checked
        CHECK_TEXT(destination, static_cast<const T *>(Ascii<T>("ef")));
        CHECK_EQUAL(OrvCopySubString(destination, 8, source, 0, 7), ORV_E_INVALID_ARGUMENT);
        CHECK_EQUAL(OrvCopySubString(destination, 8, source, 0, OrvTerminated), ORV_E_INVALID_ARGUMENT);
        CHECK_EQUAL(OrvCopySubString(destination, 8, source, 0, 3, 2), ORV_E_INVALID_ARGUMENT);
        CHECK_EQUAL(OrvCopySubString(destination, 0, source, 0, 1), ORV_E_INVALID_ARGUMENT);
        CHECK_TEXT(destination, static_cast<const T *>(Ascii<T>("ef")));
        CHECK_EQUAL(OrvCopySubString(destination, 3, source, 0, 3), ORV_E_BUFFER_TOO_SMALL);
        CHECK_EQUAL(destination[0], T(0));
        CHECK_EQUAL(OrvCopySubString(destination, 1, static_cast<const T *>(nullptr), 5, 0), ORV_S_OK);
    });
}

TEST_CASE(CopyMayOverlap)
{
    ForBothWidths([](auto unit) {
        typedef decltype(unit) T;
        for (uint32_t count = 0; count < 200; count++) {
            for (uint32_t shift = 0; shift < 40; shift++) {
                T units[300] = {};
                for (uint32_t i = 0; i < 300; i++)
                    units[i] = static_cast<T>(i + 1);
                const bool up = (count + shift) % 2 != 0;
                T *const source = up ? units : units + shift;
                T *const destination = up ? units + shift : units;
                const T first = source[0];
                test::Note("count", count);
                CHECK_EQUAL(OrvCopyString(destination, 250, source, count), ORV_S_OK);
                uint32_t equal = 0;
                while (equal < count && destination[equal] == static_cast<T>(first + equal))
                    equal++;
                CHECK_EQUAL(equal, count);
                CHECK_EQUAL(destination[count], T(0));
                CHECK_EQUAL(destination[count + 1], static_cast<T>(destination - units + count + 2));
            }
        }
    });
}

TEST_CASE(AppendLeavesTheTextWhenItFails)
{
    constexpr uint32_t kNone = 0xFFFF;
    struct {
        const char *source;
        uint32_t count;
        uint32_t capacity;
        uint32_t length; // kNone: searched for
        OrvResult result;
        const char *text;
    } const cases[] = {
        {"de", OrvTerminated, 6, kNone, ORV_S_OK, "abcde"},
        {"de", OrvTerminated, 5, kNone, ORV_E_BUFFER_TOO_SMALL, "abc"},
        {"de", 1, 5, 3, ORV_S_OK, "abcd"},
        {"de", OrvTerminated, 5, 3, ORV_E_BUFFER_TOO_SMALL, "abc"},
        {"de", OrvTerminated, 6, 1, ORV_S_OK, "ade"},
        {nullptr, OrvTerminated, 4, kNone, ORV_S_OK, "abc"},
        {"de", OrvTerminated, 3, kNone, ORV_E_NOT_TERMINATED, "abc"},
        {"de", OrvTerminated, 6, 6, ORV_E_NOT_TERMINATED, "abc"},
        {"", OrvTerminated, 6, 7, ORV_E_NOT_TERMINATED, "abc"},
        {"de", 0xFFFFFFFE, 6, 3, ORV_E_BUFFER_TOO_SMALL, "abc"},
        {"de", OrvTerminated, 0, kNone, ORV_E_INVALID_ARGUMENT, "abc"},
    };
    ForBothWidths([&](auto unit) {
        typedef decltype(unit) T;
        for (const auto &c : cases) {
            test::Note("case", &c - cases);
            const Ascii<T> source(c.source ? c.source : "");
            Ascii<T> destination("abc");
            uint32_t length = c.length;
            CHECK_EQUAL(OrvAppendString(destination, c.capacity, c.source ? source.units : nullptr,
                                        c.length == kNone ? nullptr : &length, c.count),
                        c.result);
            CHECK_TEXT(destination.units, static_cast<const T *>(Ascii<T>(c.text)));
            if (OrvFailed(c.result) || c.length == kNone)
                CHECK_EQUAL(length, c.length);
            else
                CHECK_EQUAL(destination.units[length], T(0));
        }
        Ascii<T> itself("abc");
        CHECK_EQUAL(OrvAppendString(itself.units, 7, itself.units), ORV_S_OK);
        CHECK_TEXT(itself.units, static_cast<const T *>(Ascii<T>("abcabc")));
    });
}

TEST_CASE(DescriptorsStayWhenTheResultDoesNotFit)
{
    typedef _ORV_UTF16CHAR_STR Descriptor;
    struct {
        OrvResult (*change)(Descriptor &, uint32_t *requiredSize);
        uint32_t capacity;
        OrvResult result;
        uint32_t requiredSize;
        const wchar_t *text;
    } const cases[] = {
        {[](Descriptor &d, uint32_t *r) { return OrvCopyString(d, L"wxyz", OrvTerminated, r); }, 5, 0, 0,
         L"wxyz"},
        {[](Descriptor &d, uint32_t *r) { return OrvCopyString(d, L"wxyz", OrvTerminated, r); }, 4,
         ORV_E_BUFFER_TOO_SMALL, 5, L"abc"},
        {[](Descriptor &d, uint32_t *r) { return OrvCopyString(d, L"wxyz", 2, r); }, 0,
         ORV_E_BUFFER_TOO_SMALL, 3, L"abc"},
        {[](Descriptor &d, uint32_t *) { return OrvCopyString(d, nullptr); }, 4, 0, 0, L""},
        {[](Descriptor &d, uint32_t *r) { return OrvCopySubString(d, L"wxyz", 1, 2, OrvTerminated, r); }, 4,
         0, 0, L"xy"},
        {[](Descriptor &d, uint32_t *r) { return OrvCopySubString(d, L"wxyz", 0, 4, OrvTerminated, r); }, 4,
         ORV_E_BUFFER_TOO_SMALL, 5, L"abc"},
        {[](Descriptor &d, uint32_t *r) { return OrvCopySubString(d, L"wx", 0, 3, OrvTerminated, r); }, 4,
         ORV_E_INVALID_ARGUMENT, 0, L"abc"},
        {[](Descriptor &d, uint32_t *r) { return OrvAppendString(d, L"de", OrvTerminated, r); }, 6, 0, 0,
         L"abcde"},
        {[](Descriptor &d, uint32_t *r) { return OrvAppendString(d, L"de", OrvTerminated, r); }, 5,
         ORV_E_BUFFER_TOO_SMALL, 6, L"abc"},
        {[](Descriptor &d, uint32_t *r) { return OrvAppendString(d, L"de", 0xFFFFFFFE, r); }, 5,
         ORV_E_BUFFER_TOO_SMALL, 0xFFFFFFFF, L"abc"},
        {[](Descriptor &d, uint32_t *) { return OrvTrimString(d, L" w "); }, 3, 0, 0, L"w"},
        {[](Descriptor &d, uint32_t *) { return OrvTrimStringLeft(d, L" w "); }, 3, 0, 0, L"w "},
        {[](Descriptor &d, uint32_t *) { return OrvTrimStringRight(d, L" w "); }, 3, 0, 0, L" w"},
        {[](Descriptor &d, uint32_t *) { return OrvTrimString(d, L" wxyz"); }, 4, ORV_E_BUFFER_TOO_SMALL, 0,
         L"abc"},
        {[](Descriptor &d, uint32_t *) { return OrvTrimString(d, L" w"); }, 0, ORV_E_INVALID_ARGUMENT, 0,
         L"abc"},
    };
    for (const auto &c : cases) {
        test::Note("case", &c - cases);
        Ascii<wchar_t> characters("abc");
        Descriptor descriptor = {3, c.capacity, characters};
        uint32_t requiredSize = 0;
        CHECK_EQUAL(c.change(descriptor, &requiredSize), c.result);
        CHECK_EQUAL(requiredSize, c.requiredSize);
        CHECK_TEXT(characters.units, c.text);
        CHECK_EQUAL(descriptor.length, OrvGetStringSizeInElements(c.text));
    }
    Ascii<wchar_t> characters("abc");
    Descriptor counted = {OrvTerminated, 6, characters};
    CHECK_EQUAL(OrvAppendString(counted, L"de"), ORV_S_OK);
    CHECK_EQUAL(counted.length, 5u);
    Descriptor endless = {OrvTerminated, 3, characters};
    CHECK_EQUAL(OrvAppendString(endless, L""), ORV_E_NOT_TERMINATED);
}

TEST_CASE(TrimCutsItsFiveCharacters)
{
    struct {
        const char *source;
        uint32_t count;
        const char *left;
        const char *right;
        const char *both;
    } const cases[] = {
        {" \tx \r\n", OrvTerminated, "x \r\n", " \tx", "x"},
        {"\v a b\v", OrvTerminated, "a b\v", "\v a b", "a b"},
        {"  ", OrvTerminated, "", "", ""},
        {"", OrvTerminated, "", "", ""},
        {"\f\xA0", OrvTerminated, "\f\xA0", "\f\xA0", "\f\xA0"},
        {" ab c", 3, "ab", " ab", "ab"},
        {" x \0\0", 4, "x ", " x ", "x "}, // a terminator inside the count is no blank
    };
    ForBothWidths([&](auto unit) {
        typedef decltype(unit) T;
        OrvResult (*const trim[])(T *, uint32_t, const T *, uint32_t *,
                                  uint32_t) = {OrvTrimStringLeft, OrvTrimStringRight, OrvTrimString};
        for (const auto &c : cases) {
            test::Note("case", &c - cases);
            const Ascii<T> source(c.source);
            const char *const expected[] = {c.left, c.right, c.both};
            for (uint32_t side = 0; side < 3; side++) {
                T destination[16];
                uint32_t length = 99;
                CHECK_EQUAL(trim[side](destination, 16, source, &length, c.count), ORV_S_OK);
                CHECK_TEXT(destination, static_cast<const T *>(Ascii<T>(expected[side])));
                CHECK_EQUAL(destination[length], T(0));
                CHECK_EQUAL(trim[side](destination, 0, source, &length, c.count), ORV_E_INVALID_ARGUMENT);
            }
        }
        // On both sides what is cut off at the right has to fit too, on the right alone it does not.
        T destination[3] = {'o', 'l', 'd'};
        uint32_t length = 99;
        CHECK_EQUAL(OrvTrimString(destination, 3, Ascii<T>(" x  "), &length), ORV_E_BUFFER_TOO_SMALL);
        CHECK_EQUAL(destination[0], T(0));
        CHECK_EQUAL(length, 99u);
        CHECK_EQUAL(OrvTrimStringRight(destination, 3, Ascii<T>("xy  "), &length), ORV_S_OK);
        CHECK_EQUAL(length, 2u);
        Ascii<T> inPlace("  in place ");
        CHECK_EQUAL(OrvTrimString(inPlace.units, 12, inPlace.units), ORV_S_OK);
        CHECK_TEXT(inPlace.units, static_cast<const T *>(Ascii<T>("in place")));
    });
}

TEST_CASE(AsciiCaseChangesLettersOnly)
{
    ForBothWidths([](auto unit) {
        typedef decltype(unit) T;
        test::GuardedPage page;
        for (uint32_t start = 0; start < 0x180; start += 32) { // all bytes, and as many code units
            for (uint32_t length = 0; length < 50; length++) {
                for (uint32_t slack = 0; slack < 2; slack++) {
                    T *const text = page.Place<T>(length, slack);
                    const auto unitAt = [start](uint32_t i) { return static_cast<T>(start + i); };
                    const auto check = [&](T first, uint32_t changed) {
                        for (uint32_t i = 0; i < length; i++) {
                            const bool letter = unitAt(i) >= first && unitAt(i) < first + 26;
                            if (test::Get(text, i) != static_cast<T>(unitAt(i) ^ (letter ? changed : 0)))
                                return false;
                        }
                        return true;
                    };
                    test::Note("length", length);
                    for (uint32_t i = 0; i < length; i++)
                        test::Set(text, i, unitAt(i));
                    OrvLowerASCIIString(text, length);
                    CHECK(check('A', 0x20));
                    for (uint32_t i = 0; i < length; i++)
                        test::Set(text, i, unitAt(i));
                    OrvUpperASCIIString(text, length);
                    CHECK(check('a', 0x20));
                }
            }
        }
        Ascii<T> text("One Two");
        OrvUpperASCIIString(text.units);
        CHECK_TEXT(text.units, static_cast<const T *>(Ascii<T>("ONE TWO")));
        OrvLowerASCIIString(text.units, 3);
        CHECK_TEXT(text.units, static_cast<const T *>(Ascii<T>("one TWO")));
        OrvLowerASCIIString(text.units, 0xFFFFFFF0); // over the end of the address space
        CHECK_TEXT(text.units, static_cast<const T *>(Ascii<T>("one TWO")));
        OrvLowerASCIIString(static_cast<T *>(nullptr));
    });
}

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
        {nullptr, OrvTerminated, 1, ORV_S_OK, ""},
        {"abc", OrvTerminated, 0, ORV_E_INVALID_ARGUMENT, "old"},
    };
    ForBothWidths([&](auto unit) {
        typedef decltype(unit) T;
        for (const auto &c : cases) {
            test::Note("case", &c - cases);
            const Ascii<T> source(c.source);
            T *const destination = test::GuardedCopy(Ascii<T>("old").units, c.capacity ? c.capacity : 4);
            CHECK_EQUAL(OrvCopyString(destination, c.capacity, c.source ? source.units : nullptr, c.count),
                        c.result);
            CHECK_TEXT(destination, Ascii<T>(c.text).units);
        }
        T *const none = nullptr;
        CHECK_EQUAL(OrvCopyString(none, 4, Ascii<T>("abc").units), ORV_E_INVALID_ARGUMENT);
        const T *const unterminated = test::GuardedCopy(Ascii<T>(" bc ").units, 4);
        T room[12] = {};
        CHECK_EQUAL(OrvCopyString(room, 12, unterminated, 4), ORV_S_OK);
        CHECK_EQUAL(OrvAppendString(room, 12, unterminated, nullptr, 4), ORV_S_OK);
        CHECK_TEXT(room, Ascii<T>(" bc  bc ").units);
        CHECK_EQUAL(OrvCopySubString(room, 12, unterminated, 1, 3, 4), ORV_S_OK);
        CHECK_EQUAL(OrvTrimString(room, 12, unterminated, nullptr, 4), ORV_S_OK);
        CHECK_TEXT(room, Ascii<T>("bc").units);
        Ascii<T> text("abcdef");
        CHECK_EQUAL(OrvCopyString(text.units, 6, text.units + 2), ORV_S_OK); // its end is overwritten last
        CHECK_TEXT(text.units, Ascii<T>("cdef").units);
    });
}

TEST_CASE(CopyOfARangeChecksItsCountOnly)
{
    struct {
        uint32_t capacity, start, count, sourceLength;
        OrvResult result;
        const char *text;
    } const cases[] = {
        {8, 2, 3, OrvTerminated, ORV_S_OK, "cde"},
        {8, 4, 2, 2, ORV_S_OK, "ef"}, // the start is not checked
        {8, 0, 7, OrvTerminated, ORV_E_INVALID_ARGUMENT, "old"},
        {8, 0, 3, 2, ORV_E_INVALID_ARGUMENT, "old"},
        {0, 0, 1, OrvTerminated, ORV_E_INVALID_ARGUMENT, "old"},
    };
    ForBothWidths([&](auto unit) {
        typedef decltype(unit) T;
        for (const auto &c : cases) {
            test::Note("case", &c - cases);
            Ascii<T> destination("old", c.capacity);
            CHECK_EQUAL(OrvCopySubString(destination.units, c.capacity, Ascii<T>("abcdef").units, c.start,
                                         c.count, c.sourceLength),
                        c.result);
            CHECK_TEXT(destination.units, Ascii<T>(c.text).units);
        }
        Ascii<T> text("old");
        const T *const none = nullptr;
        CHECK_EQUAL(OrvCopySubString(text.units, 1, none, 5, 0), ORV_S_OK);
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
        {"de", OrvTerminated, 5, 3, ORV_E_BUFFER_TOO_SMALL, "abc"},
        {"de", OrvTerminated, 6, 1, ORV_S_OK, "ade"},
        {nullptr, OrvTerminated, 4, kNone, ORV_S_OK, "abc"},
        {"de", OrvTerminated, 3, kNone, ORV_E_NOT_TERMINATED, "abc"},
        {"de", 0xFFFFFFFE, 6, 3, ORV_E_BUFFER_TOO_SMALL, "abc"},
        {"de", OrvTerminated, 0, kNone, ORV_E_INVALID_ARGUMENT, "abc"},
    };
    ForBothWidths([&](auto unit) {
        typedef decltype(unit) T;
        for (const auto &c : cases) {
            test::Note("case", &c - cases);
            const Ascii<T> source(c.source);
            Ascii<T> destination("abc", c.capacity);
            uint32_t length = c.length;
            CHECK_EQUAL(OrvAppendString(destination.units, c.capacity, c.source ? source.units : nullptr,
                                        c.length == kNone ? nullptr : &length, c.count),
                        c.result);
            CHECK_TEXT(destination.units, Ascii<T>(c.text).units);
            if (OrvFailed(c.result) || c.length == kNone)
                CHECK_EQUAL(length, c.length);
            else
                CHECK_EQUAL(destination.units[length], T(0));
        }
        Ascii<T> itself("abc", 7);
        CHECK_EQUAL(OrvAppendString(itself.units, 7, itself.units), ORV_S_OK);
        CHECK_TEXT(itself.units, Ascii<T>("abcabc").units);
    });
}

TEST_CASE(DescriptorsStayWhenTheResultDoesNotFit)
{
    typedef _ORV_UTF16CHAR_STR Text;
    constexpr OrvResult kSmall = ORV_E_BUFFER_TOO_SMALL;
    constexpr uint32_t kEnd = OrvTerminated;
    struct {
        uint32_t capacity;
        OrvResult result;
        uint32_t requiredSize;
        const wchar_t *text;
        OrvResult (*change)(Text &, uint32_t *requiredSize);
    } const cases[] = {
        {5, 0, 0, L"wxyz", [](Text &t, uint32_t *r) { return OrvCopyString(t, L"wxyz", kEnd, r); }},
        {4, kSmall, 5, L"abc", [](Text &t, uint32_t *r) { return OrvCopyString(t, L"wxyz", kEnd, r); }},
        {4, 0, 0, L"xy", [](Text &t, uint32_t *r) { return OrvCopySubString(t, L"wxyz", 1, 2, kEnd, r); }},
        {4, kSmall, 5, L"abc",
         [](Text &t, uint32_t *r) { return OrvCopySubString(t, L"wxyz", 0, 4, kEnd, r); }},
        {4, ORV_E_INVALID_ARGUMENT, 0, L"abc",
         [](Text &t, uint32_t *) { return OrvCopySubString(t, L"w", 0, 3); }},
        {6, 0, 0, L"abcde", [](Text &t, uint32_t *r) { return OrvAppendString(t, L"de", kEnd, r); }},
        {5, kSmall, 6, L"abc", [](Text &t, uint32_t *r) { return OrvAppendString(t, L"de", kEnd, r); }},
        {5, kSmall, kEnd, L"abc",
         [](Text &t, uint32_t *r) { return OrvAppendString(t, L"de", 0xFFFFFFFE, r); }},
        {3, 0, 0, L"w", [](Text &t, uint32_t *) { return OrvTrimString(t, L" w "); }},
        {4, kSmall, 0, L"abc", [](Text &t, uint32_t *) { return OrvTrimString(t, L" wxyz"); }},
        {0, ORV_E_INVALID_ARGUMENT, 0, L"abc", [](Text &t, uint32_t *) { return OrvTrimString(t, L" w"); }},
    };
    for (const auto &c : cases) {
        test::Note("case", &c - cases);
        Ascii<wchar_t> characters("abc", c.capacity);
        Text text = {3, c.capacity, characters.units};
        uint32_t requiredSize = 0;
        CHECK_EQUAL(c.change(text, &requiredSize), c.result);
        CHECK_EQUAL(requiredSize, c.requiredSize);
        CHECK_TEXT(characters.units, c.text);
        CHECK_EQUAL(text.length, OrvGetStringSizeInElements(c.text));
    }
    Ascii<wchar_t> characters("abc", 6);
    Text terminated = {OrvTerminated, 6, characters.units};
    CHECK_EQUAL(OrvAppendString(terminated, L"de"), ORV_S_OK);
    CHECK_EQUAL(terminated.length, 5u);
    Text endless = {OrvTerminated, 3, characters.units};
    CHECK_EQUAL(OrvAppendString(endless, L""), ORV_E_NOT_TERMINATED);
}

TEST_CASE(TrimCutsItsFiveCharacters)
{
    struct {
        const char *source;
        uint32_t count;
        const char *expected[3]; // left, right, both
    } const cases[] = {
        {" \tx \r\n", OrvTerminated, {"x \r\n", " \tx", "x"}},
        {"\v a b\v", OrvTerminated, {"a b\v", "\v a b", "a b"}},
        {"  ", OrvTerminated, {"", "", ""}},
        {"\f\xA0", OrvTerminated, {"\f\xA0", "\f\xA0", "\f\xA0"}},
        {" ab c", 3, {"ab", " ab", "ab"}},
        {" x \0\0", 4, {"x ", " x ", "x "}}, // a terminator inside the count is no blank
    };
    ForBothWidths([&](auto unit) {
        typedef decltype(unit) T;
        OrvResult (*const trim[])(T *, uint32_t, const T *, uint32_t *,
                                  uint32_t) = {OrvTrimStringLeft, OrvTrimStringRight, OrvTrimString};
        test::TextPages pages;
        uint32_t length = 0;
        for (const auto &c : cases) {
            for (uint32_t side = 0; side < 3; side++) {
                test::Note("case", &c - cases);
                // What is cut off at the right has to fit too, unless nothing else is cut off.
                const uint32_t left = OrvGetStringSizeInElements(c.expected[side == 1 ? 1 : 0]);
                const uint32_t room = c.count == OrvTerminated ? left + 1 : c.count + 1;
                T *const destination = pages.Place<T>(room);
                CHECK_EQUAL(trim[side](destination, room, Ascii<T>(c.source).units, &length, c.count),
                            ORV_S_OK);
                CHECK_TEXT(destination, Ascii<T>(c.expected[side]).units);
                CHECK_EQUAL(destination[length], T(0));
                CHECK_EQUAL(trim[side](destination, 0, nullptr, &length, 0), ORV_E_INVALID_ARGUMENT);
            }
        }
        T *const destination = pages.Place<T>(3);
        CHECK_EQUAL(OrvTrimStringRight(destination, 3, Ascii<T>("xy  ").units, &length), ORV_S_OK);
        CHECK_EQUAL(OrvTrimString(destination, 3, Ascii<T>(" x  ").units, &length), ORV_E_BUFFER_TOO_SMALL);
        CHECK_EQUAL(destination[0], T(0));
        CHECK_EQUAL(length, 2u);
        Ascii<T> inPlace("  in place ");
        CHECK_EQUAL(OrvTrimString(inPlace.units, 12, inPlace.units), ORV_S_OK);
        CHECK_TEXT(inPlace.units, Ascii<T>("in place").units);
    });
}

TEST_CASE(AsciiCaseChangesLettersOnly)
{
    ForBothWidths([](auto unit) {
        typedef decltype(unit) T;
        test::TextPages page;
        const T firsts[] = {'A', 'a'};
        for (uint32_t length = 0; length < 0x180; length++) { // every byte, and as many code units
            for (const T first : firsts) {
                T *const text = page.Make<T>(length, length % 3, [length](uint32_t i) { return length - i; });
                first == T('A') ? OrvLowerASCIIString(text, length) : OrvUpperASCIIString(text, length);
                uint32_t right = 0;
                for (; right < length; right++) {
                    const auto before = static_cast<T>(length - right);
                    const bool letter = before >= first && before < first + 26;
                    if (detail::LoadUnit(text + right) != static_cast<T>(letter ? before ^ 0x20 : before))
                        break;
                }
                test::Note("length", length);
                CHECK_EQUAL(right, length);
            }
        }
        Ascii<T> text("One Two");
        OrvUpperASCIIString(text.units);
        CHECK_TEXT(text.units, Ascii<T>("ONE TWO").units);
        OrvLowerASCIIString(text.units, 0xFFFFFFF0); // over the end of the address space
        CHECK_TEXT(text.units, Ascii<T>("ONE TWO").units);
        OrvLowerASCIIString(static_cast<T *>(nullptr));
    });
}

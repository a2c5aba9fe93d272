// The format engine: the grammar, the placement of numbers, and what each kind of target keeps on failure.
// Tables hold bytes; every row runs in both widths, because the twins must agree to the letter.

#include "orv/text/format.h"

#include "nt/nt.h"
#include "orv/runtime/result.h"
#include "orv/text/string.h"
#include "text/texts.h"

namespace
{

constexpr uint32_t kRoom = 1024;

typedef test::Ascii<wchar_t> Wide;

/// Formats in both widths with the same arguments; the results and texts must be the same.
OrvResult FormatBoth(char (&out)[kRoom], const char *format, ...)
{
    va_list arguments;
    va_start(arguments, format);
    uint32_t written = 0;
    const OrvResult result =
        OrvFormatStringV(OrvCodePageUtf8, out, kRoom, test::Ascii<char>(format).units, &written, arguments);
    va_end(arguments);

    static wchar_t wideOut[kRoom];
    uint32_t wideWritten = 0;
    va_start(arguments, format);
    CHECK_EQUAL(
        OrvFormatStringV(OrvCodePageUtf8, wideOut, kRoom, Wide(format).units, &wideWritten, arguments),
        result);
    va_end(arguments);
    CHECK_EQUAL(wideWritten, written);
    CHECK_TEXT(wideOut, Wide(out).units);
    return result;
}

/// Collects pieces, and fails at one of them when told to.
template <typename T>
class Collector final : public OrvBasAppendable<T>
{
public:
    OrvResult Append(const T *first, const T *last) override
    {
        if (++pieces == failAt)
            return ORV_E_WRITE_FAULT;
        while (first != last)
            text[length++] = *first++;
        return ORV_S_NOT_SET; // a success with a remark does not stop the engine
    }

    T text[kRoom] = {};
    uint32_t length = 0;
    uint32_t pieces = 0;
    uint32_t failAt = 0;
};

} // namespace

TEST_CASE(IntegersStandWhereTheDirectiveSays)
{
    struct {
        const char *format;
        uint64_t value; ///< of which a narrow directive takes the lower half
        const char *expected;
    } const cases[] = {
        {"%-05d|", 42, "42   |"},
        {"% x", 42, "2a"},
        {"%.40u", 1, "00000000000000000000000000000001"}, // 32 digits at most
        {"%hd", 0x18000, "-32768"},
        {"%hhd", 0x180, "-128"},
        {"%zu", 0xFFFFFFFF, "4294967295"},
        {"%I32x", 0xFFFFFFFF, "ffffffff"},
        {"%8.4p", 0xAB, "000000ab"},
        {"%-8p|", 0xAB, "ab      |"},
        {"%3c|", 'A', "  A|"},
        {"%-3c|", 0x10041, "A  |"},
        {"%I64d|%d", 0x8000000000000000, "-9223372036854775808|77"},
        {"%I64x|%d", 0x123456789ABCDEF0, "123456789abcdef0|77"},
        {"%#llo|%d", 0xFFFFFFFFFFFFFFFF, "01777777777777777777777|77"},
    };
    for (const auto &c : cases) {
        test::Note(c.format, c.value);
        char out[kRoom];
        CHECK_EQUAL(FormatBoth(out, c.format, c.value, 77), ORV_S_OK);
        CHECK_TEXT(out, c.expected);
    }
}

TEST_CASE(StarsTakeArgumentsInOrder)
{
    char out[kRoom];
    CHECK_EQUAL(FormatBoth(out, "%*d|%-*d|%*d|", 5, 42, 5, 42, -5, 42), ORV_S_OK);
    CHECK_TEXT(out, "   42|42   |42   |");
    CHECK_EQUAL(FormatBoth(out, "%.*d|%*.*d|%.*d|%.*d|", 3, 7, 6, 3, 7, -1, 7, 0, 0), ORV_S_OK);
    CHECK_TEXT(out, "007|   007|7||");
    CHECK_EQUAL(FormatBoth(out, "%*S %d", 42), ORV_S_OK); // verbatim: the star takes nothing
    CHECK_TEXT(out, "%*S 42");
}

TEST_CASE(WhatIsNoDirectiveIsCopied)
{
    struct {
        const char *format;
        const char *expected;
    } const cases[] = {
        {"100%", "100%"},
        {"%5%|", "%|"},
        {"%d%%", "42%"},
        {"%-+ #0", "%-+ #0"},
        {"%I64", "%I64"},
        {"%n %d", "%n 42"},
        {"%-5.3q|%d", "%-5.3q|42"},
        {"%I64s|%d", "%I64s|42"},
        {"%wX%wi|%u", "|42"},
        {"%\x01%d", "%\x01"
                    "42"},
        {"a%\xE9%d", "a%\xE9"
                     "42"},
    };
    for (const auto &c : cases) {
        char out[kRoom];
        CHECK_EQUAL(FormatBoth(out, c.format, 42), ORV_S_OK);
        CHECK_TEXT(out, c.expected);
    }
}

TEST_CASE(StringsAreCutAndPadded)
{
    struct {
        const char *format;
        const char *text;
        const char *expected;
    } const cases[] = {
        {"%s", "abc", "abc"},       {"%-5s|", "abc", "abc  |"},
        {"%05s|", "abc", "  abc|"}, {"%5.2s|", "abc", "   ab|"},
        {"%.0s|", "abc", "|"},      {"%.9s|", "abc", "abc|"},
        {"%3s|", "", "   |"},       {"%s", nullptr, "(null)"},
        {"%.3s", nullptr, "(nu"},   {"%-8s|", nullptr, "(null)  |"},
    };
    for (const auto &c : cases) {
        test::Note(c.format, 0);
        char out[kRoom];
        wchar_t wideOut[kRoom];
        CHECK_EQUAL(OrvFormatString(OrvCodePageUtf8, out, kRoom, nullptr, c.format, c.text), ORV_S_OK);
        CHECK_TEXT(out, c.expected);
        const Wide text(c.text ? c.text : "");
        CHECK_EQUAL(OrvFormatString(OrvCodePageUtf8, wideOut, kRoom, nullptr, Wide(c.format).units,
                                    c.text ? text.units : nullptr),
                    ORV_S_OK);
        CHECK_TEXT(wideOut, Wide(c.expected).units);
    }
    // A precision bounds how far an unterminated text is read.
    char out[kRoom];
    CHECK_EQUAL(OrvFormatString(OrvCodePageUtf8, out, kRoom, nullptr, "%.5s", test::GuardedCopy("fives", 5)),
                ORV_S_OK);
    CHECK_TEXT(out, "fives");
}

TEST_CASE(CountedAndOwnWidthStrings)
{
    wchar_t wideOut[kRoom];
    UNICODE_STRING unicode = {6, 6, test::GuardedCopy(L"abc", 3)};
    UNICODE_STRING empty = {0, 0, nullptr};
    CHECK_EQUAL(OrvFormatString(OrvCodePageUtf8, wideOut, kRoom, nullptr, L"%wZ|%*wZ|%.2wZ|%wZ|%8wZ|%ls",
                                &unicode, 5, &unicode, &unicode, &empty, nullptr, L"own"),
                ORV_S_OK);
    CHECK_TEXT(wideOut, L"abc|  abc|ab||  (null)|own");

    char out[kRoom];
    ANSI_STRING ansi = {3, 3, test::GuardedCopy("abc", 3)};
    CHECK_EQUAL(
        OrvFormatString(OrvCodePageUtf8, out, kRoom, nullptr, "%Z|%-5Z|%.2Z|%hs", &ansi, &ansi, &ansi, "own"),
        ORV_S_OK);
    CHECK_TEXT(out, "abc|abc  |ab|own");

    // Without a code page the modifiers of a string mean nothing.
    Collector<wchar_t> sink;
    CHECK_EQUAL(OrvBasAppendFormat(sink, L"%ls %s %wZ", L"first", &unicode), ORV_S_OK);
    CHECK_TEXT(sink.text, L"%ls first abc");
}

TEST_CASE(StringsOfTheOtherWidthAreConverted)
{
    struct {
        const char *toBytes; ///< terminated, then counted text
        const char *toWide;
        const wchar_t *wide;
        const char *bytes; ///< the same text
        const char *bytesExpected;
        const wchar_t *wideExpected;
    } const cases[] = {
        {"%ls|%wZ", "%hs|%Z", L"\x00E9\x20AC", "\xC3\xA9\xE2\x82\xAC",
         "\xC3\xA9\xE2\x82\xAC|\xC3\xA9\xE2\x82\xAC", L"\x00E9\x20AC|\x00E9\x20AC"},
        // Padded by characters of the output.
        {"%6ls|%4wZ", "%6hs|%4Z", L"\x00E9z", "\xC3\xA9z", "   \xC3\xA9z| \xC3\xA9z",
         L"    \x00E9z|  \x00E9z"},
        {"%-5.2ls|%.0wZ|", "%-5.2hs|%.0Z|", L"abc", "abc", "ab   ||", L"ab   ||"},
        {"%5ls|%5wZ", "%5hs|%5Z", L"", "", "|", L"|"}, // prints nothing at all
        {"%.3ls|%8wZ", "%.3hs|%8Z", nullptr, nullptr, "(nu|  (null)", L"(nu|  (null)"},
    };
    char out[kRoom];
    wchar_t wideOut[kRoom];
    for (const auto &c : cases) {
        test::Note(c.toBytes, 0);
        const auto units = static_cast<USHORT>(OrvGetStringSizeInElements(c.wide));
        const auto count = static_cast<USHORT>(OrvGetStringSizeInElements(c.bytes));
        UNICODE_STRING unicode = {static_cast<USHORT>(units * 2), 0, const_cast<wchar_t *>(c.wide)};
        ANSI_STRING ansi = {count, 0, const_cast<char *>(c.bytes)};
        CHECK_EQUAL(OrvFormatString(OrvCodePageUtf8, out, kRoom, nullptr, c.toBytes, c.wide,
                                    c.wide ? &unicode : nullptr),
                    ORV_S_OK);
        CHECK_TEXT(out, c.bytesExpected);
        CHECK_EQUAL(OrvFormatString(OrvCodePageUtf8, wideOut, kRoom, nullptr, Wide(c.toWide).units, c.bytes,
                                    c.bytes ? &ansi : nullptr),
                    ORV_S_OK);
        CHECK_TEXT(wideOut, c.wideExpected);
    }

    // Longer than what is converted on the stack.
    char longText[1001];
    for (uint32_t i = 0; i < 1000; i++)
        longText[i] = static_cast<char>('a' + i % 26);
    longText[1000] = 0;
    uint32_t written = 0;
    CHECK_EQUAL(OrvFormatString(OrvCodePageUtf8, wideOut, kRoom, &written, L"%hs!", longText), ORV_S_OK);
    CHECK_EQUAL(written, 1001u);
    CHECK_EQUAL(wideOut[999], wchar_t('a' + 999 % 26));

    // What cannot be converted ends formatting, and a reference keeps its text.
    CHECK_EQUAL(OrvFormatString(OrvCodePageUtf8, wideOut, kRoom, &written, L"ok %hs", "a\xC0\x80"),
                ORV_E_INVALID_DATA);
    CHECK_TEXT(wideOut, L"ok ");
    CHECK_EQUAL(written, 3u);
    CHECK_EQUAL(OrvFormatString(OrvCodePageUtf8, out, kRoom, &written, "%ls", L"\xD800"), ORV_E_INVALID_DATA);
    CHECK_EQUAL(OrvFormatString(static_cast<OrvCodePage>(9), out, kRoom, &written, "%ls", L"a"),
                ORV_E_NOT_PROVIDED);

    // Without a code page counted strings go through the platform's own.
    Collector<wchar_t> wideSink;
    ANSI_STRING ansi = {3, 3, longText};
    CHECK_EQUAL(OrvBasAppendFormat(wideSink, L"%Z %hs", &ansi), ORV_S_OK);
    CHECK_TEXT(wideSink.text, L"abc %hs");
    Collector<char> sink;
    UNICODE_STRING unicode = {6, 6, const_cast<wchar_t *>(L"abc")};
    CHECK_EQUAL(OrvBasAppendFormat(sink, "%wZ %ls", &unicode), ORV_S_OK);
    CHECK_TEXT(sink.text, "abc %ls");
}

TEST_CASE(ArraysKeepWhatFits)
{
    // Every capacity, against a page that ends behind the array.
    const char expected[] = "ab-0042-  xy-%S-end";
    constexpr uint32_t kLength = sizeof expected - 1;
    for (uint32_t capacity = 1; capacity <= kLength + 1; capacity++) {
        test::Note("capacity", capacity);
        const bool fits = capacity > kLength;
        const uint32_t kept = fits ? kLength : capacity - 1;
        uint32_t written = 99;
        char *const out = test::GuardedArray<char>(capacity);
        CHECK_EQUAL(OrvFormatString(OrvCodePageUtf8, out, capacity, &written, "ab-%04d-%4s-%S-end", 42, "xy"),
                    fits ? ORV_S_OK : ORV_E_BUFFER_TOO_SMALL);
        CHECK_EQUAL(written, kept);
        CHECK_EQUAL(out[kept], '\0');
        for (uint32_t i = 0; i < kept; i++)
            CHECK_EQUAL(out[i], expected[i]);

        wchar_t *const wideOut = test::GuardedArray<wchar_t>(capacity);
        _ORV_UTF16CHAR_STR descriptor = {7, capacity, wideOut};
        CHECK_EQUAL(OrvFormatString(OrvCodePageUtf8, descriptor, L"ab-%04d-%4s-%S-end", 42, L"xy"),
                    fits ? ORV_S_OK : ORV_E_BUFFER_TOO_SMALL);
        CHECK_EQUAL(descriptor.length, fits ? kLength : 7u);
        CHECK_EQUAL(wideOut[kept], wchar_t(0));
    }
}

TEST_CASE(BadTargetsAreRefused)
{
    wchar_t untouched[2] = {L'u', 0};
    uint32_t written = 5;
    CHECK_EQUAL(OrvFormatString(OrvCodePageUtf8, untouched, 0, &written, L"x"), ORV_E_INVALID_ARGUMENT);
    CHECK_EQUAL(OrvFormatString(OrvCodePageUtf8, static_cast<wchar_t *>(nullptr), 4, &written, L"x"),
                ORV_E_INVALID_ARGUMENT);
    CHECK_EQUAL(
        OrvFormatString(OrvCodePageUtf8, untouched, 2, &written, static_cast<const wchar_t *>(nullptr)),
        ORV_E_INVALID_ARGUMENT);
    _ORV_UTF16CHAR_STR descriptor = {1, 0, untouched};
    CHECK_EQUAL(OrvFormatString(OrvCodePageUtf8, descriptor, L"x"), ORV_E_INVALID_ARGUMENT);
    CHECK_EQUAL(written, 5u);
    CHECK_EQUAL(descriptor.length, 1u);
    CHECK_TEXT(untouched, L"u");

    OrvUtf16CharHeapBuffer buffer;
    CHECK_EQUAL(buffer.Assign(L"kept", OrvTerminated), ORV_S_OK);
    CHECK_EQUAL(OrvFormatString(OrvCodePageUtf8, buffer, nullptr), ORV_E_INVALID_ARGUMENT);
    CHECK_EQUAL(OrvFormatString(OrvMakeMutableStringRef(buffer), nullptr), ORV_E_INVALID_ARGUMENT);
    CHECK_EQUAL(OrvAppendFormatString(OrvMakeMutableStringRef(buffer), nullptr), ORV_E_INVALID_ARGUMENT);
    CHECK_TEXT(buffer.GetValue(), L"kept");
}

TEST_CASE(HeapBuffersDoubleUntilTheTextFits)
{
    struct {
        uint32_t reserved; ///< before, when not 0
        uint32_t width;
        uint32_t capacity;
    } const cases[] = {{0, 1, 258},   {0, 257, 258},   {0, 258, 514}, {0, 5000, 8194},
                       {255, 1, 258}, {256, 257, 258}, {299, 1, 301}, {299, 301, 600}};
    for (const auto &c : cases) {
        test::Note("width", c.width);
        OrvUtf16CharHeapBuffer buffer;
        if (c.reserved)
            CHECK_EQUAL(buffer.ReserveElements(c.reserved), ORV_S_OK);
        CHECK_EQUAL(OrvFormatString(OrvCodePageUtf8, buffer, L"%*d", c.width, 7), ORV_S_OK);
        CHECK_EQUAL(buffer.GetInternal().length, c.width);
        CHECK_EQUAL(buffer.GetCapacity(), c.capacity);
        CHECK_EQUAL(buffer.GetValue()[c.width - 1], L'7');
        CHECK_EQUAL(buffer.GetValue()[c.width], wchar_t(0));
    }

    OrvUtf16CharHeapBuffer buffer;
    CHECK_EQUAL(buffer.Assign(L"xy", OrvTerminated), ORV_S_OK);
    {
        const test::RefusingHeap refusing;
        CHECK_EQUAL(OrvFormatString(OrvCodePageUtf8, buffer, L"z"), ORV_E_OUT_OF_MEMORY);
        CHECK_TEXT(buffer.GetValue(), L"xy"); // nothing was written yet
    }
    CHECK_EQUAL(OrvAppendFormatString(OrvCodePageUtf8, buffer, L"z"), ORV_S_OK);
    CHECK_TEXT(buffer.GetValue(), L"z");
    CHECK_EQUAL(OrvFormatString(OrvCodePageUtf8, buffer, L"lost %hs", "\xC0"), ORV_E_INVALID_DATA);
    CHECK_TEXT(buffer.GetValue(), L"");
}

TEST_CASE(ReferencesGrowAndRollBack)
{
    OrvUtf16CharHeapBuffer buffer;
    CHECK_EQUAL(buffer.Assign(L"before ", OrvTerminated), ORV_S_OK);
    const OrvMutableStringRefBase2<wchar_t> reference = OrvMakeMutableStringRef(buffer);
    CHECK_EQUAL(OrvAppendFormatString(reference, L"%d-%3s", 42, L"x"), ORV_S_OK);
    CHECK_TEXT(buffer.GetValue(), L"before 42-  x");
    CHECK_EQUAL(reference.view.length, 13u);
    CHECK_EQUAL(OrvFormatString(reference, L"%s%s", L"after", L""), ORV_S_OK);
    CHECK_TEXT(buffer.GetValue(), L"after");

    // A field that no memory holds fails after the first piece was appended.
    CHECK_EQUAL(OrvAppendFormatString(reference, L"lost %*d", 0x7FFFFFFF, 1), ORV_E_OUT_OF_MEMORY);
    CHECK_TEXT(buffer.GetValue(), L"after");
    CHECK_EQUAL(reference.view.length, 5u);
    CHECK_EQUAL(OrvFormatString(reference, L"lost %*d", 0x7FFFFFFF, 1), ORV_E_OUT_OF_MEMORY);
    CHECK_TEXT(buffer.GetValue(), L"");
}

TEST_CASE(SinksGetPiecesAndStopTheEngine)
{
    // Long padding, and long text behind padding, longer than what the engine keeps together.
    static wchar_t text[151];
    for (uint32_t i = 0; i < 150; i++)
        text[i] = static_cast<wchar_t>(L'a' + i % 26);
    const wchar_t format[] = L"%200d|%0200u|%180s|%S|%-3s|";
    wchar_t array[kRoom];
    CHECK_EQUAL(OrvFormatString(OrvCodePageUtf8, array, kRoom, nullptr, format, 7, 8, text, L"z"), ORV_S_OK);
    CHECK(array[198] == L' ' && array[199] == L'7' && array[201] == L'0' && array[400] == L'8');
    CHECK(__builtin_memcmp(array + 432, text, 150 * sizeof *text) == 0);
    CHECK_TEXT(array + 582, L"|%S|z  |");
    Collector<wchar_t> all;
    CHECK_EQUAL(OrvBasAppendFormat(all, format, 7, 8, text, L"z"), ORV_S_OK);
    CHECK_TEXT(all.text, array);
    OrvUtf16CharHeapBuffer owner;
    CHECK_EQUAL(OrvFormatString(OrvMakeMutableStringRef(owner), format, 7, 8, text, L"z"), ORV_S_OK);
    CHECK_TEXT(owner.GetValue(), array);
    for (uint32_t piece = 1; piece <= all.pieces; piece++) {
        test::Note("piece", piece);
        Collector<wchar_t> failing;
        failing.failAt = piece;
        CHECK_EQUAL(OrvBasAppendFormat(failing, format, 7, 8, text, L"z"), ORV_E_WRITE_FAULT);
        CHECK_EQUAL(failing.pieces, piece);
    }
}

// The library's own pages: what each text looks like in each of them, what is refused, and that every
// capacity is answered exactly. Sources and targets stand against an unmapped page, at every alignment.

#include "orv/text/code_page.h"

#include "orv/orv.h"
#include "text/conversions.h"
#include "text/texts.h"

namespace
{

constexpr OrvCodePage kOwnPages[] = {OrvCodePageAnsi, OrvCodePageUtf7, OrvCodePageUtf8, OrvCodePageUtf16};
constexpr OrvCodePage kStrictPages[] = {OrvCodePageAnsi, OrvCodePageUtf7, OrvCodePageUtf8};
constexpr uint32_t kUntouched = 77;
constexpr uint8_t kFill = 0xCC;

/// A text in a byte page and in UTF-16.
struct Row {
    OrvCodePage page;
    const char *bytes;
    uint32_t byteCount;
    const wchar_t *text;
    uint32_t length;
};

template <size_t kBytes, size_t kUnits>
constexpr Row MakeRow(OrvCodePage page, const char (&bytes)[kBytes], const wchar_t (&text)[kUnits])
{
    return {page, bytes, kBytes - 1, text, kUnits - 1};
}

test::TextPages &SourcePage()
{
    static test::TextPages page;
    return page;
}

test::TextPages &TargetPage()
{
    static test::TextPages page;
    return page;
}

/// Converts at every capacity from none to more than enough, at every alignment.
template <typename Target, typename Source>
void Sweep(OrvCodePage from, OrvCodePage to, const Source *source, uint32_t count, const Target *expected,
           uint32_t length, OrvResult failure)
{
    for (uint32_t capacity = 0; capacity <= length + 2; capacity++) {
        const uint32_t slack = capacity % test::kSlacks;
        const Source *const placed = SourcePage().Copy(source, count, slack);
        TargetPage().Fill(kFill);
        Target *const target = TargetPage().Place<Target>(capacity, slack);
        test::CheckConversion(target, capacity, placed, count, {from, to}, expected, length, failure);
        for (uint32_t i = 0; i < slack; i++)
            CHECK_EQUAL(reinterpret_cast<const uint8_t *>(target + capacity)[i], kFill);
    }
    CHECK_EQUAL(Convert(static_cast<Target *>(nullptr), 9, source, test::Pages{from, to}, nullptr, count),
                failure ? failure : ORV_E_BUFFER_TOO_SMALL);
}

void CheckRow(const Row &row, bool decode, bool encode)
{
    test::Note(row.bytes, row.page);
    if (decode)
        Sweep(row.page, OrvCodePageUtf16, row.bytes, row.byteCount, row.text, row.length, 0);
    if (encode)
        Sweep(OrvCodePageUtf16, row.page, row.text, row.length, row.bytes, row.byteCount, 0);
    // Between two byte pages the result is the same as by way of UTF-16.
    for (const OrvCodePage to : kOwnPages) {
        char bytes[256];
        uint32_t size = 0;
        CHECK_EQUAL(OrvConvertUtf162MbString(bytes, sizeof bytes, row.text, to, &size, row.length), ORV_S_OK);
        if (decode && to != row.page)
            Sweep(row.page, to, row.bytes, row.byteCount, bytes, size, 0);
    }
}

void CheckMalformed(OrvCodePage page, const char *bytes, uint32_t count)
{
    test::Note(bytes, page);
    Sweep(page, OrvCodePageUtf16, bytes, count, L"", 24, ORV_E_INVALID_DATA);
    for (const OrvCodePage to : kOwnPages) {
        if (to != page)
            Sweep(page, to, bytes, count, "", 24, ORV_E_INVALID_DATA);
    }
}

} // namespace

TEST_CASE(TextsInEveryPage)
{
    const Row both[] = {
        MakeRow(OrvCodePageUtf8, "", L""),
        MakeRow(OrvCodePageUtf8, "a\0z\x7F", L"a\0z\x7F"),
        MakeRow(OrvCodePageUtf8, "\xC3\xA9", L"\x00E9"),
        MakeRow(OrvCodePageUtf8, "\xC2\x80\xDF\xBF", L"\x0080\x07FF"),
        MakeRow(OrvCodePageUtf8, "\xE0\xA0\x80\xED\x9F\xBF\xEE\x80\x80\xEF\xBF\xBF",
                L"\x0800\xD7FF\xE000\xFFFF"),
        MakeRow(OrvCodePageUtf8, "\xF0\x90\x80\x80\xF4\x8F\xBF\xBF", L"\xD800\xDC00\xDBFF\xDFFF"),
        MakeRow(OrvCodePageUtf8, "twenty-one of ASCII, \xE2\x82\xAC, then twenty-five of it",
                L"twenty-one of ASCII, \x20AC, then twenty-five of it"),
        MakeRow(OrvCodePageUtf8,
                "one \xC3\xA9 alone, "
                "\xC3\xA9\xC3\xA9\xC3\xA9\xC3\xA9\xC3\xA9\xC3\xA9\xC3\xA9\xC3\xA9"
                "\xC3\xA9\xC3\xA9\xC3\xA9\xC3\xA9\xC3\xA9\xC3\xA9\xC3\xA9",
                L"one \x00E9 alone, \x00E9\x00E9\x00E9\x00E9\x00E9\x00E9\x00E9\x00E9"
                L"\x00E9\x00E9\x00E9\x00E9\x00E9\x00E9\x00E9"),
        MakeRow(OrvCodePageUtf7, "A+-+AOk-", L"A+\x00E9"),
        MakeRow(OrvCodePageUtf7, "+IKwAIQAi-3+/wA-", L"\x20AC!\"3\xFF00"), // no bits, two and four left over
        MakeRow(OrvCodePageUtf7, "a+2D3eAA-+-+2D3eAA-", L"a\xD83D\xDE00+\xD83D\xDE00"),
        MakeRow(OrvCodePageUtf7, "\0\t\n\r '(),-./:?09AZaz", L"\0\t\n\r '(),-./:?09AZaz"),
        MakeRow(OrvCodePageUtf7, "+AH4AXAB8AGA-", L"~\\|`"),
        MakeRow(OrvCodePageUtf16, "a\0\xAC\x20\x3D\xD8\x00\xDE", L"a\x20AC\xD83D\xDE00"),
    };
    for (const Row &row : both)
        CheckRow(row, true, true);

    const Row decodedOnly[] = {
        // A shift may hold anything, and end at any character or with the text.
        MakeRow(OrvCodePageUtf7, "+AGEAYg", L"ab"),
        MakeRow(OrvCodePageUtf7, "+AGE!+AGE\n+AGE--", L"a!a\na-"),
        MakeRow(OrvCodePageUtf7, "+AGE-+AGE-", L"aa"),
        MakeRow(OrvCodePageUtf7, "+2D0-+3gA-", L"\xD83D\xDE00"),
        MakeRow(OrvCodePageUtf7, "~\\!\"#$%&*;<=>@[]^_`{|}\x01\x7F", L"~\\!\"#$%&*;<=>@[]^_`{|}\x01\x7F"),
    };
    for (const Row &row : decodedOnly)
        CheckRow(row, true, false);

    const Row encodedOnly[] = {
        MakeRow(OrvCodePageAnsi, "\xE9", L"\x00E9"),
        MakeRow(OrvCodePageAnsi, "\x80\xFF?a?b?",
                L"\x0080\x00FF\x20AC"
                L"a\xD83D\xDE00"
                L"b\x0100"),
        MakeRow(OrvCodePageAnsi, "more than sixteen units: \xE9\xFF, then ? and on",
                L"more than sixteen units: \x00E9\x00FF, then \x4E00 and on"),
    };
    for (const Row &row : encodedOnly)
        CheckRow(row, false, true);
    // Latin-1, between bytes. What the size query says of 0x80 to 0x9F is the platform's matter.
    Sweep(OrvCodePageAnsi, OrvCodePageUtf8, "a\xE9\xA0", 3, "a\xC3\xA9\xC2\xA0", 5, 0);
}

TEST_CASE(MalformedTextIsRefused)
{
    struct {
        OrvCodePage page;
        const char *bytes;
        uint32_t count;
    } const cases[] = {
        {OrvCodePageUtf8, "\xC0\x80", 2}, // overlong
        {OrvCodePageUtf8, "\xE0\x9F\xBF", 3},
        {OrvCodePageUtf8, "\xF0\x8F\xBF\xBF", 4},
        {OrvCodePageUtf8, "\xED\xA0\x80", 3}, // surrogates
        {OrvCodePageUtf8, "\xED\xBF\xBF", 3},
        {OrvCodePageUtf8, "\xF4\x90\x80\x80", 4}, // above U+10FFFF
        {OrvCodePageUtf8, "\xF7\xBF\xBF\xBF", 4},
        {OrvCodePageUtf8, "\xFF", 1},
        {OrvCodePageUtf8, "ab\x80", 3},    // continues nothing
        {OrvCodePageUtf8, "a\xE2\x82", 3}, // cut off
        {OrvCodePageUtf8, "\xF0\x9F\x98", 3},
        {OrvCodePageUtf8, "seventeen of ASCII\xC3", 19},
        {OrvCodePageUtf8, "\xC3\x41", 2}, // not continued
        {OrvCodePageUtf8, "\xE2\x82\x7F", 3},
        {OrvCodePageUtf8, "\xF0\x9F\x98\xC0", 4},
        {OrvCodePageUtf7, "a\x80", 2},
        {OrvCodePageUtf7, "+AOk\xE9", 5},
        {OrvCodePageUtf7, "+", 1},   // opens onto nothing
        {OrvCodePageUtf7, "+A-", 3}, // inside a unit
        {OrvCodePageUtf7, "+AOkA", 5},
        {OrvCodePageUtf7, "+AOkAA-", 7},
        {OrvCodePageUtf7, "+AOl-", 5}, // padded with ones
        {OrvCodePageUtf7, "+2D0-", 5}, // half a pair
        {OrvCodePageUtf7, "+3gA-", 5},
        {OrvCodePageUtf7, "+2D0AYQ-", 8},
    };
    for (const auto &c : cases)
        CheckMalformed(c.page, c.bytes, c.count);

    struct {
        const wchar_t *text;
        uint32_t length;
    } const halves[] = {{L"\xD800", 1},
                        {L"a\xDC00", 2},
                        {L"\xD800\xD800\xDC00", 3},
                        {L"\xDC00\xD800", 2},
                        {L"a long run of ASCII before \xDBFF!", 29}};
    for (const auto &c : halves) {
        for (const OrvCodePage to : kStrictPages) {
            test::Note("unpaired, to page", to);
            Sweep(OrvCodePageUtf16, to, c.text, c.length, "", 40, ORV_E_INVALID_DATA);
            Sweep(OrvCodePageUtf16, to, reinterpret_cast<const char *>(c.text), c.length * 2, "", 40,
                  ORV_E_INVALID_DATA);
            Sweep(OrvCodePageUtf16, to, "a\0b", 3, "", 9, ORV_E_INVALID_DATA); // half a unit
        }
    }
    Sweep(OrvCodePageUtf16, OrvCodePageUtf16, "a\0b", 3, L"", 9, ORV_E_INVALID_DATA);
    Sweep(OrvCodePageUtf16, OrvCodePageUtf16, "\x00\xD8", 2, L"\xD800", 1, 0); // only a copy
}

TEST_CASE(PagesOutsideTheTable)
{
    const auto page = static_cast<OrvCodePage>(6);
    wchar_t text[4] = L"kk";
    char bytes[4] = "kk";
    uint32_t size = kUntouched;
    CHECK_EQUAL(OrvGetMb2Utf16StringSize(size, "a", page), ORV_E_NOT_PROVIDED);
    CHECK_EQUAL(OrvConvertMb2Utf16String(text, 4, "a", page, &size), ORV_E_NOT_PROVIDED);
    CHECK_EQUAL(OrvGetUtf162MbStringSize(size, L"a", static_cast<OrvCodePage>(0xFFFFFFFF)),
                ORV_E_NOT_PROVIDED);
    CHECK_EQUAL(OrvConvertUtf162MbString(bytes, 4, L"a", page, &size), ORV_E_NOT_PROVIDED);
    for (const OrvCodePage known : kOwnPages) {
        test::Note("page", known);
        CHECK_EQUAL(OrvGetMb2MbStringSize(size, "", page, known), ORV_E_NOT_PROVIDED);
        CHECK_EQUAL(OrvGetMb2MbStringSize(size, "a", known, page), ORV_E_NOT_PROVIDED);
        CHECK_EQUAL(OrvConvertMb2MbString(bytes, 4, "a", page, known, &size), ORV_E_NOT_PROVIDED);
        CHECK_EQUAL(OrvConvertMb2MbString(bytes, 0, "a", known, page, &size), ORV_E_NOT_PROVIDED);
    }
    CHECK_EQUAL(size, kUntouched);
    CHECK_TEXT(text, L"kk");
    CHECK_TEXT(bytes, "kk");
    // An empty text is converted whatever the page, and one from a page to itself is copied.
    CHECK_EQUAL(OrvConvertMb2Utf16String(text, 4, nullptr, page, &size, 5), ORV_S_OK);
    CHECK_TEXT(text, L"");
    CHECK_EQUAL(OrvConvertMb2MbString(bytes, 4, "xyz", page, page, &size), ORV_S_OK);
    CHECK_TEXT(bytes, "xyz");
    CHECK_EQUAL(OrvConvertMb2MbString(bytes, 3, "xyz", OrvCodePageOem, OrvCodePageOem, &size),
                ORV_E_BUFFER_TOO_SMALL);
    CHECK_TEXT(bytes, "");
    CHECK_EQUAL(size, 4u);
}

TEST_CASE(TerminatedTextsAndOtherNames)
{
    wchar_t text[8] = {};
    char bytes[8] = {};
    uint32_t size = kUntouched;
    CHECK_EQUAL(OrvConvertMb2TString(text, 8, "\xC3\xA9z", OrvCodePageUtf8, &size), ORV_S_OK);
    CHECK_TEXT(text, L"\x00E9z");
    CHECK_EQUAL(size, 2u);
    CHECK_EQUAL(OrvGetMb2TStringSize(size, "\xC3\xA9zz", OrvCodePageUtf8), ORV_S_OK);
    CHECK_EQUAL(size, 3u);
    CHECK_EQUAL(OrvConvertT2MbString(bytes, 8, L"\x00E9", OrvCodePageUtf8, &size), ORV_S_OK);
    CHECK_TEXT(bytes, "\xC3\xA9");
    CHECK_EQUAL(OrvGetT2MbStringSize(size, L"\x00E9", OrvCodePageUtf7), ORV_S_OK);
    CHECK_EQUAL(size, 5u);
    CHECK_EQUAL(OrvGetT2Utf16StringSize(size, L"four"), ORV_S_OK);
    CHECK_EQUAL(size, 4u);
    CHECK_EQUAL(OrvGetUtf162TStringSize(size, L"four", 2), ORV_S_OK);
    CHECK_EQUAL(size, 2u);

    // The wide copies leave a target alone that is too small.
    CHECK_EQUAL(OrvConvertT2Utf16String(text, 5, L"four", &size), ORV_S_OK);
    CHECK_EQUAL(size, 4u);
    CHECK_EQUAL(OrvConvertUtf162TString(text, 4, L"five", &size), ORV_E_BUFFER_TOO_SMALL);
    CHECK_EQUAL(size, 5u);
    CHECK_EQUAL(OrvConvertUtf162TString(text, 0, L"", &size), ORV_E_BUFFER_TOO_SMALL);
    CHECK_EQUAL(size, 1u);
    CHECK_TEXT(text, L"four");

    _ORV_UTF16CHAR_STR descriptor = {7, 4, text};
    size = kUntouched;
    CHECK_EQUAL(OrvConvertUtf162TString(descriptor, L"five", OrvTerminated, &size), ORV_E_BUFFER_TOO_SMALL);
    CHECK_EQUAL(size, 5u);
    size = kUntouched;
    CHECK_EQUAL(OrvConvertMb2TString(descriptor, "five", OrvCodePageUtf8, 4, &size), ORV_E_BUFFER_TOO_SMALL);
    CHECK_EQUAL(size, 5u);
    size = kUntouched;
    CHECK_EQUAL(OrvConvertMb2TString(descriptor, "\xC3", OrvCodePageUtf8, 1, &size), ORV_E_INVALID_DATA);
    CHECK_EQUAL(descriptor.length, 7u);
    CHECK_EQUAL(OrvConvertMb2TString(descriptor, "\xC3\xA9", OrvCodePageUtf8), ORV_S_OK);
    CHECK_EQUAL(descriptor.length, 1u);
    CHECK_EQUAL(OrvConvertUtf162TString(descriptor, L"two", 2, &size), ORV_S_OK);
    CHECK_EQUAL(descriptor.length, 2u);
    CHECK_TEXT(text, L"tw");
    CHECK_EQUAL(size, kUntouched);

    CHECK_EQUAL(OrvGetUtf162MbStringSize(size, L"x", OrvCodePageUtf8, 0xFFFFFFFE), ORV_E_BAD_LENGTH);
}

TEST_CASE(BuffersGrowWithWhatTheyAreGiven)
{
    // On both sides of the length up to which a conversion takes one pass.
    const uint32_t lengths[] = {0, 1, 254, 255, 256, 257, 40000};
    for (const uint32_t length : lengths) {
        test::Note("length", length);
        OrvUtf16CharHeapBuffer units;
        OrvMbCharHeapBuffer bytes;
        OrvUtf16CharHeapBuffer again;
        CHECK_EQUAL(units.Resize(length), ORV_S_OK);
        for (uint32_t i = 0; i < length; i++)
            units[i] = i % 3 ? L'a' : 0xFC;
        CHECK_EQUAL(OrvConvertT2MbString(bytes, units.GetValue(), OrvCodePageUtf8, length), ORV_S_OK);
        CHECK_EQUAL(bytes.GetInternal().length, length + (length + 2) / 3);
        CHECK_EQUAL(bytes.GetInternal().characters[bytes.GetInternal().length], 0);
        CHECK_EQUAL(OrvConvertMb2TString(again, bytes.GetValue(), OrvCodePageUtf8), ORV_S_OK); // terminated
        CHECK_EQUAL(again.GetInternal().length, length);
        CHECK_TEXT(again.GetValue(), units.GetValue());
        const wchar_t *const array = again.GetBuffer();
        CHECK_EQUAL(OrvConvertMb2TString(again, bytes.GetValue(), OrvCodePageUtf8), ORV_S_OK);
        CHECK_EQUAL(again.GetBuffer(), array); // it has room already

        // What is refused changes nothing, however late the fault is.
        CHECK_EQUAL(bytes.Append('\xC3'), ORV_S_OK);
        CHECK_EQUAL(OrvConvertMb2TString(again, bytes.GetValue(), OrvCodePageUtf8), ORV_E_INVALID_DATA);
        CHECK_TEXT(again.GetValue(), units.GetValue());
        CHECK_EQUAL(units.Append(wchar_t(0xD800)), ORV_S_OK);
        CHECK_EQUAL(OrvConvertT2MbString(bytes, units.GetValue(), OrvCodePageUtf8), ORV_E_INVALID_DATA);
        CHECK_EQUAL(bytes.GetInternal().length, length + (length + 2) / 3 + 1);
        CHECK_EQUAL(OrvConvertT2MbString(bytes, L"x", static_cast<OrvCodePage>(6)), ORV_E_NOT_PROVIDED);
    }
}

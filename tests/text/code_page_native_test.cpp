// The pages of the platform, beside the platform's functions for uncounted text, and UTF-8 beside the
// platform's.

#include "nt/programs.h"
#include "orv/orv.h"
#include "text/conversions.h"
#include "text/texts.h"

namespace
{

constexpr uint32_t kLength = 100001; // four pieces
char bytes[kLength * 2 + 1];
char expectedBytes[kLength * 2 + 1];
wchar_t text[kLength + 1];
wchar_t expectedText[kLength + 1];

struct PlatformPage {
    OrvCodePage page;
    NTSTATUS(NTAPI *decode)(WCHAR *, ULONG, ULONG *, const char *, ULONG);
    NTSTATUS(NTAPI *encode)(char *, ULONG, ULONG *, const WCHAR *, ULONG);
};

/// All pages in turn; the body gets one, and whether it is encoded by the platform too.
template <typename Body>
void ForEachPage(Body body)
{
    const PlatformPage pages[] = {
        {OrvCodePageDefault, RtlMultiByteToUnicodeN, RtlUnicodeToMultiByteN},
        {OrvCodePageAnsi, RtlMultiByteToUnicodeN, nullptr},
        {OrvCodePageOem, RtlOemToUnicodeN, RtlUnicodeToOemN},
    };
    for (const PlatformPage &page : pages) {
        test::Note("page", page.page);
        body(page);
    }
}

template <typename Target, typename Source>
void CheckAt(uint32_t capacity, const Source *source, uint32_t count, OrvCodePage page,
             const Target *expected, uint32_t length)
{
    test::CheckConversion(test::GuardedArray<Target>(capacity), capacity, source, count, {page, page},
                          expected, length);
}

/// At capacities around the end of the text, of its first piece, and of nothing.
template <typename Target, typename Source>
void CheckLong(const Source *source, OrvCodePage page, const Target *expected, uint32_t length)
{
    const uint32_t capacities[] = {0, 1, 32766, 32767, 32768, length, length + 1};
    for (const uint32_t capacity : capacities)
        CheckAt(capacity, source, kLength, page, expected, length);
}

} // namespace

TEST_CASE(PlatformPagesAreThePlatforms)
{
    char all[256];
    for (uint32_t i = 0; i < 256; i++)
        all[i] = static_cast<char>(i);
    ForEachPage([&all](const PlatformPage &page) {
        ULONG size = 0;
        page.decode(expectedText, sizeof expectedText, &size, all, 256);
        for (uint32_t capacity = 0; capacity <= size / 2 + 2; capacity++)
            CheckAt(capacity, all, 256, page.page, expectedText, size / 2);
        if (!page.encode)
            return;
        const wchar_t source[] = L"a\x00E9\x20AC\x4E00\xD83D\xDE00z\x0416";
        page.encode(expectedBytes, sizeof expectedBytes, &size, source, sizeof source - 2);
        for (uint32_t capacity = 0; capacity <= size + 2; capacity++)
            CheckAt(capacity, source, sizeof source / 2 - 1, page.page, expectedBytes, size);
    });
    // Page 1 is not the same in both directions.
    CHECK_EQUAL(OrvConvertUtf162MbString(bytes, 8, L"\x20AC\x00E9", OrvCodePageAnsi), ORV_S_OK);
    CHECK_TEXT(bytes, "?\xE9");
}

TEST_CASE(LongTextsGoThroughThePlatformInPieces)
{
    ForEachPage([](const PlatformPage &page) {
        ULONG size = 0;
        for (uint32_t i = 0; i < kLength; i++)
            bytes[i] = static_cast<char>(1 + i % 255);
        page.decode(expectedText, sizeof expectedText, &size, bytes, kLength);
        CheckLong(bytes, page.page, expectedText, size / 2);
        // A surrogate pair across the border of the first piece, and one before it.
        for (uint32_t shift = 0; shift < 2 && page.encode; shift++) {
            for (uint32_t i = 0; i < kLength; i++)
                text[i] = static_cast<wchar_t>(i % 200 == 7 ? 0x20AC : 'a' + i % 26);
            text[32765 - shift] = 0xD83D;
            text[32766 - shift] = 0xDE00;
            page.encode(expectedBytes, sizeof expectedBytes, &size, text, kLength * 2);
            CheckLong(text, page.page, expectedBytes, size);
        }
    });
}

TEST_CASE(BytesThroughUtf16)
{
    // To the platform's pages, on the stack and on the heap; and what the size query says.
    for (uint32_t i = 0; i < 2000; i++)
        text[i] = i % 50 == 3 ? L'\x00E9' : static_cast<wchar_t>('a' + i % 26);
    const uint32_t lengths[] = {4, 255, 256, 2000};
    for (const uint32_t length : lengths) {
        test::Note("length", length);
        char utf8[4000];
        char native[4000];
        uint32_t utf8Size = 0;
        uint32_t nativeSize = 0;
        OrvConvertUtf162MbString(utf8, 4000, text, OrvCodePageUtf8, &utf8Size, length);
        OrvConvertUtf162MbString(native, 4000, text, OrvCodePageOem, &nativeSize, length);
        for (uint32_t capacity = nativeSize; capacity <= nativeSize + 1; capacity++)
            test::CheckConversion(test::GuardedArray<char>(capacity), capacity, utf8, utf8Size,
                                  {OrvCodePageUtf8, OrvCodePageOem}, native, nativeSize);
        test::CheckConversion(bytes, 4000, native, nativeSize, {OrvCodePageOem, OrvCodePageUtf8}, utf8,
                              utf8Size);
    }
    uint32_t size = 0;
    const OrvCodePage platformPages[] = {OrvCodePageDefault, OrvCodePageAnsi, OrvCodePageOem};
    for (const OrvCodePage from : platformPages) {
        for (const OrvCodePage to : platformPages) {
            CHECK_EQUAL(OrvGetMb2MbStringSize(size, "\x80\xE9x", from, to), ORV_S_OK);
            CHECK_EQUAL(size, 3u);
        }
    }
    // The size query takes page 1 as the platform does, the conversion as Latin-1.
    uint32_t utf16Size = 0;
    uint32_t expected = 0;
    CHECK_EQUAL(OrvConvertMb2Utf16String(text, 8, "\x80", OrvCodePageAnsi, &utf16Size), ORV_S_OK);
    CHECK_EQUAL(OrvGetUtf162MbStringSize(expected, text, OrvCodePageUtf8, utf16Size), ORV_S_OK);
    CHECK_EQUAL(OrvGetMb2MbStringSize(size, "\x80", OrvCodePageAnsi, OrvCodePageUtf8), ORV_S_OK);
    CHECK_EQUAL(size, expected);
    CHECK_EQUAL(OrvConvertMb2MbString(bytes, 8, "\x80", OrvCodePageAnsi, OrvCodePageUtf8), ORV_S_OK);
    CHECK_TEXT(bytes, "\xC2\x80");
}

TEST_CASE(CapacitiesMayReachBehindTheAddressSpace)
{
    constexpr uint32_t kEndless = 0xFFFFFFFF;
    for (uint32_t i = OrvCodePageDefault; i <= OrvCodePageUtf16; i++) {
        test::Note("page", i);
        const auto page = static_cast<OrvCodePage>(i);
        uint32_t size = 0;
        uint32_t length = 0;
        char utf8[3];
        CHECK_EQUAL(OrvConvertUtf162MbString(bytes, kEndless, L"ab", page, &size), ORV_S_OK);
        CHECK_EQUAL(OrvConvertMb2Utf16String(text, kEndless, bytes, page, &length, size), ORV_S_OK);
        CHECK_TEXT(text, L"ab");
        CHECK_EQUAL(length, 2u);
        CHECK_EQUAL(OrvConvertMb2MbString(utf8, kEndless, bytes, page, OrvCodePageUtf8, &length, size),
                    ORV_S_OK);
        CHECK_TEXT(utf8, "ab");
        CHECK_EQUAL(length, 2u);
    }
}

TEST_CASE(Utf8IsThePlatforms)
{
    // Every sequence of one and two bytes, and random ones of up to six: what we take the platform takes
    // alike, and what we refuse it replaces.
    constexpr NTSTATUS kSomeNotMapped = 0x107;
    test::Generator generator;
    const uint8_t alphabet[] = {0x41, 0x7F, 0x80, 0x8F, 0x90, 0x9F, 0xA0, 0xBF, 0xC0, 0xC1, 0xC2, 0xDF,
                                0xE0, 0xE1, 0xEC, 0xED, 0xEE, 0xEF, 0xF0, 0xF1, 0xF3, 0xF4, 0xF5, 0xFF};
    for (uint32_t round = 0; round < 400000; round++) {
        char source[6];
        uint32_t count = 2;
        if (round < 0x10000) {
            source[0] = static_cast<char>(round >> 8);
            source[1] = static_cast<char>(round);
        } else {
            count = 1 + generator.Below(6);
            for (uint32_t i = 0; i < count; i++)
                source[i] = static_cast<char>(alphabet[generator.Below(sizeof alphabet)]);
        }
        wchar_t ours[8];
        wchar_t theirs[8];
        uint32_t length = 0;
        ULONG size = 0;
        const OrvResult result = OrvConvertMb2Utf16String(ours, 8, source, OrvCodePageUtf8, &length, count);
        const NTSTATUS status = RtlUTF8ToUnicodeN(theirs, sizeof theirs, &size, source, count);
        const bool same = status == STATUS_SUCCESS
                              ? result == ORV_S_OK && OrvCompareString(ours, theirs, length, size / 2) == 0
                              : status == kSomeNotMapped && result == ORV_E_INVALID_DATA;
        if (!same) {
            test::Note("round", round);
            CHECK_EQUAL(result, status);
            return;
        }
    }
}

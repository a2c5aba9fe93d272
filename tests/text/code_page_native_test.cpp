// The pages of the platform, beside the platform's functions for uncounted text, and UTF-8 beside the
// platform's.

#include "nt/programs.h"
#include "orv/orv.h"
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

/// What an array holds behind a conversion that found too little room: a part of the whole, terminated.
template <typename T>
bool HoldsBeginning(const T *array, uint32_t capacity, const T *whole)
{
    uint32_t i = 0;
    while (i < capacity && array[i] && array[i] == whole[i])
        i++;
    return capacity == 0 || (i < capacity && array[i] == 0);
}

} // namespace

TEST_CASE(PlatformPagesAreThePlatforms)
{
    char all[256];
    for (uint32_t i = 0; i < 256; i++)
        all[i] = static_cast<char>(i);
    ForEachPage([&all](const PlatformPage &page) {
        ULONG decodedBytes = 0;
        page.decode(expectedText, sizeof expectedText, &decodedBytes, all, 256);
        const uint32_t length = decodedBytes / 2;
        uint32_t size = 0;
        CHECK_EQUAL(OrvGetMb2Utf16StringSize(size, all, page.page, 256), ORV_S_OK);
        CHECK_EQUAL(size, length);
        for (uint32_t capacity = 0; capacity <= length + 2; capacity++) {
            wchar_t *const target = test::GuardedArray<wchar_t>(capacity);
            const bool fits = capacity > length;
            CHECK_EQUAL(OrvConvertMb2Utf16String(target, capacity, all, page.page, &size, 256),
                        fits ? ORV_S_OK : ORV_E_BUFFER_TOO_SMALL);
            CHECK_EQUAL(size, fits ? length : length + 1);
            if (fits)
                CHECK_EQUAL(OrvCompareString(target, expectedText, length, length), 0);
            else if (capacity)
                CHECK_EQUAL(target[0], L'\0');
            if (capacity > 40)
                capacity += 13;
        }
        if (!page.encode)
            return;
        const wchar_t source[] = L"a\x00E9\x20AC\x4E00\xD83D\xDE00z\x0416";
        ULONG byteCount = 0;
        page.encode(expectedBytes, sizeof expectedBytes, &byteCount, source, sizeof source - 2);
        CHECK_EQUAL(OrvGetUtf162MbStringSize(size, source, page.page), ORV_S_OK);
        CHECK_EQUAL(size, byteCount);
        for (uint32_t capacity = 0; capacity <= byteCount + 2; capacity++) {
            char *const target = test::GuardedArray<char>(capacity);
            const bool fits = capacity > byteCount;
            CHECK_EQUAL(OrvConvertUtf162MbString(target, capacity, source, page.page, &size),
                        fits ? ORV_S_OK : ORV_E_BUFFER_TOO_SMALL);
            CHECK_EQUAL(size, fits ? byteCount : byteCount + 1);
            if (fits)
                CHECK_EQUAL(OrvCompareString(target, expectedBytes, byteCount, byteCount), 0);
            else if (capacity)
                CHECK_EQUAL(target[0], '\0');
        }
    });
    // Page 1 is not the same in both directions.
    CHECK_EQUAL(OrvConvertUtf162MbString(bytes, 8, L"\x20AC\x00E9", OrvCodePageAnsi), ORV_S_OK);
    CHECK_TEXT(bytes, "?\xE9");
    wchar_t ansi[8];
    ULONG written = 0;
    RtlMultiByteToUnicodeN(ansi, sizeof ansi, &written, "\x80\xE9", 2);
    CHECK_EQUAL(OrvConvertMb2Utf16String(text, 8, "\x80\xE9", OrvCodePageAnsi), ORV_S_OK);
    CHECK_EQUAL(OrvCompareString(text, ansi, OrvTerminated, written / 2), 0);
}

TEST_CASE(LongTextsGoThroughThePlatformInPieces)
{
    ForEachPage([](const PlatformPage &page) {
        for (uint32_t i = 0; i < kLength; i++)
            bytes[i] = static_cast<char>(1 + i % 255);
        bytes[kLength] = 0;
        ULONG decodedBytes = 0;
        page.decode(expectedText, sizeof expectedText, &decodedBytes, bytes, kLength);
        const uint32_t length = decodedBytes / 2;
        uint32_t size = 0;
        CHECK_EQUAL(OrvGetMb2Utf16StringSize(size, bytes, page.page), ORV_S_OK);
        CHECK_EQUAL(size, length);
        const uint32_t capacities[] = {0, 1, 32766, 32767, 32768, length, length + 1};
        for (const uint32_t capacity : capacities) {
            wchar_t *const target = test::GuardedArray<wchar_t>(capacity);
            const bool fits = capacity > length;
            CHECK_EQUAL(OrvConvertMb2Utf16String(target, capacity, bytes, page.page, &size, kLength),
                        fits ? ORV_S_OK : ORV_E_BUFFER_TOO_SMALL);
            CHECK_EQUAL(size, fits ? length : length + 1);
            CHECK(HoldsBeginning(target, capacity, expectedText));
            if (fits)
                CHECK_EQUAL(OrvCompareString(target, expectedText, length, length), 0);
        }
        if (!page.encode)
            return;
        // A surrogate pair across the border of the first piece, and one before it.
        for (uint32_t shift = 0; shift < 2; shift++) {
            for (uint32_t i = 0; i < kLength; i++)
                text[i] = static_cast<wchar_t>(i % 200 == 7 ? 0x20AC : 'a' + i % 26);
            text[32765 - shift] = 0xD83D;
            text[32766 - shift] = 0xDE00;
            ULONG byteCount = 0;
            page.encode(expectedBytes, sizeof expectedBytes, &byteCount, text, kLength * 2);
            CHECK_EQUAL(OrvGetUtf162MbStringSize(size, text, page.page, kLength), ORV_S_OK);
            CHECK_EQUAL(size, byteCount);
            const uint32_t byteCapacities[] = {0, 1, 32766, 32767, byteCount, byteCount + 1};
            for (const uint32_t capacity : byteCapacities) {
                char *const target = test::GuardedArray<char>(capacity);
                const bool fits = capacity > byteCount;
                CHECK_EQUAL(OrvConvertUtf162MbString(target, capacity, text, page.page, &size, kLength),
                            fits ? ORV_S_OK : ORV_E_BUFFER_TOO_SMALL);
                CHECK_EQUAL(size, fits ? byteCount : byteCount + 1);
                CHECK(HoldsBeginning(target, capacity, expectedBytes));
                if (fits)
                    CHECK_EQUAL(OrvCompareString(target, expectedBytes, byteCount, byteCount), 0);
            }
        }
    });
}

TEST_CASE(BytesThroughUtf16)
{
    // From UTF-8 to the platform's pages and back, on the stack and on the heap; and what the size query
    // says.
    const OrvCodePage pages[] = {OrvCodePageDefault, OrvCodePageOem};
    for (uint32_t i = 0; i < 2000; i++)
        text[i] = i % 50 == 3 ? L'\x00E9' : static_cast<wchar_t>('a' + i % 26);
    const uint32_t lengths[] = {4, 255, 256, 2000};
    for (const OrvCodePage page : pages) {
        for (const uint32_t length : lengths) {
            test::Note("length", length);
            char utf8[4000];
            char native[4000];
            uint32_t utf8Size = 0;
            uint32_t nativeSize = 0;
            uint32_t size = 0;
            CHECK_EQUAL(OrvConvertUtf162MbString(utf8, 4000, text, OrvCodePageUtf8, &utf8Size, length),
                        ORV_S_OK);
            CHECK_EQUAL(OrvConvertUtf162MbString(native, 4000, text, page, &nativeSize, length), ORV_S_OK);
            CHECK_EQUAL(OrvGetMb2MbStringSize(size, utf8, OrvCodePageUtf8, page, utf8Size), ORV_S_OK);
            CHECK_EQUAL(size, nativeSize);
            for (uint32_t capacity = nativeSize; capacity <= nativeSize + 1; capacity++) {
                char *const target = test::GuardedArray<char>(capacity);
                CHECK_EQUAL(
                    OrvConvertMb2MbString(target, capacity, utf8, OrvCodePageUtf8, page, &size, utf8Size),
                    capacity > nativeSize ? ORV_S_OK : ORV_E_BUFFER_TOO_SMALL);
                CHECK_EQUAL(size, capacity > nativeSize ? nativeSize : nativeSize + 1);
            }
            CHECK_EQUAL(OrvGetMb2MbStringSize(size, native, page, OrvCodePageUtf8, nativeSize), ORV_S_OK);
            CHECK_EQUAL(size, utf8Size);
            CHECK_EQUAL(OrvConvertMb2MbString(bytes, 4000, native, page, OrvCodePageUtf8, &size, nativeSize),
                        ORV_S_OK);
            CHECK_EQUAL(OrvCompareString(bytes, utf8, size, utf8Size), 0);
            {
                const test::RefusingHeap refusing;
                CHECK_EQUAL(
                    OrvConvertMb2MbString(bytes, 4000, native, page, OrvCodePageUtf8, &size, nativeSize),
                    length < 256 ? ORV_S_OK : ORV_E_OUT_OF_MEMORY);
            }
        }
        bytes[0] = 'k';
        CHECK_EQUAL(OrvConvertMb2MbString(bytes, 9, "\xC0\x80", OrvCodePageUtf8, page), ORV_E_INVALID_DATA);
        CHECK_EQUAL(bytes[0], '\0');
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
    for (uint32_t unit = 0; unit < 0x10000; unit++) {
        const wchar_t source[] = {static_cast<wchar_t>(unit), 0xDC01, L'z'};
        char ours[16];
        char theirs[16];
        uint32_t length = 0;
        ULONG size = 0;
        const uint32_t count = unit >= 0xD800 && unit < 0xDC00 ? 3 : 1;
        const OrvResult result = OrvConvertUtf162MbString(ours, 16, source, OrvCodePageUtf8, &length, count);
        const NTSTATUS status = RtlUnicodeToUTF8N(theirs, sizeof theirs, &size, source, count * 2);
        const bool same = status == STATUS_SUCCESS
                              ? result == ORV_S_OK && OrvCompareString(ours, theirs, length, size) == 0
                              : result == ORV_E_INVALID_DATA;
        if (!same) {
            test::Note("unit", unit);
            CHECK_EQUAL(result, status);
        }
    }
}

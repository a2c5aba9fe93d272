// Pages of the platform that the test platform does not have: two bytes to a character, and UTF-8. What
// counts is where a long text is cut into pieces.

#include "harness/test.h"
#include "host_page.h"
#include "orv/orv.h"

namespace
{

constexpr uint32_t kLength = 100000;
char bytes[kLength * 4];
char back[kLength * 4];
wchar_t text[kLength];
wchar_t decoded[kLength];

/// Fills the text with `shift` letters and copies of a character up to `length` units.
void Fill(uint32_t shift, const wchar_t *character, uint32_t length)
{
    const uint32_t units = OrvGetStringSizeInElements(character);
    for (uint32_t i = 0; i < length; i++)
        text[i] =
            i < shift || length - i < units - (i - shift) % units ? L'x' : character[(i - shift) % units];
}

} // namespace

TEST_CASE(PiecesEndBetweenCharacters)
{
    struct {
        HostPage page;
        const wchar_t *character;
    } const cases[] = {
        {HostPage::kDoubleByte, L"\x4E81"}, // both bytes lead a character
        {HostPage::kDoubleByte, L"\x4EC0\x00E9?"},
        {HostPage::kUtf8, L"\x00E9"},
        {HostPage::kUtf8, L"\x4E00"},
        {HostPage::kUtf8, L"\xD83D\xDE00"},
        {HostPage::kLatin1, L"\x00E9"},
    };
    for (const auto &c : cases) {
        hostPage = c.page;
        for (uint32_t shift = 0; shift < 5; shift++) {
            for (const uint32_t length : (const uint32_t[]){32765, 32766, 32767, 32768, kLength}) {
                test::Note("length", length);
                Fill(shift, c.character, length);
                uint32_t size = 0;
                CHECK_EQUAL(OrvGetUtf162MbStringSize(size, text, OrvCodePageDefault, length), ORV_S_OK);
                const uint32_t byteCount = size;
                CHECK_EQUAL(OrvConvertUtf162MbString(bytes, byteCount, text, OrvCodePageOem, &size, length),
                            ORV_E_BUFFER_TOO_SMALL);
                CHECK_EQUAL(size, byteCount + 1);
                CHECK_EQUAL(
                    OrvConvertUtf162MbString(bytes, byteCount + 1, text, OrvCodePageOem, &size, length),
                    ORV_S_OK);
                CHECK_EQUAL(size, byteCount);
                CHECK_EQUAL(bytes[byteCount], 0);
                if (c.page == HostPage::kUtf8) {
                    CHECK_EQUAL(
                        OrvConvertUtf162MbString(back, sizeof back, text, OrvCodePageUtf8, &size, length),
                        ORV_S_OK);
                    CHECK_EQUAL(OrvCompareString(bytes, back, byteCount, size), 0);
                }
                if (c.page == HostPage::kDoubleByte && c.character[1])
                    continue; // some of it is lost
                CHECK_EQUAL(OrvGetMb2Utf16StringSize(size, bytes, OrvCodePageAnsi, byteCount), ORV_S_OK);
                CHECK_EQUAL(size, length);
                CHECK_EQUAL(
                    OrvConvertMb2Utf16String(decoded, length, bytes, OrvCodePageDefault, &size, byteCount),
                    ORV_E_BUFFER_TOO_SMALL);
                CHECK_EQUAL(size, length + 1);
                CHECK_EQUAL(
                    OrvConvertMb2Utf16String(decoded, kLength, bytes, OrvCodePageDefault, &size, byteCount),
                    length < kLength ? ORV_S_OK : ORV_E_BUFFER_TOO_SMALL);
                CHECK_EQUAL(OrvCompareString(decoded, text, length < kLength ? length : 30000,
                                             length < kLength ? size : 30000),
                            0);
            }
        }
    }
    hostPage = HostPage::kLatin1;
}

// Pages of the platform that the test platform does not have: two bytes to a character, and UTF-8. What
// counts is where a long text is cut into pieces.

#include "harness/test.h"
#include "host_page.h"
#include "orv/orv.h"
#include "text/conversions.h"

namespace
{

constexpr uint32_t kLength = 100000;
char bytes[kLength * 4];
char expected[kLength * 4];
wchar_t text[kLength];
wchar_t decoded[kLength + 1];

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
            for (const uint32_t length : (const uint32_t[]){21845, 32765, 32766, 32767, 32768, kLength}) {
                test::Note("length", length);
                Fill(shift, c.character, length);
                const OrvCodePage own = c.page == HostPage::kUtf8 ? OrvCodePageUtf8 : OrvCodePageDefault;
                uint32_t size = 0;
                CHECK_EQUAL(OrvConvertUtf162MbString(expected, sizeof expected, text, own, &size, length),
                            ORV_S_OK);
                for (uint32_t capacity = size; capacity <= size + 1; capacity++)
                    test::CheckConversion(bytes, capacity, text, length, {OrvCodePageOem, OrvCodePageOem},
                                          expected, size);
                if (c.page == HostPage::kDoubleByte && c.character[1])
                    continue; // some of it is lost
                for (uint32_t capacity = length; capacity <= length + 1; capacity++)
                    test::CheckConversion(decoded, capacity, bytes, size,
                                          {OrvCodePageDefault, OrvCodePageDefault}, text, length);
            }
        }
    }
    hostPage = HostPage::kLatin1;
}

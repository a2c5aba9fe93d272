// The plain and the wide loops of Base64 give the same answers, for every length, alignment and code unit.

#include "text/base64_blocks.h"

#include "harness/test.h"
#include "text/texts.h"

namespace
{

using test::TextPages;

constexpr uint32_t kMostGroups = 67;

void CheckEncode(TextPages &data, TextPages &wide, uint32_t groups, uint32_t slack)
{
    static wchar_t expected[kMostGroups * 4];
    uint8_t *const bytes = data.Place<uint8_t>(groups * 3, slack);
    wchar_t *const text = wide.Place<wchar_t>(groups * 4, slack);
    detail::plain::EncodeBase64Groups(expected, bytes, groups);
    detail::ssse3::EncodeBase64Groups(text, bytes, groups);
    uint32_t same = 0;
    while (same < groups * 4 && detail::LoadUnit(text + same) == expected[same])
        same++;
    CHECK_EQUAL(same, groups * 4);
}

/// Decodes by both loops into arrays that end where the groups do; both must stop at the same group.
void CheckDecode(const wchar_t *text, uint32_t groups, uint32_t wholeGroups)
{
    static uint8_t expected[kMostGroups * 3];
    static TextPages page;
    constexpr uint8_t kUntouched = 0xA5;
    uint8_t *const bytes = page.Place<uint8_t>(wholeGroups * 3, 0);
    for (uint8_t &byte : expected)
        byte = kUntouched;
    CHECK_EQUAL(detail::plain::DecodeBase64Groups(expected, text, groups), wholeGroups);
    CHECK_EQUAL(detail::ssse3::DecodeBase64Groups(bytes, text, groups), wholeGroups);
    uint32_t same = 0;
    while (same < wholeGroups * 3 && bytes[same] == expected[same])
        same++;
    CHECK_EQUAL(same, wholeGroups * 3);
    if (wholeGroups < kMostGroups)
        CHECK_EQUAL(expected[wholeGroups * 3], kUntouched);
}

} // namespace

TEST_CASE(Base64LoopsAgree)
{
    if (!detail::CpuHas(detail::kCpuSsse3))
        return;
    TextPages data;
    TextPages text;
    test::Generator generator;
    for (uint32_t slack = 0; slack < test::kSlacks; slack++) {
        for (uint32_t groups = 0; groups <= kMostGroups; groups++) {
            test::Note("groups", groups);
            data.Make<uint8_t>(groups * 3, slack, [&generator](uint32_t) { return generator.Below(256); });
            CheckEncode(data, text, groups, slack);
            CheckDecode(text.Place<wchar_t>(groups * 4, slack), groups, groups);
        }
    }
}

TEST_CASE(Base64LoopsStopAtTheSameGroup)
{
    if (!detail::CpuHas(detail::kCpuSsse3))
        return;
    wchar_t text[16];
    for (uint32_t unit = 0; unit < 0x10000; unit++) {
        test::Note("unit", unit);
        for (wchar_t &character : text)
            character = L'z';
        const uint32_t at = unit % 16;
        text[at] = static_cast<wchar_t>(unit);
        bool isValid = false;
        for (uint32_t i = 0; i < 64; i++)
            isValid = isValid || detail::kBase64Alphabet[i] == static_cast<int>(unit);
        CheckDecode(text, 4, isValid ? 4 : at / 4);
    }
}

// What the platform decides: its character classes, its case mapping, and the functions that stand on them.

#include "harness/test.h"
#include "nt/nt.h"
#include "orv/orv.h"
#include "text/texts.h"

using test::Generator;
using test::TextPages;

TEST_CASE(ClassesFollowThePlatform)
{
    struct {
        wchar_t character;
        bool digit, xDigit, letterOrDigit, lower, punctuation, whiteSpace;
    } const cases[] = {
        {L'0', true, true, true, false, false, false},     {L'9', true, true, true, false, false, false},
        {L'a', false, true, true, true, false, false},     {L'F', false, true, true, false, false, false},
        {L'g', false, false, true, true, false, false},    {L' ', false, false, false, false, false, true},
        {L'\t', false, false, false, false, false, true},  {L'\f', false, false, false, false, false, true},
        {L'!', false, false, false, false, true, false},   {127, false, false, false, false, true, false},
        {0, false, false, false, false, false, false},     {0x00E9, false, false, false, false, true, false},
        {0x0161, false, false, false, true, true, false},  {0x0141, false, false, false, false, true, false},
        {0x2014, false, false, false, false, true, false}, {31, false, false, false, false, false, false},
    };
    for (const auto &c : cases) {
        test::Note("character", c.character);
        CHECK_EQUAL(OrvIsDigit(c.character), c.digit);
        CHECK_EQUAL(OrvIsXDigit(c.character), c.xDigit);
        CHECK_EQUAL(OrvIsLetterOrDigit(c.character), c.letterOrDigit);
        CHECK_EQUAL(OrvIsLower(c.character), c.lower);
        CHECK_EQUAL(OrvIsPunctuation(c.character), c.punctuation);
        CHECK_EQUAL(OrvIsWhiteSpace(c.character), c.whiteSpace);
    }
}

TEST_CASE(CaseFollowsThePlatform)
{
    for (uint32_t unit = 0; unit < 0x10000; unit++) {
        const auto c = static_cast<wchar_t>(unit);
        test::Note("unit", unit);
        CHECK_EQUAL(OrvToUpper(c), RtlUpcaseUnicodeChar(c));
        CHECK_EQUAL(OrvToLower(c), OrvNtdll_RtlDowncaseUnicodeChar(c));
    }
    CHECK_EQUAL(OrvToUpper(0x0436), wchar_t(0x0416));
    CHECK_EQUAL(OrvToLower(0x0416), wchar_t(0x0436));
}

TEST_CASE(CompareNoCaseMapsEveryUnit)
{
    // Neighbours of the letters, letters beyond ASCII in both cases, and some whose other case is ASCII or
    // far off.
    const wchar_t alphabet[] = {L'a',   L'A',   L'z',   L'Z',   L'@',   L'[',   L'`',
                                L'{',   L'i',   L'I',   0x00E9, 0x00C9, 0x00FF, 0x0178,
                                0x0131, 0x017F, 0x0436, 0x0416, 0x8061, 0xFF41};
    constexpr uint32_t kLetters = sizeof alphabet / sizeof alphabet[0];
    TextPages pageA;
    TextPages pageB;
    Generator generator;
    for (uint32_t round = 0; round < 40000; round++) {
        const uint32_t length = generator.Below(60);
        const uint32_t lengthB = generator.Below(4) ? length : generator.Below(60);
        const auto any = [&](uint32_t) { return alphabet[generator.Below(kLetters)]; };
        const wchar_t *const a = pageA.Make<wchar_t>(length, generator.Below(test::kSlacks), any);
        const auto almostA = [&](uint32_t i) { // mostly the same letter in either case
            const wchar_t unit = i < length ? detail::LoadUnit(a + i) : L'x';
            const uint32_t choice = generator.Below(300);
            return choice == 0 ? any(i) : choice % 2 ? OrvToUpper(unit) : OrvToLower(unit);
        };
        const wchar_t *const b = pageB.Make<wchar_t>(lengthB, generator.Below(test::kSlacks), almostA);

        const uint32_t n = generator.Below(60);
        const auto order = [&](uint32_t limit) {
            const uint32_t cutA = length < limit ? length : limit;
            const uint32_t cutB = lengthB < limit ? lengthB : limit;
            for (uint32_t i = 0; i < cutA && i < cutB; i++) {
                const wchar_t upperA = RtlUpcaseUnicodeChar(detail::LoadUnit(a + i));
                const wchar_t upperB = RtlUpcaseUnicodeChar(detail::LoadUnit(b + i));
                if (upperA != upperB)
                    return upperA < upperB ? -1 : 1;
            }
            return int(cutA > cutB) - int(cutA < cutB);
        };
        test::Note("round", round);
        if (!CHECK_EQUAL(OrvCompareStringNoCase(OrvCodePageDefault, a, b), order(OrvTerminated)) ||
            !CHECK_EQUAL(OrvCompareStringNoCase(OrvCodePageUtf8, a, b, length, lengthB),
                         order(OrvTerminated)) ||
            !CHECK_EQUAL(OrvCompareSubStringNoCase(OrvCodePageDefault, a, b, n), order(n)) ||
            !CHECK_EQUAL(OrvCompareSubStringNoCase(OrvCodePageDefault, a, b, n, length), order(n)))
            break;
    }
    CHECK_EQUAL(OrvCompareStringNoCase(OrvCodePageDefault, nullptr, L""), 0);
    CHECK_EQUAL(OrvCompareStringNoCase(OrvCodePageDefault, L"straSSE", L"STRAsse"), 0);
    CHECK_EQUAL(OrvCompareStringNoCase(OrvCodePageDefault, L"_", L"a"), 1); // by upper case: 0x5F behind 0x41
}

TEST_CASE(UnicodeCaseFitsOrEmpties)
{
    const wchar_t source[] = L"Gr\x00FC\x00DF e \x0416!";
    wchar_t *const destination = test::GuardedArray<wchar_t>(10);
    uint32_t length = 99;
    CHECK_EQUAL(OrvUpperString(OrvCodePageDefault, destination, 10, source, &length), ORV_S_OK);
    CHECK_TEXT(destination, L"GR\x00DC\x00DF E \x0416!");
    CHECK_EQUAL(length, 9u);
    CHECK_EQUAL(OrvLowerString(OrvCodePageOem, destination, 10, test::GuardedCopy(source, 3), nullptr, 3),
                ORV_S_OK);
    CHECK_TEXT(destination, L"gr\x00FC");
    CHECK_EQUAL(OrvLowerString(OrvCodePageDefault, destination, 9, source, &length), ORV_E_BUFFER_TOO_SMALL);
    CHECK_EQUAL(destination[0], wchar_t(0));
    CHECK_EQUAL(OrvUpperString(OrvCodePageDefault, destination, 0, source), ORV_E_INVALID_ARGUMENT);
    CHECK_EQUAL(OrvUpperString(OrvCodePageDefault, destination, 1, nullptr, &length), ORV_S_OK);
    CHECK_EQUAL(length, 0u);

    wchar_t inPlace[] = L"In Place";
    _ORV_UTF16CHAR_STR descriptor = {3, 9, inPlace};
    CHECK_EQUAL(OrvLowerString(OrvCodePageDefault, descriptor, inPlace), ORV_S_OK);
    CHECK_TEXT(inPlace, L"in place");
    CHECK_EQUAL(descriptor.length, 8u);
    CHECK_EQUAL(OrvUpperString(OrvCodePageDefault, descriptor, L"too long."), ORV_E_BUFFER_TOO_SMALL);
    CHECK_TEXT(inPlace, L"in place");
    CHECK_EQUAL(descriptor.length, 8u);
}

TEST_CASE(UnicodeCaseOfLongTexts)
{
    // Longer than one counted string of the platform can describe.
    constexpr uint32_t kMost = 65534;
    auto *const text = test::GuardedArray<wchar_t>(kMost);
    uint32_t length = 0;
    for (uint32_t i = 0; i < kMost - 1; i++)
        text[i] = i % 2 ? L'x' : 0x0436;
    CHECK_EQUAL(OrvUpperString(OrvCodePageDefault, text, kMost, text, &length), ORV_S_OK);
    CHECK_EQUAL(length, kMost - 1);
    uint32_t upper = 0;
    while (upper < kMost - 1 && text[upper] == (upper % 2 ? L'X' : 0x0416))
        upper++;
    CHECK_EQUAL(upper, kMost - 1);
    CHECK_EQUAL(OrvUpperString(OrvCodePageDefault, text, kMost + 1, L"a"), ORV_E_BAD_LENGTH);
    CHECK_EQUAL(OrvUpperString(OrvCodePageDefault, text, kMost, text, nullptr, kMost + 1), ORV_E_BAD_LENGTH);
    CHECK_EQUAL(OrvUpperString(OrvCodePageDefault, text, kMost, text, nullptr, kMost),
                ORV_E_BUFFER_TOO_SMALL);
}

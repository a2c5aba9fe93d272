// Patterns against names: a table, every short pattern against a matcher that tries everything, and a name
// that a careless matcher would never finish.

#include "orv/text/wildcard.h"

#include "harness/memory.h"
#include "harness/test.h"
#include "orv/text/string.h"

namespace
{

/// Terminated text at an unmapped page.
OrvStringRefBase<wchar_t> Guarded(const wchar_t *text)
{
    return test::GuardedCopy(text, OrvGetStringSizeInElements(text) + 1);
}

bool Matches(const OrvStringRefBase<wchar_t> &pattern, const OrvStringRefBase<wchar_t> &name)
{
    bool matches = false;
    CHECK_EQUAL(OrvBasMatchWildcards(matches, pattern, name), 0);
    return matches;
}

bool MatchesNoCase(const OrvStringRefBase<wchar_t> &pattern, const OrvStringRefBase<wchar_t> &name)
{
    bool matches = false;
    CHECK_EQUAL(OrvBasMatchWildcardsNoCase(matches, pattern, name), 0);
    return matches;
}

/// The definition, tried out in full.
bool TryAll(const wchar_t *pattern, const wchar_t *name)
{
    if (!*pattern)
        return !*name;
    if (*pattern == L'*')
        return TryAll(pattern + 1, name) || (*name && TryAll(pattern, name + 1));
    return *name && (*pattern == L'?' || *pattern == *name) && TryAll(pattern + 1, name + 1);
}

/// The `number`th text over an alphabet, shorter ones first.
uint32_t Spell(uint32_t number, const wchar_t *alphabet, uint32_t letters, wchar_t *text)
{
    uint32_t length = 0;
    for (; number; number = (number - 1) / letters)
        text[length++] = alphabet[(number - 1) % letters];
    text[length] = 0;
    return length;
}

} // namespace

TEST_CASE(WildcardsMatchWhatTheyMust)
{
    struct {
        const wchar_t *pattern;
        const wchar_t *name;
        bool matches;
        bool matchesNoCase;
    } const cases[] = {
        {L"*.*", L"README", true, true},      {L"*.*", L"", true, true},
        {L"*.**", L"README", false, false},   {L"*.*?", L"README", false, false},
        {L"*.TXT", L"a.txt", false, true},    {L"[a]", L"a", false, false},
        {L"\\*", L"*", false, false},         {L"A\xE4z", L"a\xC4Z", false, true},
        {L"\xC4?", L"\xE4\xE4", false, true}, {L"\x3B1*", L"\x391", false, true},
        {L"a.b", L"aXb", false, false},
    };
    for (const auto &c : cases) {
        test::Note("case", static_cast<uint32_t>(&c - cases));
        CHECK_EQUAL(Matches(Guarded(c.pattern), Guarded(c.name)), c.matches);
        CHECK_EQUAL(MatchesNoCase(Guarded(c.pattern), Guarded(c.name)), c.matchesNoCase);
    }
    // A length ends a text before its terminator; null is empty.
    CHECK(Matches({L"a*?", 2}, {L"abc", 3}));
    CHECK(!Matches({L"a\0*", 3}, L"a"));
    CHECK(Matches({L"a\0*", 3}, {L"a\0b", 3}));
    CHECK(Matches({nullptr, 5}, {nullptr, 5}));
    CHECK(Matches({test::GuardedCopy(L"a*b", 3), 3}, {test::GuardedCopy(L"aab", 3), 3}));
}

TEST_CASE(WildcardsMatchAsTheirDefinitionSays)
{
    constexpr uint32_t kPatterns = 1 + 4 + 16 + 64 + 256 + 1024;
    constexpr uint32_t kNames = 1 + 2 + 4 + 8 + 16 + 32;
    uint32_t differences = 0;
    for (uint32_t p = 0; p < kPatterns; p++) {
        wchar_t pattern[8];
        const uint32_t patternLength = Spell(p, L"ab*?", 4, pattern);
        for (uint32_t n = 0; n < kNames; n++) {
            wchar_t name[8];
            const uint32_t nameLength = Spell(n, L"ab", 2, name);
            bool matches = false;
            OrvBasMatchWildcards(matches, {pattern, patternLength}, {name, nameLength});
            bool matchesNoCase = false;
            OrvBasMatchWildcardsNoCase(matchesNoCase, {pattern, patternLength}, {name, nameLength});
            const bool expected = TryAll(pattern, name);
            differences += matches != expected || matchesNoCase != expected;
        }
    }
    CHECK_EQUAL(differences, 0u);
}

TEST_CASE(WildcardsTakeNoMoreThanTheirProduct)
{
    constexpr uint32_t kLength = 0x10000;
    auto *const name = test::GuardedArray<wchar_t>(kLength);
    for (uint32_t i = 0; i < kLength; i++)
        name[i] = L'a';
    CHECK(!Matches(L"*a*a*a*a*a*a*a*a*b", {name, kLength}));
    CHECK(!MatchesNoCase(L"*A*A*A*A*A*A*A*A*b", {name, kLength}));
    CHECK(!Matches(L"*aaaaaaaaaaaaaaab", {name, kLength}));
    name[kLength - 1] = L'b';
    const test::RefusingHeap refusing;
    CHECK(Matches(L"*a*a*a*a*a*a*a*a*b", {name, kLength}));
}

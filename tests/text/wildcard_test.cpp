// Patterns against names: a table, and a name that a careless matcher would never finish. A fuzz target tries
// the short ones beside their definition.

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

} // namespace

TEST_CASE(WildcardsMatchWhatTheyMust)
{
    struct {
        const wchar_t *pattern;
        const wchar_t *name;
        bool matches;
        bool matchesNoCase;
    } const cases[] = {
        {L"*.*", L"README", true, true},   {L"*.**", L"README", false, false},
        {L"*.TXT", L"a.txt", false, true}, {L"[a]", L"a", false, false},
        {L"\\*", L"*", false, false},      {L"\xC4?\x3B1*", L"\xE4\xE4\x391", false, true},
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

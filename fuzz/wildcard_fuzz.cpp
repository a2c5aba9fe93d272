// Any pattern and any name: the answer is the same as from a table for all pairs of their prefixes.

#include "fuzz.h"

#include "orv/text/wildcard.h"

namespace
{

constexpr uint32_t kMost = 64;

bool IsLetter(wchar_t c)
{
    return (c | 0x20) >= L'a' && (c | 0x20) <= L'z';
}

/// The textbook table: matches[i][j] says whether i characters of the pattern match j of the name.
bool Matches(const wchar_t *pattern, uint32_t patternLength, const wchar_t *name, uint32_t nameLength,
             bool ignoresCase)
{
    static bool matches[kMost + 1][kMost + 1];
    if (patternLength == 3 && pattern[0] == L'*' && pattern[1] == L'.' && pattern[2] == L'*')
        return true;
    const auto areAlike = [ignoresCase](wchar_t a, wchar_t b) {
        return a == b || (ignoresCase && IsLetter(a) && (a ^ b) == 0x20);
    };
    for (uint32_t i = 0; i <= patternLength; i++) {
        for (uint32_t j = 0; j <= nameLength; j++) {
            if (i == 0)
                matches[i][j] = j == 0;
            else if (pattern[i - 1] == L'*')
                matches[i][j] = matches[i - 1][j] || (j && matches[i][j - 1]);
            else
                matches[i][j] = j && matches[i - 1][j - 1] &&
                                (pattern[i - 1] == L'?' || areAlike(pattern[i - 1], name[j - 1]));
        }
    }
    return matches[patternLength][nameLength];
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    static const wchar_t kCharacters[] = {L'a', L'b', L'*', L'?', L'.', L'A', L'*', 0};
    if (size == 0 || size > kMost)
        return 0;
    const auto total = static_cast<uint32_t>(size - 1);
    const uint32_t patternLength = total ? data[0] % (total + 1) : 0;
    const uint32_t nameLength = total - patternLength;
    ExactArray<wchar_t> pattern(patternLength);
    ExactArray<wchar_t> name(nameLength);
    for (uint32_t i = 0; i < total; i++)
        (i < patternLength ? pattern[i] : name[i - patternLength]) = kCharacters[data[1 + i] % 8];
    bool actual = false;
    REQUIRE(OrvBasMatchWildcards(actual, {pattern, patternLength}, {name, nameLength}) == 0);
    REQUIRE(actual == Matches(pattern, patternLength, name, nameLength, false));
    REQUIRE(OrvBasMatchWildcardsNoCase(actual, {pattern, patternLength}, {name, nameLength}) == 0);
    REQUIRE(actual == Matches(pattern, patternLength, name, nameLength, true));
    return 0;
}

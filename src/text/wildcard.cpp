// Matches names against patterns with the wildcards * and ?.
//
// After a mismatch only the last star is extended by one more character; earlier stars need no retry. The
// part between two stars contains no star, so the last star was reached at the earliest possible place of the
// name. If an earlier star took more characters, the last star would be reached at the same place or later;
// and since it can take any run of characters, every match found from there is also found from here. So one
// retry point is enough. For each last star, a character of the name is compared at most once with a
// character of the pattern.

#include "orv/text/wildcard.h"

#include "orv/runtime/result.h"
#include "orv/text/character.h"
#include "text/length.h"
#include "text/vector.h"

namespace
{

class Text
{
public:
    explicit Text(const OrvStringRefBase<wchar_t> &text)
        : characters_(text.characters), length_(detail::ResolveLength(text.characters, text.length))
    {
    }

    uint32_t Length() const { return length_; }
    wchar_t operator[](uint32_t at) const { return detail::LoadUnit(characters_ + at); }

private:
    const wchar_t *characters_;
    uint32_t length_;
};

struct SameCharacter {
    bool operator()(wchar_t a, wchar_t b) const { return a == b; }
};

struct SameUpperCase {
    bool operator()(wchar_t a, wchar_t b) const { return a == b || OrvToUpper(a) == OrvToUpper(b); }
};

bool MatchesEverything(const Text &pattern)
{
    return (pattern.Length() == 1 && pattern[0] == L'*') ||
           (pattern.Length() == 3 && pattern[0] == L'*' && pattern[1] == L'.' && pattern[2] == L'*');
}

template <typename Same>
bool Matches(const Text &pattern, const Text &name, const Same &same)
{
    if (MatchesEverything(pattern))
        return true;
    constexpr uint32_t kNone = UINT32_MAX;
    uint32_t atPattern = 0;
    uint32_t atName = 0;
    uint32_t behindStar = kNone; // the place in the pattern after the last star
    uint32_t retry = 0;          // the place in the name where the pattern after that star is tried next
    while (atName < name.Length()) {
        const bool isAtEnd = atPattern == pattern.Length();
        const wchar_t wanted = isAtEnd ? wchar_t{0} : pattern[atPattern];
        if (wanted == L'*') {
            behindStar = ++atPattern;
            if (behindStar == pattern.Length())
                return true;
            retry = atName + 1;
        } else if (!isAtEnd && (wanted == L'?' || same(wanted, name[atName]))) {
            atPattern++;
            atName++;
        } else if (behindStar != kNone) {
            atPattern = behindStar;
            atName = retry++;
        } else {
            return false;
        }
    }
    while (atPattern < pattern.Length() && pattern[atPattern] == L'*')
        atPattern++;
    return atPattern == pattern.Length();
}

} // namespace

OrvResult OrvBasMatchWildcards(bool &matches, const OrvStringRefBase<wchar_t> &pattern,
                               const OrvStringRefBase<wchar_t> &name)
{
    matches = Matches(Text(pattern), Text(name), SameCharacter());
    return ORV_S_OK;
}

OrvResult OrvBasMatchWildcardsNoCase(bool &matches, const OrvStringRefBase<wchar_t> &pattern,
                                     const OrvStringRefBase<wchar_t> &name)
{
    matches = Matches(Text(pattern), Text(name), SameUpperCase());
    return ORV_S_OK;
}

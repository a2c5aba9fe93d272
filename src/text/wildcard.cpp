// Matching of names against patterns.
//
// When a path fails, only the star that was met last has to swallow one more character: what stands between
// two stars has no star itself, so if the later star was reached at all, it was reached at the earliest place
// of the name at which that could be. Whatever the earlier star would do differently, the later one would be
// reached at the same place or further on, and since it may swallow any run, it would find there no match
// that it does not find from here. So one retry point is enough, and each of the name's characters is tried
// against each of the pattern's at most once for the last star in force.

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
    uint32_t behindStar = kNone; // in the pattern
    uint32_t retry = 0;          // in the name: where what stands behind the star is tried next
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

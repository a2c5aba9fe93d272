// Compares strings, exactly and ignoring case.
//
// Both comparisons look for the first unit that differs, a vector at a time, and then order the texts by that
// unit. Two terminated texts are compared and measured in the same pass. When only one is terminated, it is
// measured only until it is known which text is longer.

#include "orv/text/string.h"

#include "nt/nt.h"
#include "orv/text/character.h"
#include "text/length.h"
#include "text/vector.h"

namespace
{

int OrderOfNumbers(uint32_t a, uint32_t b)
{
    return static_cast<int>(a > b) - static_cast<int>(a < b);
}

/// The exact comparison: by the bytes, in their order in memory.
template <typename T>
struct Exact {
    typedef detail::AreEqual<T> Same;

    static int Order(char a, char b)
    {
        return OrderOfNumbers(static_cast<unsigned char>(a), static_cast<unsigned char>(b));
    }
    static int Order(wchar_t a, wchar_t b)
    {
        return OrderOfNumbers(__builtin_bswap16(a), __builtin_bswap16(b));
    }
};

/// The comparison that ignores case. ASCII letters are folded here; units that still differ are mapped by the
/// platform.
struct NoCase {
    struct Same {
        bool operator()(wchar_t a, wchar_t b) const { return OrvToASCIIUpper(a) == OrvToASCIIUpper(b); }
        __m128i operator()(__m128i a, __m128i b) const
        {
            return detail::EqualUnits<wchar_t>(detail::ChangeAsciiCase(a, L'a'),
                                               detail::ChangeAsciiCase(b, L'a'));
        }
    };

    static int Order(wchar_t a, wchar_t b) { return OrderOfNumbers(OrvToUpper(a), OrvToUpper(b)); }
};

template <typename Rule, typename T>
int CompareCounted(const T *a, const T *b, uint32_t lengthA, uint32_t lengthB)
{
    const uint32_t common = lengthA < lengthB ? lengthA : lengthB;
    uint32_t at = 0;
    while ((at = detail::FirstDifference(a, b, at, common, typename Rule::Same())) < common) {
        if (const int order = Rule::Order(detail::LoadUnit(a + at), detail::LoadUnit(b + at)))
            return order;
        at++;
    }
    return OrderOfNumbers(lengthA, lengthB);
}

template <typename Rule, typename T>
int CompareTerminated(const T *a, const T *b, uint32_t n)
{
    uint32_t at = 0;
    while ((at = detail::FirstDifferenceTerminated(a, b, at, n, typename Rule::Same())) < n) {
        const T unitA = detail::LoadUnit(a + at);
        const T unitB = detail::LoadUnit(b + at);
        if (unitA == 0 || unitB == 0)
            return static_cast<int>(unitA != 0) - static_cast<int>(unitB != 0);
        if (const int order = Rule::Order(unitA, unitB))
            return order;
        at++;
    }
    return 0;
}

/// The length of a text, at most `n`. A terminated text is measured only up to one unit more than `other`.
template <typename T>
uint32_t ResolveCutLength(const T *text, uint32_t length, uint32_t n, uint32_t other)
{
    const uint32_t limit = other < n ? other + 1 : n;
    length = detail::ResolveLengthUpTo(text, length, limit);
    return length < n ? length : n;
}

/// Inlined into each exported function, because a call would cost as much as comparing short names.
template <typename Rule, typename T>
__attribute__((always_inline)) inline int Compare(const T *a, const T *b, uint32_t n, uint32_t lengthA,
                                                  uint32_t lengthB)
{
    if (a && b && lengthA == OrvTerminated && lengthB == OrvTerminated)
        return CompareTerminated<Rule>(a, b, n);
    lengthA = ResolveCutLength(a, lengthA, n, lengthB);
    lengthB = ResolveCutLength(b, lengthB, n, lengthA);
    return CompareCounted<Rule>(a, b, lengthA, lengthB);
}

} // namespace

int OrvCompareString(const char *a, const char *b, uint32_t lengthA, uint32_t lengthB)
{
    return Compare<Exact<char>>(a, b, UINT32_MAX, lengthA, lengthB);
}

int OrvCompareString(const wchar_t *a, const wchar_t *b, uint32_t lengthA, uint32_t lengthB)
{
    return Compare<Exact<wchar_t>>(a, b, UINT32_MAX, lengthA, lengthB);
}

int OrvCompareSubString(const char *a, const char *b, uint32_t n, uint32_t lengthA, uint32_t lengthB)
{
    return Compare<Exact<char>>(a, b, n, lengthA, lengthB);
}

int OrvCompareSubString(const wchar_t *a, const wchar_t *b, uint32_t n, uint32_t lengthA, uint32_t lengthB)
{
    return Compare<Exact<wchar_t>>(a, b, n, lengthA, lengthB);
}

int OrvCompareStringNoCase(OrvCodePage, const wchar_t *a, const wchar_t *b, uint32_t lengthA,
                           uint32_t lengthB)
{
    return Compare<NoCase>(a, b, UINT32_MAX, lengthA, lengthB);
}

int OrvCompareSubStringNoCase(OrvCodePage, const wchar_t *a, const wchar_t *b, uint32_t n, uint32_t lengthA,
                              uint32_t lengthB)
{
    return Compare<NoCase>(a, b, n, lengthA, lengthB);
}

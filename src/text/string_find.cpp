// Finds a character or a substring, from either end.
//
// The substring searches check a vector of places at once: only a place where both the first and the last
// character of the needle match is compared in full. In ordinary text few places are left, and the check
// needs no table and no memory. When failed comparisons cost more than the text passed so far, text and
// needle are very repetitive; the rest is then searched by the two-way algorithm, which no text can make
// slow.

#include "orv/text/string.h"

#include "text/length.h"
#include "text/two_way_search.h"
#include "text/vector.h"

namespace
{

template <typename T>
const T *FindUnit(const T *text, T unit, uint32_t length)
{
    if (!text)
        return nullptr;
    if (length != OrvTerminated)
        return detail::FindFirst(text, length, detail::IsUnit<T>(unit));
    // One pass looks for the unit and the terminator, so that the text after a match is not measured.
    const uint32_t at = detail::ScanTerminated(text, UINT32_MAX, detail::IsUnitOrTerminator<T>(unit));
    return detail::LoadUnit(text + at) != 0 ? text + at : nullptr;
}

template <typename T>
const T *FindUnitFromRight(const T *text, T unit, uint32_t length)
{
    return detail::FindLast(text, detail::ResolveLength(text, length), detail::IsUnit<T>(unit));
}

/// A needle of at least two units.
template <typename T>
struct Needle {
    const T *units;
    uint32_t last; ///< the position of its last unit

    /// For a place where the first and the last unit match: the number of matching units from the first one
    /// on, at most `last`. Not inlined, so that the loops over places keep the registers.
    __declspec(noinline) uint32_t CountAtCandidate(const T *at) const
    {
        return detail::FirstDifference(at, units, 1, last, detail::AreEqual<T>());
    }

    bool StandsAt(const T *at) const
    {
        return detail::LoadUnit(at) == detail::LoadUnit(units) &&
               detail::LoadUnit(at + last) == detail::LoadUnit(units + last) && CountAtCandidate(at) == last;
    }
};

/// Limits the units compared in failed comparisons to as many as the needle has, plus one for each place that
/// was passed.
template <typename T>
class Patience
{
public:
    explicit Patience(const Needle<T> &needle) : allowance_(needle.last) {}

    /// False when the limit is exceeded. The first unit was already compared by the vector check and is not
    /// counted.
    bool Bears(uint32_t compared, uint32_t passed)
    {
        spent_ += compared - 1;
        return spent_ <= allowance_ + passed;
    }

private:
    uint32_t allowance_;
    uint32_t spent_ = 0;
};

/// The searches for repetitive text, one for each direction. Not inlined, because they are rarely needed.
template <typename T>
__declspec(noinline) const T *FindRepetitive(const T *text, uint32_t places, const Needle<T> &needle)
{
    const uint32_t place = detail::TwoWaySearch<T>({text, 1}, places, {needle.units, 1}, needle.last + 1);
    return place < places ? text + place : nullptr;
}

template <typename T>
__declspec(noinline) const T *FindRepetitiveFromRight(const T *text, uint32_t places, const Needle<T> &needle)
{
    const uint32_t place = detail::TwoWaySearch<T>({text + (places - 1) + needle.last, -1}, places,
                                                   {needle.units + needle.last, -1}, needle.last + 1);
    return place < places ? text + (places - 1 - place) : nullptr;
}

/// Finds the places in a vector of places where the needle's first and last unit match.
template <typename T>
class Candidates
{
public:
    explicit Candidates(const Needle<T> &needle)
        : last_(needle.last), isFirst_(detail::LoadUnit(needle.units)),
          isLast_(detail::LoadUnit(needle.units + needle.last))
    {
    }

    uint32_t operator()(const T *at) const { return detail::BitsOf(Matches(at)); }

    /// Whether there is such a place in the two vectors from `at` on.
    bool InBlock(const T *at) const
    {
        return detail::BitsOf(_mm_or_si128(Matches(at), Matches(at + detail::kLanes<T>))) != 0;
    }

private:
    __m128i Matches(const T *at) const
    {
        return _mm_and_si128(isFirst_(detail::LoadVector(at)), isLast_(detail::LoadVector(at + last_)));
    }

    uint32_t last_;
    detail::IsUnit<T> isFirst_;
    detail::IsUnit<T> isLast_;
};

/// The bits of one unit in a mask with a bit for each byte.
template <typename T>
uint32_t LaneBits(uint32_t lane)
{
    return ((1u << sizeof(T)) - 1) << (lane * sizeof(T));
}

template <typename T>
const T *FindNeedle(const T *text, uint32_t places, const Needle<T> &needle)
{
    if (places < detail::kLanes<T>) {
        for (uint32_t at = 0; at < places; at++) {
            if (needle.StandsAt(text + at))
                return text + at;
        }
        return nullptr;
    }
    const Candidates<T> candidates(needle);
    Patience<T> patience(needle);
    const uint32_t lastStart = places - detail::kLanes<T>; // where the last vector starts
    for (uint32_t at = 0;; at = at + detail::kLanes<T> < lastStart ? at + detail::kLanes<T> : lastStart) {
        while (lastStart - at > 2 * detail::kLanes<T> && !candidates.InBlock(text + at))
            at += 2 * detail::kLanes<T>;
        for (uint32_t bits = candidates(text + at); bits;) {
            const uint32_t lane = detail::FirstLane<T>(bits);
            const uint32_t place = at + lane;
            const uint32_t same = needle.CountAtCandidate(text + place);
            if (same == needle.last)
                return text + place;
            if (!patience.Bears(same, place))
                return FindRepetitive(text + place, places - place, needle);
            bits &= ~LaneBits<T>(lane);
        }
        if (at == lastStart)
            return nullptr;
    }
}

template <typename T>
const T *FindNeedleFromRight(const T *text, uint32_t places, const Needle<T> &needle)
{
    if (places < detail::kLanes<T>) {
        for (uint32_t end = places; end > 0; end--) {
            if (needle.StandsAt(text + end - 1))
                return text + end - 1;
        }
        return nullptr;
    }
    const Candidates<T> candidates(needle);
    Patience<T> patience(needle);
    for (uint32_t at = places - detail::kLanes<T>;;
         at = at > detail::kLanes<T> ? at - detail::kLanes<T> : 0) {
        while (at >= 2 * detail::kLanes<T> && !candidates.InBlock(text + at - detail::kLanes<T>))
            at -= 2 * detail::kLanes<T>;
        for (uint32_t bits = candidates(text + at); bits;) {
            const uint32_t lane = detail::LastLane<T>(bits);
            const uint32_t place = at + lane;
            const uint32_t same = needle.CountAtCandidate(text + place);
            if (same == needle.last)
                return text + place;
            if (!patience.Bears(same, places - 1 - place))
                return FindRepetitiveFromRight(text, place + 1, needle);
            bits &= ~LaneBits<T>(lane);
        }
        if (at == 0)
            return nullptr;
    }
}

template <typename T>
const T *FindText(const T *text, const T *needle, uint32_t textLength, uint32_t needleLength)
{
    needleLength = detail::ResolveLength(needle, needleLength);
    if (needleLength == 0)
        return text;
    if (needleLength == 1)
        return OrvFindElement(text, detail::LoadUnit(needle), textLength);
    textLength = detail::ResolveLength(text, textLength);
    if (needleLength > textLength)
        return nullptr;
    return FindNeedle(text, textLength - needleLength + 1, Needle<T>{needle, needleLength - 1});
}

template <typename T>
const T *FindTextFromRight(const T *text, const T *needle, uint32_t textLength, uint32_t needleLength)
{
    needleLength = detail::ResolveLength(needle, needleLength);
    if (needleLength == 1)
        return OrvFindElementFromRight(text, detail::LoadUnit(needle), textLength);
    textLength = detail::ResolveLength(text, textLength);
    if (needleLength == 0)
        return text + textLength;
    if (needleLength > textLength)
        return nullptr;
    return FindNeedleFromRight(text, textLength - needleLength + 1, Needle<T>{needle, needleLength - 1});
}

} // namespace

const char *OrvFindElement(const char *text, char character, uint32_t length)
{
    return FindUnit(text, character, length);
}

const wchar_t *OrvFindElement(const wchar_t *text, wchar_t character, uint32_t length)
{
    return FindUnit(text, character, length);
}

char *OrvFindElement(char *text, char character, uint32_t length)
{
    return const_cast<char *>(OrvFindElement(static_cast<const char *>(text), character, length));
}

wchar_t *OrvFindElement(wchar_t *text, wchar_t character, uint32_t length)
{
    return const_cast<wchar_t *>(OrvFindElement(static_cast<const wchar_t *>(text), character, length));
}

const char *OrvFindElementFromRight(const char *text, char character, uint32_t length)
{
    return FindUnitFromRight(text, character, length);
}

const wchar_t *OrvFindElementFromRight(const wchar_t *text, wchar_t character, uint32_t length)
{
    return FindUnitFromRight(text, character, length);
}

char *OrvFindElementFromRight(char *text, char character, uint32_t length)
{
    return const_cast<char *>(OrvFindElementFromRight(static_cast<const char *>(text), character, length));
}

wchar_t *OrvFindElementFromRight(wchar_t *text, wchar_t character, uint32_t length)
{
    return const_cast<wchar_t *>(
        OrvFindElementFromRight(static_cast<const wchar_t *>(text), character, length));
}

const char *OrvFindSubString(const char *text, const char *needle, uint32_t textLength, uint32_t needleLength)
{
    return FindText(text, needle, textLength, needleLength);
}

const wchar_t *OrvFindSubString(const wchar_t *text, const wchar_t *needle, uint32_t textLength,
                                uint32_t needleLength)
{
    return FindText(text, needle, textLength, needleLength);
}

char *OrvFindSubString(char *text, const char *needle, uint32_t textLength, uint32_t needleLength)
{
    return const_cast<char *>(
        OrvFindSubString(static_cast<const char *>(text), needle, textLength, needleLength));
}

wchar_t *OrvFindSubString(wchar_t *text, const wchar_t *needle, uint32_t textLength, uint32_t needleLength)
{
    return const_cast<wchar_t *>(
        OrvFindSubString(static_cast<const wchar_t *>(text), needle, textLength, needleLength));
}

const char *OrvFindSubStringFromRight(const char *text, const char *needle, uint32_t textLength,
                                      uint32_t needleLength)
{
    return FindTextFromRight(text, needle, textLength, needleLength);
}

const wchar_t *OrvFindSubStringFromRight(const wchar_t *text, const wchar_t *needle, uint32_t textLength,
                                         uint32_t needleLength)
{
    return FindTextFromRight(text, needle, textLength, needleLength);
}

char *OrvFindSubStringFromRight(char *text, const char *needle, uint32_t textLength, uint32_t needleLength)
{
    return const_cast<char *>(
        OrvFindSubStringFromRight(static_cast<const char *>(text), needle, textLength, needleLength));
}

wchar_t *OrvFindSubStringFromRight(wchar_t *text, const wchar_t *needle, uint32_t textLength,
                                   uint32_t needleLength)
{
    return const_cast<wchar_t *>(
        OrvFindSubStringFromRight(static_cast<const wchar_t *>(text), needle, textLength, needleLength));
}

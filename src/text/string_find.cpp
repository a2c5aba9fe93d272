// Finding a character or a substring, from either end.
//
// The substring searches look at a vector of places at once: a place is worth a comparison when both the
// needle's first and its last character match there. That leaves few places in text as people and programs
// write it, needs no table and no memory, and is beaten only by text that repeats itself and the needle
// almost everywhere.

#include "orv/text/string.h"

#include "text/length.h"
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
    // One pass looks for both, so that the rest of the text behind the match is not even measured.
    const uint32_t at = detail::ScanTerminated(text, UINT32_MAX, detail::IsUnitOrTerminator<T>(unit));
    return detail::LoadUnit(text + at) != 0 ? text + at : nullptr;
}

template <typename T>
const T *FindUnitFromRight(const T *text, T unit, uint32_t length)
{
    return detail::FindLast(text, detail::ResolveLength(text, length), detail::IsUnit<T>(unit));
}

/// A needle of at least two units, and the question where it stands.
template <typename T>
class Needle
{
public:
    Needle(const T *units, uint32_t length)
        : units_(units), last_(length - 1), isFirst_(detail::LoadUnit(units)),
          isLast_(detail::LoadUnit(units + last_))
    {
    }

    /// Marks the bytes of those places in the vector at `at` that are worth a comparison.
    uint32_t Candidates(const T *at) const
    {
        return detail::BitsOf(
            _mm_and_si128(isFirst_(detail::LoadVector(at)), isLast_(detail::LoadVector(at + last_))));
    }

    bool StandsAtCandidate(const T *at) const
    {
        return detail::FirstDifference(at, units_, 1, last_, detail::AreEqual<T>()) == last_;
    }

    bool StandsAt(const T *at) const
    {
        return isFirst_(detail::LoadUnit(at)) && isLast_(detail::LoadUnit(at + last_)) &&
               StandsAtCandidate(at);
    }

private:
    const T *units_;
    uint32_t last_;
    detail::IsUnit<T> isFirst_;
    detail::IsUnit<T> isLast_;
};

/// The bits of one unit in a mask of bytes.
template <typename T>
uint32_t LaneBits(uint32_t lane)
{
    return ((1u << sizeof(T)) - 1) << (lane * sizeof(T));
}

template <typename T>
const T *FindNeedle(const T *text, uint32_t places, const Needle<T> &needle)
{
    uint32_t at = 0;
    for (; places - at >= detail::kLanes<T>; at += detail::kLanes<T>) {
        uint32_t bits = needle.Candidates(text + at);
        while (bits) {
            const uint32_t lane = detail::FirstLane<T>(bits);
            if (needle.StandsAtCandidate(text + at + lane))
                return text + at + lane;
            bits &= ~LaneBits<T>(lane);
        }
    }
    for (; at < places; at++) {
        if (needle.StandsAt(text + at))
            return text + at;
    }
    return nullptr;
}

template <typename T>
const T *FindNeedleFromRight(const T *text, uint32_t places, const Needle<T> &needle)
{
    uint32_t end = places;
    for (; end >= detail::kLanes<T>; end -= detail::kLanes<T>) {
        const T *const at = text + (end - detail::kLanes<T>);
        uint32_t bits = needle.Candidates(at);
        while (bits) {
            const uint32_t lane = detail::LastLane<T>(bits);
            if (needle.StandsAtCandidate(at + lane))
                return at + lane;
            bits &= ~LaneBits<T>(lane);
        }
    }
    for (; end > 0; end--) {
        if (needle.StandsAt(text + end - 1))
            return text + end - 1;
    }
    return nullptr;
}

template <typename T>
const T *FindText(const T *text, const T *needle, uint32_t textLength, uint32_t needleLength)
{
    needleLength = detail::ResolveLength(needle, needleLength);
    if (needleLength == 0)
        return text;
    if (needleLength == 1)
        return FindUnit(text, detail::LoadUnit(needle), textLength);
    textLength = detail::ResolveLength(text, textLength);
    if (needleLength > textLength)
        return nullptr;
    return FindNeedle(text, textLength - needleLength + 1, Needle<T>(needle, needleLength));
}

template <typename T>
const T *FindTextFromRight(const T *text, const T *needle, uint32_t textLength, uint32_t needleLength)
{
    needleLength = detail::ResolveLength(needle, needleLength);
    if (needleLength == 1)
        return FindUnitFromRight(text, detail::LoadUnit(needle), textLength);
    textLength = detail::ResolveLength(text, textLength);
    if (needleLength == 0)
        return text + textLength;
    if (needleLength > textLength)
        return nullptr;
    return FindNeedleFromRight(text, textLength - needleLength + 1, Needle<T>(needle, needleLength));
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
    return const_cast<char *>(FindUnit<char>(text, character, length));
}

wchar_t *OrvFindElement(wchar_t *text, wchar_t character, uint32_t length)
{
    return const_cast<wchar_t *>(FindUnit<wchar_t>(text, character, length));
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
    return const_cast<char *>(FindUnitFromRight<char>(text, character, length));
}

wchar_t *OrvFindElementFromRight(wchar_t *text, wchar_t character, uint32_t length)
{
    return const_cast<wchar_t *>(FindUnitFromRight<wchar_t>(text, character, length));
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
    return const_cast<char *>(FindText<char>(text, needle, textLength, needleLength));
}

wchar_t *OrvFindSubString(wchar_t *text, const wchar_t *needle, uint32_t textLength, uint32_t needleLength)
{
    return const_cast<wchar_t *>(FindText<wchar_t>(text, needle, textLength, needleLength));
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
    return const_cast<char *>(FindTextFromRight<char>(text, needle, textLength, needleLength));
}

wchar_t *OrvFindSubStringFromRight(wchar_t *text, const wchar_t *needle, uint32_t textLength,
                                   uint32_t needleLength)
{
    return const_cast<wchar_t *>(FindTextFromRight<wchar_t>(text, needle, textLength, needleLength));
}

// Trims white space from the left, the right or both sides of a string.

#include "orv/runtime/result.h"
#include "orv/text/character.h"
#include "orv/text/string.h"

#include "text/length.h"
#include "text/vector.h"

namespace
{

enum class Sides { kLeft, kRight, kBoth };

/// The part of a text that is left after trimming.
struct Kept {
    uint32_t start;
    uint32_t length;
    uint32_t room; ///< the length that must fit; for both sides it includes the white space on the right
};

template <typename T>
Kept FindKept(const T *source, uint32_t count, Sides sides)
{
    const uint32_t length = detail::ResolveLength(source, count);
    uint32_t start = 0;
    uint32_t end = length;
    if (sides != Sides::kRight) {
        while (start < end && OrvIsASCIIWhiteSpace(detail::LoadUnit(source + start)))
            start++;
    }
    if (sides != Sides::kLeft) {
        while (end > start && OrvIsASCIIWhiteSpace(detail::LoadUnit(source + end - 1)))
            end--;
    }
    return {start, end - start, sides == Sides::kBoth ? length - start : end - start};
}

template <typename T>
OrvResult Trim(T *destination, uint32_t capacity, const T *source, uint32_t *resultLength, uint32_t count,
               Sides sides)
{
    if (capacity == 0 || !destination)
        return ORV_E_INVALID_ARGUMENT;
    const Kept kept = FindKept(source, count, sides);
    if (kept.room >= capacity) {
        detail::StoreUnit(destination, T(0));
        return ORV_E_BUFFER_TOO_SMALL;
    }
    OrvCopyString(destination, capacity, source + kept.start, kept.length);
    if (resultLength)
        *resultLength = kept.length;
    return ORV_S_OK;
}

OrvResult Trim(_ORV_UTF16CHAR_STR &destination, const wchar_t *source, uint32_t count, Sides sides)
{
    if (destination.capacity == 0 || !destination.characters)
        return ORV_E_INVALID_ARGUMENT;
    const Kept kept = FindKept(source, count, sides);
    if (kept.room >= destination.capacity)
        return ORV_E_BUFFER_TOO_SMALL;
    OrvCopyString(destination.characters, destination.capacity, source + kept.start, kept.length);
    destination.length = kept.length;
    return ORV_S_OK;
}

} // namespace

OrvResult OrvTrimStringLeft(char *destination, uint32_t capacity, const char *source, uint32_t *resultLength,
                            uint32_t count)
{
    return Trim(destination, capacity, source, resultLength, count, Sides::kLeft);
}

OrvResult OrvTrimStringLeft(wchar_t *destination, uint32_t capacity, const wchar_t *source,
                            uint32_t *resultLength, uint32_t count)
{
    return Trim(destination, capacity, source, resultLength, count, Sides::kLeft);
}

OrvResult OrvTrimStringRight(char *destination, uint32_t capacity, const char *source, uint32_t *resultLength,
                             uint32_t count)
{
    return Trim(destination, capacity, source, resultLength, count, Sides::kRight);
}

OrvResult OrvTrimStringRight(wchar_t *destination, uint32_t capacity, const wchar_t *source,
                             uint32_t *resultLength, uint32_t count)
{
    return Trim(destination, capacity, source, resultLength, count, Sides::kRight);
}

OrvResult OrvTrimString(char *destination, uint32_t capacity, const char *source, uint32_t *resultLength,
                        uint32_t count)
{
    return Trim(destination, capacity, source, resultLength, count, Sides::kBoth);
}

OrvResult OrvTrimString(wchar_t *destination, uint32_t capacity, const wchar_t *source,
                        uint32_t *resultLength, uint32_t count)
{
    return Trim(destination, capacity, source, resultLength, count, Sides::kBoth);
}

OrvResult OrvTrimStringLeft(_ORV_UTF16CHAR_STR &destination, const wchar_t *source, uint32_t count)
{
    return Trim(destination, source, count, Sides::kLeft);
}

OrvResult OrvTrimStringRight(_ORV_UTF16CHAR_STR &destination, const wchar_t *source, uint32_t count)
{
    return Trim(destination, source, count, Sides::kRight);
}

OrvResult OrvTrimString(_ORV_UTF16CHAR_STR &destination, const wchar_t *source, uint32_t count)
{
    return Trim(destination, source, count, Sides::kBoth);
}

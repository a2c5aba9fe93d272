// Changes case: of ASCII letters in place, and of UTF-16 text with the platform's tables.

#include "orv/runtime/result.h"
#include "orv/text/character.h"
#include "orv/text/string.h"

#include "nt/nt.h"
#include "runtime/status.h"
#include "text/length.h"
#include "text/vector.h"

namespace
{

/// Changes the case of the 26 letters that start with `first`, 'a' or 'A'.
template <typename T>
void ChangeInPlace(T *text, uint32_t length, T first)
{
    length = detail::ResolveLength(text, length);
    if (length > (UINTPTR_MAX - reinterpret_cast<uintptr_t>(text)) / sizeof(T))
        return;
    uint32_t at = 0;
    for (; length - at >= detail::kLanes<T>; at += detail::kLanes<T>)
        detail::StoreVector(text + at, detail::ChangeAsciiCase(detail::LoadVector(text + at), first));
    for (; at < length; at++) {
        const T unit = detail::LoadUnit(text + at);
        if (unit >= first && unit < first + 26)
            detail::StoreUnit(text + at, static_cast<T>(unit ^ 0x20));
    }
}

typedef NTSTATUS NTAPI MapString(UNICODE_STRING *destination, const UNICODE_STRING *source, BOOLEAN allocate);

constexpr uint32_t kTooLong = 0xFFFF;

/// The most characters of a counted string of the platform. Each unit is mapped on its own, so a longer text
/// can be mapped in pieces.
constexpr uint32_t kPiece = 0x7FFF;

/// Maps the text and sets `length`. When the result does not fit, the destination is unchanged.
OrvResult Map(MapString *map, wchar_t *destination, uint32_t capacity, const wchar_t *source, uint32_t count,
              uint32_t *length)
{
    if (capacity == 0 || !destination)
        return ORV_E_INVALID_ARGUMENT;
    count = detail::ResolveLengthUpTo(source, count, kTooLong);
    if (count >= kTooLong || capacity >= kTooLong)
        return ORV_E_BAD_LENGTH;
    if (count >= capacity)
        return ORV_E_BUFFER_TOO_SMALL;
    for (uint32_t at = 0; at < count; at += kPiece) {
        const uint32_t piece = count - at < kPiece ? count - at : kPiece;
        const auto size = static_cast<USHORT>(piece * sizeof(wchar_t));
        const UNICODE_STRING from = {size, size, const_cast<wchar_t *>(source) + at};
        UNICODE_STRING to = {size, size, destination + at};
        const OrvResult result = detail::ResultFromCall(map(&to, &from, false));
        if (OrvFailed(result))
            return result;
    }
    detail::StoreUnit(destination + count, L'\0');
    if (length)
        *length = count;
    return ORV_S_OK;
}

/// The same, but when the result does not fit, the destination becomes an empty string.
OrvResult MapToArray(MapString *map, wchar_t *destination, uint32_t capacity, const wchar_t *source,
                     uint32_t count, uint32_t *length)
{
    const OrvResult result = Map(map, destination, capacity, source, count, length);
    if (result == ORV_E_BUFFER_TOO_SMALL)
        detail::StoreUnit(destination, L'\0');
    return result;
}

} // namespace

void OrvLowerASCIIString(char *text, uint32_t length)
{
    ChangeInPlace(text, length, 'A');
}

void OrvLowerASCIIString(wchar_t *text, uint32_t length)
{
    ChangeInPlace(text, length, L'A');
}

void OrvUpperASCIIString(char *text, uint32_t length)
{
    ChangeInPlace(text, length, 'a');
}

void OrvUpperASCIIString(wchar_t *text, uint32_t length)
{
    ChangeInPlace(text, length, L'a');
}

OrvResult OrvLowerString(OrvCodePage, wchar_t *destination, uint32_t capacity, const wchar_t *source,
                         uint32_t *resultLength, uint32_t count)
{
    return MapToArray(RtlDowncaseUnicodeString, destination, capacity, source, count, resultLength);
}

OrvResult OrvUpperString(OrvCodePage, wchar_t *destination, uint32_t capacity, const wchar_t *source,
                         uint32_t *resultLength, uint32_t count)
{
    return MapToArray(RtlUpcaseUnicodeString, destination, capacity, source, count, resultLength);
}

OrvResult OrvLowerString(OrvCodePage, _ORV_UTF16CHAR_STR &destination, const wchar_t *source, uint32_t count)
{
    return Map(RtlDowncaseUnicodeString, destination.characters, destination.capacity, source, count,
               &destination.length);
}

OrvResult OrvUpperString(OrvCodePage, _ORV_UTF16CHAR_STR &destination, const wchar_t *source, uint32_t count)
{
    return Map(RtlUpcaseUnicodeString, destination.characters, destination.capacity, source, count,
               &destination.length);
}

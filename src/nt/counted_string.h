// Building the platform's counted strings. Their sizes are in bytes and have 16 bits; a room includes the
// terminator.

#pragma once

#include "nt/nt.h"

namespace detail
{

/// The most characters of a text that the platform can count together with a terminator.
constexpr uint32_t kLongestCounted = 32766;

/// The largest room that can be counted, in bytes of whole characters.
constexpr uint32_t kMostCountedRoom = (kLongestCounted + 1) * sizeof(WCHAR);

/// The room of an array of `size` bytes, limited to what the platform can count.
constexpr USHORT CountedRoom(uint32_t size)
{
    return static_cast<USHORT>(size < kMostCountedRoom ? size : kMostCountedRoom);
}

/// A literal as a counted string. The length does not count its terminator.
template <size_t size>
constexpr UNICODE_STRING CountedLiteral(const WCHAR (&text)[size])
{
    static_assert(size <= kLongestCounted + 1);
    return {(size - 1) * sizeof(WCHAR), size * sizeof(WCHAR), const_cast<WCHAR *>(text)};
}

/// Makes `counted` refer to `length` characters, which the platform only reads. Returns false and changes
/// nothing when there are more than it can count.
constexpr bool CountText(const WCHAR *text, uint32_t length, UNICODE_STRING &counted)
{
    if (length > kLongestCounted)
        return false;
    const auto size = static_cast<USHORT>(length * sizeof(WCHAR));
    counted = {size, size, const_cast<WCHAR *>(text)};
    return true;
}

} // namespace detail

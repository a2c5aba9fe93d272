// The platform's counted strings. Their sizes are bytes in 16 bits, the terminator included.

#pragma once

#include "nt/nt.h"

namespace detail
{

/// The most characters of a text that the platform can count and terminate.
constexpr uint32_t kLongestCounted = 32766;

/// The largest room that can be counted in whole characters, in bytes.
constexpr uint32_t kMostCountedRoom = (kLongestCounted + 1) * sizeof(WCHAR);

/// The room of an array of `size` bytes, as far as the platform can count it.
constexpr USHORT CountedRoom(uint32_t size)
{
    return static_cast<USHORT>(size < kMostCountedRoom ? size : kMostCountedRoom);
}

/// A literal as the platform takes it. Its terminator is not counted.
template <size_t size>
constexpr UNICODE_STRING CountedLiteral(const WCHAR (&text)[size])
{
    static_assert(size <= kLongestCounted + 1);
    return {(size - 1) * sizeof(WCHAR), size * sizeof(WCHAR), const_cast<WCHAR *>(text)};
}

/// Refers to `length` characters, which the platform only reads. False, and nothing is changed, when there
/// are more than it can count.
constexpr bool CountText(const WCHAR *text, uint32_t length, UNICODE_STRING &counted)
{
    if (length > kLongestCounted)
        return false;
    const auto size = static_cast<USHORT>(length * sizeof(WCHAR));
    counted = {size, size, const_cast<WCHAR *>(text)};
    return true;
}

} // namespace detail

// What XML text and attribute values may not hold as it is.
//
// Escaped are & < >, in attribute values quotes and apostrophes too, and what XML has no character for: units
// below 0x20 but tab, line feed and carriage return, surrogates one by one, and the last two of the plane.

#pragma once

#include <stdint.h>

namespace detail
{

/// The number of units at the start that need no escape, a vector at a time.
uint32_t CountUnescaped(const wchar_t *text, uint32_t count, bool attribute);

namespace plain
{

/// The same, unit by unit.
uint32_t CountUnescaped(const wchar_t *text, uint32_t count, bool attribute);

} // namespace plain

/// The named reference of a unit that is escaped; null when it has none and goes out by its number.
const wchar_t *EntityOf(wchar_t unit);

} // namespace detail

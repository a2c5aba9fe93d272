// Which characters must be escaped in XML text and attribute values, and how.
//
// Escaped are: & < >; in attribute values also quotes and apostrophes; and units that are no XML characters:
// below 0x20 except tab, line feed and carriage return; each surrogate; U+FFFE and U+FFFF.

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

/// The named reference of a unit that is escaped; null when it has none and is written as a number.
const wchar_t *EntityOf(wchar_t unit);

} // namespace detail

// Where a byte string can be cut without changing what it says, and where it ceases to be text. The library
// says only whether a whole string is text: both answers are found by asking it about parts.

#pragma once

#include "orv/text/code_page.h"

namespace orvtool
{

/// Whether the character is of the alphabet of Base64, which UTF-7 has too; "=" is not.
bool IsBase64Digit(char c);

/// Whether all of the bytes are text of the page. Only UTF-7, UTF-8 and UTF-16 have bytes that are none.
bool IsText(const char *bytes, uint32_t count, OrvCodePage page);

/// The most bytes, at most `count`, that end with a character. 0 when that cannot be told without reading all
/// of them: the page is neither UTF-8 nor UTF-16.
uint32_t CutBehindCharacter(const char *bytes, uint32_t count, OrvCodePage page);

/// The same, behind a line feed; 0 when there is none. A line feed ends every shift of UTF-7.
uint32_t CutBehindLine(const char *bytes, uint32_t count, OrvCodePage page);

/// The offset of the first character that is malformed, in UTF-7 of the shift that is; `count` when all is
/// text.
uint32_t FindFault(const char *bytes, uint32_t count, OrvCodePage page);

} // namespace orvtool

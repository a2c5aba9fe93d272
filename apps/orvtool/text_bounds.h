// Where a byte string can be cut between characters, and where it is malformed. The library only tells
// whether a whole string is text, so both answers are found by asking it about parts.

#pragma once

#include "orv/text/code_page.h"

namespace orvtool
{

/// Whether the character is in the alphabet of Base64, which UTF-7 also uses; "=" is not.
bool IsBase64Digit(char c);

/// Whether all bytes are text of the page. Only in UTF-7, UTF-8 and UTF-16 can bytes be malformed.
bool IsText(const char *bytes, uint32_t count, OrvCodePage page);

/// The largest number of bytes, at most `count`, that ends with a complete character. 0 when the page is
/// neither UTF-8 nor UTF-16: there this cannot be found without reading all bytes.
uint32_t CutBehindCharacter(const char *bytes, uint32_t count, OrvCodePage page);

/// The same, but ending with a line feed; 0 when there is none. A line feed ends every shift of UTF-7.
uint32_t CutBehindLine(const char *bytes, uint32_t count, OrvCodePage page);

/// The offset of the first malformed character, in UTF-7 of the first malformed shift; `count` when all bytes
/// are text.
uint32_t FindFault(const char *bytes, uint32_t count, OrvCodePage page);

} // namespace orvtool

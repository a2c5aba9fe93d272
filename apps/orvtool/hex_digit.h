// Hexadecimal digits.

#pragma once

#include "orv/text/character.h"

namespace orvtool
{

/// The value of a hexadecimal digit in either case; 16 for any other character.
inline uint32_t HexDigitOf(wchar_t character)
{
    const wchar_t lower = OrvToASCIILower(character);
    if (OrvIsASCIIDigit(lower))
        return lower - L'0';
    return lower >= L'a' && lower <= L'f' ? lower - L'a' + 10 : 16;
}

} // namespace orvtool

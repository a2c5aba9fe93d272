// The value of a single hexadecimal digit.

#pragma once

#include <stdint.h>

namespace detail
{

/// 0 to 15 for a digit in either case; a number above 15 for another character.
inline uint32_t HexadecimalDigit(wchar_t character)
{
    if (character >= L'0' && character <= L'9')
        return character - L'0';
    const uint32_t letter = (character | 0x20u) - L'a';
    return letter < 6 ? letter + 10 : UINT32_MAX;
}

} // namespace detail

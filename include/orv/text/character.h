// Character classes and the case of single characters.
//
// The rules named below are exact and deliberately uneven: some know only ASCII, some use the platform's
// classification for its default locale, and the library adds no tables of its own. The classes that need no
// platform function are inline; the library also exports them.

#pragma once

#include "orv/base.h"

/// 0-31 and 127.
ORV_API inline bool OrvIsControl(wchar_t character)
{
    return character < 32 || character == 127;
}

/// A-Z and a-z.
ORV_API inline bool OrvIsLetter(wchar_t character)
{
    return (character >= L'A' && character <= L'Z') || (character >= L'a' && character <= L'z');
}

/// Decimal digits as the platform classifies them (iswdigit).
ORV_API bool OrvIsDigit(wchar_t character);

/// Hexadecimal digits as the platform classifies them (iswxdigit).
ORV_API bool OrvIsXDigit(wchar_t character);

/// A-Z, a-z, and decimal digits as the platform classifies them.
ORV_API bool OrvIsLetterOrDigit(wchar_t character);

/// Whether the platform classifies the low byte of the character as a lower-case letter (islower). The other
/// byte does not matter: U+0161 is lower, because its low byte is the letter a.
ORV_API bool OrvIsLower(wchar_t character);

/// A-Z.
ORV_API inline bool OrvIsUpper(wchar_t character)
{
    return character >= L'A' && character <= L'Z';
}

/// Characters from 32 on that are neither white space nor ASCII letters nor decimal digits; 127 and every
/// letter outside ASCII too.
ORV_API bool OrvIsPunctuation(wchar_t character);

/// Characters from 32 on, the space included.
ORV_API inline bool OrvIsSymbol(wchar_t character)
{
    return character >= 32;
}

/// White space as the platform classifies it (iswspace).
ORV_API bool OrvIsWhiteSpace(wchar_t character);

/// The lower-case form that the platform gives, or the character itself.
ORV_API wchar_t OrvToLower(wchar_t character);

/// The upper-case form that the platform gives, or the character itself.
ORV_API wchar_t OrvToUpper(wchar_t character);

/// 0-9.
ORV_API inline bool OrvIsASCIIDigit(wchar_t character)
{
    return character >= L'0' && character <= L'9';
}

/// Space, tab (9), line feed (10), vertical tab (11) and carriage return (13).
ORV_API inline bool OrvIsASCIIWhiteSpace(char character)
{
    return character == 32 || character == 9 || character == 10 || character == 13 || character == 11;
}

/// The same for UTF-16.
ORV_API inline bool OrvIsASCIIWhiteSpace(wchar_t character)
{
    return character == 32 || character == 9 || character == 10 || character == 13 || character == 11;
}

/// Changes A-Z to a-z; any other character stays.
ORV_API inline char OrvToASCIILower(char character)
{
    return static_cast<char>(character >= 'A' && character <= 'Z' ? character + 32 : character);
}

/// The same for UTF-16.
ORV_API inline wchar_t OrvToASCIILower(wchar_t character)
{
    return static_cast<wchar_t>(character >= L'A' && character <= L'Z' ? character + 32 : character);
}

/// Changes a-z to A-Z; any other character stays.
ORV_API inline char OrvToASCIIUpper(char character)
{
    return static_cast<char>(character >= 'a' && character <= 'z' ? character - 32 : character);
}

/// The same for UTF-16.
ORV_API inline wchar_t OrvToASCIIUpper(wchar_t character)
{
    return static_cast<wchar_t>(character >= L'a' && character <= L'z' ? character - 32 : character);
}

// Case mapping and character classes, by the platform's tables. ASCII letters are mapped without a call to
// the platform, which maps them the same way.

#include "orv/text/character.h"

#include "nt/nt.h"
#include "orv/runtime/ntdll_entry_points.h"

namespace
{

constexpr wchar_t kFirstBeyondAscii = 0x80;

} // namespace

bool OrvIsDigit(wchar_t character)
{
    return iswdigit(character) != 0;
}

bool OrvIsXDigit(wchar_t character)
{
    return iswxdigit(character) != 0;
}

bool OrvIsLetterOrDigit(wchar_t character)
{
    return OrvIsLetter(character) || OrvIsDigit(character);
}

bool OrvIsLower(wchar_t character)
{
    return islower(character & 0xFF) != 0;
}

bool OrvIsPunctuation(wchar_t character)
{
    return OrvIsSymbol(character) && !OrvIsWhiteSpace(character) && !OrvIsLetterOrDigit(character);
}

bool OrvIsWhiteSpace(wchar_t character)
{
    return iswspace(character) != 0;
}

wchar_t OrvToLower(wchar_t character)
{
    return character < kFirstBeyondAscii ? OrvToASCIILower(character)
                                         : OrvNtdll_RtlDowncaseUnicodeChar(character);
}

wchar_t OrvToUpper(wchar_t character)
{
    return character < kFirstBeyondAscii ? OrvToASCIIUpper(character) : RtlUpcaseUnicodeChar(character);
}

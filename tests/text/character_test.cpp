// The character classes whose rules need no platform.

#include "orv/text/character.h"

#include "harness/test.h"

TEST_CASE(AsciiClassesHoldForEveryUnit)
{
    for (uint32_t unit = 0; unit < 0x10000; unit++) {
        const auto c = static_cast<wchar_t>(unit);
        const bool upper = unit >= 'A' && unit <= 'Z';
        const bool lower = unit >= 'a' && unit <= 'z';
        const bool blank = unit == 32 || (unit >= 9 && unit <= 13 && unit != 12);
        test::Note("unit", unit);
        CHECK_EQUAL(OrvIsControl(c), unit <= 31 || unit == 127);
        CHECK_EQUAL(OrvIsLetter(c), upper || lower);
        CHECK_EQUAL(OrvIsUpper(c), upper);
        CHECK_EQUAL(OrvIsSymbol(c), unit > 31);
        CHECK_EQUAL(OrvIsASCIIDigit(c), unit >= 48 && unit <= 57);
        CHECK_EQUAL(OrvIsASCIIWhiteSpace(c), blank);
        CHECK_EQUAL(OrvToASCIILower(c), static_cast<wchar_t>(upper ? unit + 32 : unit));
        CHECK_EQUAL(OrvToASCIIUpper(c), static_cast<wchar_t>(lower ? unit - 32 : unit));
        if (unit < 0x100) {
            const auto byte = static_cast<char>(unit);
            CHECK_EQUAL(OrvIsASCIIWhiteSpace(byte), blank);
            CHECK_EQUAL(OrvToASCIILower(byte), static_cast<char>(upper ? unit + 32 : unit));
            CHECK_EQUAL(OrvToASCIIUpper(byte), static_cast<char>(lower ? unit - 32 : unit));
        }
    }
}

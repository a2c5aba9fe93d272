// Any text as a number: doubles as the host's C library reads them, integers as a simple rule does.

#include "fuzz.h"

#include "orv/runtime/result.h"
#include "orv/text/number.h"

#include <string.h>

namespace
{

/// The C library reads more than we do: blanks, hexadecimal, infinities and NaNs. Those texts are left out.
bool BothReadAlike(const char *text)
{
    text += *text == '-' || *text == '+';
    if (text[0] == '0' && (text[1] == 'x' || text[1] == 'X'))
        return false;
    return (*text >= '0' && *text <= '9') || *text == '.';
}

void CheckDouble(const char *text)
{
    double value = 1;
    const char *end = nullptr;
    const OrvResult result = OrvConvertString2Double(value, text, OrvTerminated, &end);
    REQUIRE((result == ORV_S_OK) == (end == nullptr));
    if (!BothReadAlike(text))
        return;
    char *expectedEnd = nullptr;
    const double expected = strtod(text, &expectedEnd);
    REQUIRE(memcmp(&value, &expected, sizeof value) == 0);
    REQUIRE(end == (*expectedEnd ? expectedEnd : nullptr));
}

uint32_t DigitOf(char character)
{
    if (character >= '0' && character <= '9')
        return static_cast<uint32_t>(character - '0');
    const char lower = static_cast<char>(character | 0x20);
    return lower >= 'a' && lower <= 'z' && character > 0 ? static_cast<uint32_t>(lower - 'a' + 10) : 99;
}

/// Digit by digit in 128 bits' worth of care: a long double holds every 64-bit number.
void CheckInteger(const char *text, int radix)
{
    __int64 value = 1;
    const char *end = nullptr;
    OrvConvertString2Number(value, text, OrvTerminated, radix, &end);
    const char *next = text;
    const bool negative = *next == '-';
    next += negative;
    if (radix == 16 && next[0] == '0' && (next[1] == 'x' || next[1] == 'X'))
        next += 2;
    const long double limit = negative ? 0x1p63L : radix == 16 ? 0x1p64L - 1 : 0x1p63L - 1;
    uint64_t sum = 0;
    for (; *next && DigitOf(*next) < static_cast<uint32_t>(radix); next++) {
        const uint32_t digit = DigitOf(*next);
        if (static_cast<long double>(sum) * radix > limit - digit)
            break;
        sum = sum * static_cast<uint32_t>(radix) + digit;
    }
    REQUIRE(static_cast<uint64_t>(value) == (negative ? 0 - sum : sum));
    REQUIRE(end == (*next ? next : nullptr));
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    if (size == 0)
        return 0;
    ExactArray<char> text(size);
    memcpy(text, data + 1, size - 1);
    text[size - 1] = 0;
    CheckDouble(text);
    CheckInteger(text, 2 + data[0] % 35);
    return 0;
}

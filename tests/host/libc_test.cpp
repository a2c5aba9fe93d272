// Doubles to text and back, held against the host's C library on random bit patterns. Both sides claim to be
// exact, so every difference is a fault. ORV_PATTERNS in the environment asks for more than a test run's
// number.

#include "harness/test.h"
#include "orv/runtime/result.h"
#include "orv/text/format.h"
#include "orv/text/number.h"

#include <stdio.h>
#include <stdlib.h>
#include <string.h>

namespace
{

uint64_t Random()
{
    static uint64_t state = 0x9E3779B97F4A7C15;
    state ^= state << 13;
    state ^= state >> 7;
    state ^= state << 17;
    return state;
}

uint32_t Patterns(uint32_t testRun)
{
    const char *const wanted = getenv("ORV_PATTERNS");
    return wanted ? static_cast<uint32_t>(strtoul(wanted, nullptr, 10)) : testRun;
}

double FromBits(uint64_t bits)
{
    double value = 0;
    memcpy(&value, &bits, sizeof value);
    return value;
}

uint64_t ToBits(double value)
{
    uint64_t bits = 0;
    memcpy(&bits, &value, sizeof bits);
    return bits;
}

/// Any bit pattern, subnormals, numbers near 1, integers, and short decimals, whose halves are exact.
double RandomDouble()
{
    const uint64_t bits = Random();
    switch (Random() % 6) {
    case 0:
        return FromBits(bits & 0x800FFFFFFFFFFFFF);
    case 1:
        return FromBits((bits & 0x800FFFFFFFFFFFFF) | (0x3F0 + bits % 0x40) << 52);
    case 2:
        return static_cast<double>(static_cast<int64_t>(bits) >> bits % 64);
    case 3:
        return static_cast<double>(static_cast<int32_t>(bits)) / 1024;
    default:
        return FromBits(bits);
    }
}

/// A directive with random flags, width and precision; now and then a precision beyond every digit.
void RandomDirective(char (&format)[32])
{
    const char *const flags[] = {"", "", "", "-", "+", " ", "0", "#", "+0", "-#", "#0"};
    const uint64_t random = Random();
    const auto precision = static_cast<unsigned>(random % 64 == 0 ? Random() % 1200 : Random() % 24);
    const char conversion = "eEfgG"[random / 64 % 5];
    const char *const flag = flags[random / 1024 % 11];
    const auto width = static_cast<unsigned>(random / 65536 % 40);
    if (random / 8388608 % 8 == 0)
        snprintf(format, sizeof format, "%%%s%u%c", flag, width + 1, conversion);
    else
        snprintf(format, sizeof format, "%%%s%u.%u%c", flag, width + 1, precision, conversion);
}

/// The exact decimal text of the point half-way to the next double: 80-bit numbers hold it.
void HalfWayText(double value, char (&text)[1200])
{
    const long double sum = static_cast<long double>(value) + FromBits(ToBits(value) + 1);
    snprintf(text, sizeof text, "%.*Le", 1100, sum / 2);
}

bool CheckParse(const char *text)
{
    char *expectedEnd = nullptr;
    const double expected = strtod(text, &expectedEnd);
    double actual = 1;
    const char *end = nullptr;
    const OrvResult result = OrvConvertString2Double(actual, text, OrvTerminated, &end);
    const bool whole = *expectedEnd == 0;
    return CHECK_EQUAL(ToBits(actual), ToBits(expected)) && CHECK_EQUAL(result == ORV_S_OK, whole) &&
           CHECK_EQUAL(end, whole ? nullptr : const_cast<const char *>(expectedEnd));
}

} // namespace

TEST_CASE(FormattedDoublesEqualTheLibrarys)
{
    const uint32_t patterns = Patterns(1000000);
    for (uint32_t i = 0; i < patterns; i++) {
        const double value = RandomDouble();
        char format[32];
        RandomDirective(format);
        static char expected[2048];
        static char actual[2048];
        snprintf(expected, sizeof expected, format, value);
        OrvFormatString(OrvCodePageUtf8, actual, sizeof actual, nullptr, format, value);
        // This host forgets the zeros that # keeps where rounding carries into another digit: "%#.3g" of
        // 999.9.
        if (strchr(format, '#') && strchr("gG", format[strlen(format) - 1]) && strcasestr(expected, "1.e+"))
            continue;
        test::Note(format, ToBits(value));
        if (!CHECK_TEXT(actual, expected))
            return;
    }
}

TEST_CASE(ParsedDoublesEqualTheLibrarys)
{
    const uint32_t patterns = Patterns(1000000);
    for (uint32_t i = 0; i < patterns; i++) {
        double value = RandomDouble();
        if (!__builtin_isfinite(value))
            value = 0;
        char text[64];
        const uint64_t random = Random();
        // From the shortest precisions, which are not exact, up to more digits than the fast path takes.
        snprintf(text, sizeof text, random & 1 ? "%.*e" : "%.*g", static_cast<int>(random / 2 % 24), value);
        test::Note(text, ToBits(value));
        if (!CheckParse(text))
            return;
    }
}

TEST_CASE(HalfWayTextsRoundAsTheLibrarysDo)
{
    const uint32_t patterns = Patterns(20000);
    for (uint32_t i = 0; i < patterns; i++) {
        double value = RandomDouble();
        if (!__builtin_isfinite(value) || !__builtin_isfinite(FromBits(ToBits(value) + 1)))
            value = 0;
        char text[1200];
        HalfWayText(value, text);
        test::Note("bits", ToBits(value));
        // Exactly half-way, just above it and just below it.
        char *const lastDigit = strchr(text, 'e') - 1;
        for (const char digit : "01") {
            if (!digit)
                break;
            *lastDigit = digit;
            if (!CheckParse(text))
                return;
        }
        char *nonZero = lastDigit;
        *nonZero = '0';
        while (*nonZero == '0' || *nonZero == '.')
            nonZero--;
        if (*nonZero >= '1' && *nonZero <= '9')
            --*nonZero;
        if (!CheckParse(text))
            return;
    }
}

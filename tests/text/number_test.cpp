// Numbers to text and back, in both widths: limits, prefixes, where reading stops, and what a small target
// gets.

#include "orv/text/number.h"

#include "orv/runtime/result.h"
#include "orv/text/string.h"
#include "text/texts.h"

namespace
{

constexpr uint32_t kRoom = 512;

typedef test::Ascii<wchar_t> Wide;

/// Reads in both widths, with and without an end position, which must agree. `stop` is the index where
/// reading stops, kRoom when the whole text is read.
template <typename V>
void CheckRead(const char *given, int radix, V expected, uint32_t stop)
{
    const char *const text = test::Ascii<char>(given).units;
    const Wide wide(text);
    V value = 1;
    const char *end = text;
    const wchar_t *wideEnd = wide.units;
    const bool whole = stop == kRoom;
    CHECK_EQUAL(OrvConvertString2Number(value, text, OrvTerminated, radix, &end),
                whole ? ORV_S_OK : ORV_E_INVALID_ARGUMENT);
    CHECK_EQUAL(value, expected);
    CHECK_EQUAL(end, whole ? nullptr : text + stop);
    value = 1;
    CHECK_EQUAL(OrvConvertString2Number(value, wide.units, OrvTerminated, radix, &wideEnd),
                whole ? ORV_S_OK : ORV_E_INVALID_ARGUMENT);
    CHECK_EQUAL(value, expected);
    CHECK_EQUAL(wideEnd, whole ? nullptr : wide.units + stop);
    value = 1;
    CHECK_EQUAL(OrvConvertString2Number(value, text, OrvTerminated, radix), ORV_S_OK);
    CHECK_EQUAL(value, expected);
}

/// The limits of a type, and the numbers beside them, which lose their last digit.
template <typename V>
void CheckLimits(const char *largestText, const char *smallestText, const char *allBitsText)
{
    constexpr V kHighBit = static_cast<V>(V(1) << (sizeof(V) * 8 - 1));
    constexpr bool kIsSigned = kHighBit < 0;
    const V limits[] = {static_cast<V>(kIsSigned ? ~kHighBit : V(-1)), kIsSigned ? kHighBit : V(0)};
    const char *const texts[] = {largestText, smallestText};
    for (uint32_t i = 0; i < 2; i++) {
        char text[80];
        CHECK_EQUAL(OrvConvertNumber2String(text, sizeof text, limits[i], 10), ORV_S_OK);
        CHECK_TEXT(text, texts[i]);
        CheckRead<V>(text, 10, limits[i], kRoom);
        if (limits[i] == 0)
            continue;
        const uint32_t last = OrvGetStringSizeInElements(text) - 1;
        text[last]++;
        CheckRead<V>(text, 10, limits[i] / 10, last);
    }
    CheckRead<V>(allBitsText, 16, static_cast<V>(-1), kRoom);
    if (!kIsSigned)
        CheckRead<V>("-1", 10, 0, 1);
}

} // namespace

TEST_CASE(EveryTypeHasItsLimits)
{
    CheckLimits<signed char>("127", "-128", "fF");
    CheckLimits<unsigned char>("255", "0", "0xff");
    CheckLimits<short>("32767", "-32768", "ffff");
    CheckLimits<unsigned short>("65535", "0", "FFFF");
    CheckLimits<int>("2147483647", "-2147483648", "FFFFFFFF");
    CheckLimits<unsigned long>("4294967295", "0", "FFFFFFFF");
    CheckLimits<__int64>("9223372036854775807", "-9223372036854775808", "FFFFFFFFFFFFFFFF");
    CheckLimits<unsigned __int64>("18446744073709551615", "0", "ffffffffffffffff");
}

TEST_CASE(ReadingStopsWhereItMust)
{
    struct {
        const char *text;
        int radix;
        int value;
        uint32_t stop;
    } const cases[] = {
        {"", 10, 0, kRoom},
        {"-", 10, 0, kRoom},
        {"+5", 10, 0, 0},
        {"--5", 10, 0, 1},
        {"-0", 10, 0, kRoom},
        {"0x1F", 0, 31, kRoom},
        {"-0x10", 0, -16, kRoom},
        {"010", 0, 10, kRoom},
        {"0x", 0, 0, 1},
        {"0xg", 0, 0, 2},
        {"0x", 16, 0, kRoom},
        {"100000000", 16, 0x10000000, 8},
        {"-80000000", 16, -2147483647 - 1, kRoom},
        {"-80000001", 16, -0x8000000, 8},
        {"zZ", 36, 1295, kRoom},
        {"1\xE9", 10, 1, 1},
        {"\xC1", 36, 0, 0},
    };
    for (const auto &c : cases) {
        test::Note(c.text, static_cast<uint32_t>(c.radix));
        CheckRead<int>(c.text, c.radix, c.value, c.stop);
    }
    // A character outside ASCII whose low bits look like a letter is none.
    int value = 1;
    const wchar_t fullWidth[] = {0xFF21, 0x0161, 0};
    CHECK_EQUAL(OrvConvertString2Number(value, fullWidth, 2, 36), ORV_S_OK);
    CHECK_EQUAL(value, 0);
    // A length ends the text before its terminator, and nothing behind it is read.
    CHECK_EQUAL(OrvConvertString2Number(value, test::GuardedCopy("12", 2), 2, 10), ORV_S_OK);
    CHECK_EQUAL(value, 12);
    CHECK_EQUAL(OrvConvertString2Number(value, "123", 2, 10), ORV_S_OK);
    CHECK_EQUAL(value, 12);
    const uint32_t nullLengths[] = {0, 5, OrvTerminated};
    for (const uint32_t length : nullLengths) {
        value = 5;
        double real = 5;
        CHECK_EQUAL(OrvConvertString2Number(value, static_cast<const char *>(nullptr), length, 10), ORV_S_OK);
        CHECK_EQUAL(OrvConvertString2Double(real, static_cast<const wchar_t *>(nullptr), length), ORV_S_OK);
        CHECK(value == 0 && real == 0);
    }
    const int badRadixes[] = {-1, 1, 37};
    for (const int radix : badRadixes) {
        value = 5;
        CHECK_EQUAL(OrvConvertString2Number(value, "1", 1, radix), ORV_E_INVALID_ARGUMENT);
        CHECK_EQUAL(value, 5);
    }
}

TEST_CASE(BadTargetsAreRefused)
{
    wchar_t *const small = test::GuardedArray<wchar_t>(3);
    unsigned int written = 99;
    CHECK_EQUAL(OrvConvertNumber2String(small, 3, -12345, 10, &written), ORV_E_BUFFER_TOO_SMALL);
    CHECK_EQUAL(written, 3u);
    CHECK(small[0] == L'-' && small[1] == L'1' && small[2] == L'2');
    CHECK_EQUAL(OrvConvertNumber2String(small, 2, 12345, 36), ORV_E_BUFFER_TOO_SMALL);
    CHECK_EQUAL(OrvConvertNumber2String(static_cast<char *>(nullptr), 5, 1, 10), ORV_E_INVALID_ARGUMENT);
    char untouched[] = "u";
    CHECK_EQUAL(OrvConvertSize2String(untouched, 2, 1, 37), ORV_E_INVALID_ARGUMENT);
    CHECK_TEXT(untouched, "u");
}

TEST_CASE(DoublesAreExactAndRound)
{
    struct {
        double value;
        int digits;
        const char *expected;
    } const cases[] = {
        {0, 3, "0.00e+00"},
        {-0.0, 1, "-0e+00"},
        {0.1, 55, "1.000000000000000055511151231257827021181583404541015625e-01"},
        {2.5, 1, "2e+00"},
        {9.5, 1, "1e+01"},
        {1e23, 17, "9.9999999999999992e+22"},
        {4.9406564584124654e-324, 3, "4.94e-324"},
        {1.7976931348623157e308, 17, "1.7976931348623157e+308"},
        {123456, 0, "1.234560e+05"},
        {__builtin_inf(), 5, "inf"},
        {-__builtin_inf(), 5, "-inf"},
    };
    for (const auto &c : cases) {
        test::Note(c.expected, static_cast<uint32_t>(c.digits));
        char text[kRoom];
        unsigned int written = 0;
        CHECK_EQUAL(OrvConvertDouble2String(text, kRoom, c.value, c.digits, &written), ORV_S_OK);
        CHECK_TEXT(text, c.expected);
        wchar_t *const wide = test::GuardedArray<wchar_t>(written + 1);
        CHECK_EQUAL(OrvConvertDouble2String(wide, written + 1, c.value, c.digits), ORV_S_OK);
        CHECK_TEXT(wide, Wide(c.expected).units);
        CHECK_EQUAL(OrvConvertDouble2String(text, written, c.value, c.digits), ORV_E_BUFFER_TOO_SMALL);
    }
}

TEST_CASE(DoublesAreReadToTheNearest)
{
    struct {
        const char *text;
        double value;
        uint32_t stop;
    } const cases[] = {
        {"", 0, kRoom},
        {"-2.5e3x", -2500, 6},
        {"0x10", 0, 1},
        {"-", 0, 0},
        {"+1.5", 1.5, kRoom},
        {"-.5e-1", -0.05, kRoom},
        {"1e+", 1, 1},
        {"0.000000000000000000000000000000000000000000000001e48", 1, kRoom},
        {"0e99999999999", 0, kRoom},
        {"1e00000000000000000000000001", 10, kRoom},
        {"1e99999999999999999999", __builtin_inf(), kRoom},
        {"1e-99999999999999999999", 0, kRoom},
        {"2.4703282292062327e-324", 0, kRoom}, // half of the smallest double
        {"2.4703282292062328e-324", 4.9406564584124654e-324, kRoom},
        {"1.7976931348623159e308", __builtin_inf(), kRoom},
        {"inf", 0, 0},
        {"9007199254740993", 9007199254740992, kRoom},
        {"10000000000000005121", 10000000000000006144.0, kRoom},
        {"9007199254740993.0000000000000000000000000000000000000000001", 9007199254740994, kRoom},
        {"-1e-400", -0.0, kRoom},
        {"2.2250738585072011e-308", 2.2250738585072011e-308, kRoom},
        {"179769313486231580793728971405301e276", 1.7976931348623157e308, kRoom},
    };
    for (const auto &c : cases) {
        test::Note(c.text, 0);
        const bool whole = c.stop == kRoom;
        const Wide wide(c.text);
        double value = 77;
        const wchar_t *end = wide.units;
        CHECK_EQUAL(OrvConvertString2Double(value, wide.units, OrvTerminated, &end),
                    whole ? ORV_S_OK : ORV_E_INVALID_ARGUMENT);
        CHECK(__builtin_memcmp(&value, &c.value, sizeof value) == 0);
        CHECK_EQUAL(end, whole ? nullptr : wide.units + c.stop);
        value = 77;
        CHECK_EQUAL(OrvConvertString2Double(value, test::Ascii<char>(c.text).units, OrvTerminated), ORV_S_OK);
        CHECK(__builtin_memcmp(&value, &c.value, sizeof value) == 0);
    }
    double value = 77;
    CHECK_EQUAL(OrvConvertString2Double(value, "1", 1, nullptr, static_cast<OrvString2DoubleMode>(1)),
                ORV_E_INVALID_ARGUMENT);
    CHECK(value == 77);
}

TEST_CASE(ModfSplitsEveryKind)
{
    struct {
        double value;
        double integral;
        double fraction;
    } const cases[] = {
        {3.75, 3, 0.75},
        {-3.75, -3, -0.75},
        {0.25, 0, 0.25},
        {-5, -5, -0.0},
        {-0.0, -0.0, -0.0},
        {2251799813685248.5, 2251799813685248, 0.5},
        {9007199254740992, 9007199254740992, 0},
        {4.9e-324, 0, 4.9e-324},
        {__builtin_inf(), __builtin_inf(), 0},
        {-__builtin_inf(), -__builtin_inf(), -0.0},
    };
    for (const auto &c : cases) {
        double integral = 77;
        const double fraction = OrvModf(c.value, integral);
        CHECK(__builtin_memcmp(&integral, &c.integral, sizeof integral) == 0);
        CHECK(__builtin_memcmp(&fraction, &c.fraction, sizeof fraction) == 0);
    }
    double integral = 0;
    CHECK(__builtin_isnan(OrvModf(__builtin_nan(""), integral)) && __builtin_isnan(integral));
}

// Any text as a number, in both widths: doubles are read as the host's C library reads them, integers as by a
// simple rule. And any number as text, at every capacity: the text is read as the same number again.

#include "fuzz.h"

#include "orv/runtime/result.h"
#include "orv/text/number.h"

namespace
{

/// A text in both widths, without a terminator and with one.
struct Text {
    uint32_t length;
    ExactArray<char> counted;
    ExactArray<wchar_t> wide;
    ExactArray<char> terminated;

    Text(const uint8_t *bytes, uint32_t count)
        : length(count), counted(reinterpret_cast<const char *>(bytes), count), wide(count),
          terminated(count + 1)
    {
        for (uint32_t i = 0; i < count; i++)
            wide[i] = bytes[i];
        memcpy(terminated, bytes, count);
        terminated[count] = 0;
    }
};

/// The C library reads more than we do: blanks, hexadecimal, infinities and NaNs. Those texts are left out.
bool BothReadAlike(const char *text)
{
    text += *text == '-' || *text == '+';
    if (text[0] == '0' && (text[1] == 'x' || text[1] == 'X'))
        return false;
    return (*text >= '0' && *text <= '9') || *text == '.';
}

void CheckDouble(Text &text)
{
    double value = 1;
    const char *end = nullptr;
    const OrvResult result = OrvConvertString2Double(value, text.terminated, OrvTerminated, &end);
    REQUIRE(result == (end ? ORV_E_INVALID_ARGUMENT : ORV_S_OK));
    double wideValue = 1;
    const wchar_t *wideEnd = nullptr;
    OrvConvertString2Double(wideValue, text.wide, text.length, &wideEnd);
    REQUIRE(memcmp(&value, &wideValue, sizeof value) == 0);
    // A terminator inside the counted text ends the number, but not the text.
    const uint32_t stop =
        end ? static_cast<uint32_t>(end - text.terminated) : static_cast<uint32_t>(strlen(text.terminated));
    REQUIRE(wideEnd == (stop < text.length ? text.wide + stop : nullptr));
    if (!BothReadAlike(text.terminated))
        return;
    char *expectedEnd = nullptr;
    const double expected = strtod(text.terminated, &expectedEnd);
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

/// Digit by digit: a long double holds every 64-bit number.
template <typename V>
void CheckInteger(Text &text, int radix)
{
    constexpr bool kIsSigned = static_cast<V>(-1) < static_cast<V>(1);
    constexpr int kBits = sizeof(V) * 8;
    V value = 1;
    V wideValue = 1;
    const char *end = nullptr;
    const wchar_t *wideEnd = nullptr;
    const OrvResult result = OrvConvertString2Number(value, text.counted, text.length, radix, &end);
    REQUIRE(result == (end ? ORV_E_INVALID_ARGUMENT : ORV_S_OK));
    REQUIRE(OrvConvertString2Number(wideValue, text.wide, text.length, radix, &wideEnd) == result);
    REQUIRE(value == wideValue && (end ? wideEnd - text.wide == end - text.counted : !wideEnd));

    const char *next = text.counted;
    const char *const last = next + text.length;
    const bool negative = next != last && *next == '-';
    next += negative;
    const bool isPrefixed = last - next >= 2 && next[0] == '0' && (next[1] == 'x' || next[1] == 'X');
    if (radix == 16 && isPrefixed)
        next += 2;
    if (radix == 0) {
        radix = isPrefixed && last - next > 2 ? 16 : 10;
        next += radix == 16 ? 2 : 0;
    }
    const long double highBit = __builtin_ldexpl(1, kBits - 1);
    const long double limit = negative                    ? kIsSigned ? highBit : 0
                              : radix == 16 || !kIsSigned ? 2 * highBit - 1
                                                          : highBit - 1;
    uint64_t sum = 0;
    for (; next != last && DigitOf(*next) < static_cast<uint32_t>(radix); next++) {
        const uint32_t digit = DigitOf(*next);
        if (static_cast<long double>(sum) * radix > limit - digit)
            break;
        sum = sum * static_cast<uint32_t>(radix) + digit;
    }
    REQUIRE(value == static_cast<V>(negative ? 0 - sum : sum));
    REQUIRE(end == (next != last ? next : nullptr));
}

/// The sizes are numbers of two of these types.
void CheckSizes(Text &text, int radix)
{
    unsigned int memory = 1;
    unsigned long number = 1;
    REQUIRE(OrvConvertString2Size(memory, text.wide, text.length, radix) ==
            OrvConvertString2Number(number, text.wide, text.length, radix));
    __int64 file = 1;
    __int64 longNumber = 1;
    REQUIRE(OrvConvertString2FileSize(file, text.counted, text.length, radix) ==
            OrvConvertString2Number(longNumber, text.counted, text.length, radix));
    REQUIRE(memory == number && file == longNumber);
}

/// `write` puts the text of a number into an array; `read` says whether a text is that number's.
template <typename T, typename Write, typename Read>
void CheckText(Write write, Read read)
{
    constexpr uint32_t kRoom = 100;
    T text[kRoom];
    unsigned int length = 0;
    REQUIRE(write(text, kRoom, &length) == ORV_S_OK);
    REQUIRE(text[length] == 0 && read(text, length));
    for (uint32_t capacity = 0; capacity <= length + 1; capacity++) {
        ExactArray<T> part(capacity);
        unsigned int written = 0;
        const bool fits = capacity > length;
        REQUIRE(write(part, capacity, &written) == (fits ? ORV_S_OK : ORV_E_BUFFER_TOO_SMALL));
        REQUIRE(written == (fits ? length : capacity));
        REQUIRE(memcmp(part, text, capacity * sizeof(T)) == 0);
    }
}

template <typename T>
void CheckWriting(uint64_t bits, int radix, int digits)
{
    const auto number = static_cast<__int64>(bits);
    CheckText<T>(
        [&](T *text, uint32_t capacity, unsigned int *written) {
            return OrvConvertNumber2String(text, capacity, number, radix, written);
        },
        [&](const T *text, uint32_t length) {
            __int64 back = 0;
            return OrvConvertString2Number(back, text, length, radix) == ORV_S_OK && back == number;
        });
    double real = 0;
    memcpy(&real, &bits, sizeof real);
    if (!__builtin_isfinite(real))
        return;
    CheckText<T>(
        [&](T *text, uint32_t capacity, unsigned int *written) {
            return OrvConvertDouble2String(text, capacity, real, digits, written);
        },
        [&](const T *text, uint32_t length) {
            double back = 0;
            OrvConvertString2Double(back, text, length);
            return memcmp(&back, &real, sizeof real) == 0;
        });
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    if (size == 0)
        return 0;
    const int radix = data[0] % 36 + (data[0] % 36 ? 1 : 0); // 0, or 2 to 36
    Text text(data + 1, static_cast<uint32_t>(size - 1));
    CheckDouble(text);
    CheckInteger<signed char>(text, radix);
    CheckInteger<unsigned char>(text, radix);
    CheckInteger<short>(text, radix);
    CheckInteger<unsigned short>(text, radix);
    CheckInteger<int>(text, radix);
    CheckInteger<unsigned long>(text, radix);
    CheckInteger<__int64>(text, radix);
    CheckInteger<unsigned __int64>(text, radix);
    CheckSizes(text, radix);
    if (size < 9)
        return 0;
    uint64_t bits = 0;
    memcpy(&bits, data + 1, sizeof bits);
    CheckWriting<char>(bits, radix ? radix : 10, 17 + data[0] % 20);
    CheckWriting<wchar_t>(bits, radix ? radix : 10, 17);
    return 0;
}

// The digits of an integer in any radix from 2 to 36, for the format engine and the number conversions.

#pragma once

#include "text/divide.h"

#include <stdint.h>

namespace detail
{

/// Room for every 64-bit value in every radix.
constexpr uint32_t kMostIntegerDigits = 64;

struct DigitPairs {
    char digits[200];

    constexpr DigitPairs() : digits{}
    {
        for (uint32_t i = 0; i < 100; i++) {
            digits[2 * i] = static_cast<char>('0' + i / 10);
            digits[2 * i + 1] = static_cast<char>('0' + i % 10);
        }
    }
};

inline constexpr DigitPairs kDigitPairs;

/// Writes at least `least` decimal digits backwards from `end`. Returns the first digit.
template <typename T>
T *WriteDecimal(T *end, uint32_t value, uint32_t least)
{
    T *const limit = end - least;
    while (value >= 100) {
        const uint32_t pair = value % 100 * 2;
        value /= 100;
        *--end = static_cast<T>(kDigitPairs.digits[pair + 1]);
        *--end = static_cast<T>(kDigitPairs.digits[pair]);
    }
    if (value >= 10) {
        *--end = static_cast<T>(kDigitPairs.digits[value * 2 + 1]);
        *--end = static_cast<T>(kDigitPairs.digits[value * 2]);
    } else if (value) {
        *--end = static_cast<T>('0' + value);
    }
    while (end > limit)
        *--end = static_cast<T>('0');
    return end;
}

/// Writes the digits of `value` backwards from `end`, before which there is room for kMostIntegerDigits; no
/// digit for 0. Returns the first digit.
template <typename T>
T *WriteDigits(T *end, uint64_t value, uint32_t radix, bool upperCase)
{
    if (radix == 10) {
        // Nine digits at a time, so that at most two 64-bit divisions are needed.
        constexpr uint32_t kNineDigits = 1000000000;
        while (value > UINT32_MAX)
            end = WriteDecimal(end, DivideInPlace(value, kNineDigits), 9);
        return WriteDecimal(end, static_cast<uint32_t>(value), 0);
    }
    const char letters = static_cast<char>((upperCase ? 'A' : 'a') - 10);
    const auto digit = [letters](uint32_t number) {
        return static_cast<T>(number < 10 ? '0' + number : letters + number);
    };
    if ((radix & (radix - 1)) == 0) {
        const uint32_t shift = static_cast<uint32_t>(__builtin_ctz(radix));
        for (; value > UINT32_MAX; value >>= shift)
            *--end = digit(static_cast<uint32_t>(value) & (radix - 1));
        for (auto low = static_cast<uint32_t>(value); low; low >>= shift)
            *--end = digit(low & (radix - 1));
        return end;
    }
    while (value > UINT32_MAX)
        *--end = digit(DivideInPlace(value, radix));
    for (auto low = static_cast<uint32_t>(value); low; low /= radix)
        *--end = digit(low % radix);
    return end;
}

} // namespace detail

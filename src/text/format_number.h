// The parts of an integer's text for a directive: sign or radix prefix, leading zeros, digits. The format
// engine writes them one after another.

#pragma once

#include "text/format_directive.h"
#include "text/integer_digits.h"

namespace detail
{

template <typename T>
struct NumberText {
    uint32_t prefixLength = 0;
    uint32_t zeros = 0; // written between prefix and digits
    uint32_t digitCount = 0;
    T prefix[2];
    T storage[kMostIntegerDigits]; // the digits are at its end

    const T *Digits() const { return storage + kMostIntegerDigits - digitCount; }
    void AddPrefix(char character) { prefix[prefixLength++] = static_cast<T>(character); }
};

/// Stores the digits and the number of zeros up to the precision. A value of 0 has no digits of its own; its
/// zero comes from the precision, which is 1 when none is given.
template <typename T>
__declspec(noinline) void WriteMagnitude(NumberText<T> &number, FormatDirective &directive, uint64_t value,
                                         uint32_t radix)
{
    constexpr uint32_t kMostPrecision = 32;
    T *const end = number.storage + kMostIntegerDigits;
    number.digitCount = static_cast<uint32_t>(end - WriteDigits(end, value, radix, directive.upperCase));
    uint32_t precision = directive.precisionGiven ? directive.precision : 1;
    if (precision > kMostPrecision)
        precision = kMostPrecision;
    number.zeros = precision > number.digitCount ? precision - number.digitCount : 0;
    if (directive.precisionGiven)
        directive.zeroPad = false;
}

template <typename T>
__declspec(noinline) NumberText<T> FormatSigned(FormatDirective &directive, int64_t value)
{
    NumberText<T> number;
    if (value < 0)
        number.AddPrefix('-');
    else if (directive.plus)
        number.AddPrefix('+');
    else if (directive.space)
        number.AddPrefix(' ');
    const auto bits = static_cast<uint64_t>(value);
    WriteMagnitude(number, directive, value < 0 ? 0 - bits : bits, 10);
    return number;
}

template <typename T>
__declspec(noinline) NumberText<T> FormatUnsigned(FormatDirective &directive, uint64_t value)
{
    NumberText<T> number;
    switch (directive.conversion) {
    case 'u':
        WriteMagnitude(number, directive, value, 10);
        break;
    case 'o':
        WriteMagnitude(number, directive, value, 8);
        if (directive.alternate && number.zeros == 0)
            number.zeros = 1;
        break;
    default:
        WriteMagnitude(number, directive, value, 16);
        if (directive.alternate && value) {
            number.AddPrefix('0');
            number.AddPrefix(directive.upperCase ? 'X' : 'x');
        }
        break;
    }
    return number;
}

/// A pointer is padded with zeros even when a precision is given.
template <typename T>
__declspec(noinline) NumberText<T> FormatPointer(FormatDirective &directive, uint32_t value)
{
    NumberText<T> number = FormatUnsigned<T>(directive, value);
    directive.zeroPad = true;
    return number;
}

} // namespace detail

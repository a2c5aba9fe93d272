// Arranges the digits of a double as %e, %f and %g require.

#include "text/format_float.h"

namespace detail
{

namespace
{

constexpr uint32_t kDefaultPrecision = 6;

} // namespace

FloatText::FloatText(const FormatDirective &directive, double value)
{
    const DoubleParts parts(value);
    sign = parts.negative ? '-' : directive.plus ? '+' : directive.space ? ' ' : '\0';
    isNumber = parts.IsFinite();
    const uint32_t precision = directive.precisionGiven ? directive.precision : kDefaultPrecision;
    if (parts.IsNan()) {
        Add(directive.upperCase ? "NAN" : "nan", 3);
    } else if (!isNumber) {
        Add(directive.upperCase ? "INF" : "inf", 3);
    } else if (directive.conversion == 'f') {
        RoundToFractionDigits(parts, precision, decimal);
        AddFixed(precision, directive.alternate);
    } else if (directive.conversion == 'g' || directive.conversion == 'G') {
        AddGeneral(parts, precision, directive);
    } else {
        RoundToSignificantDigits(parts, precision == UINT32_MAX ? precision : precision + 1, decimal);
        AddExponential(precision, directive.alternate, directive.upperCase);
    }
}

void FloatText::Add(const char *text, uint32_t count)
{
    if (count == 0)
        return;
    pieces[pieceCount++] = {text, count};
    length += count;
}

/// Adds `count` digits of the decimal from the index `first` on. Digits that are not stored are zeros.
void FloatText::AddDigits(uint32_t first, uint32_t count)
{
    const uint32_t stored = first < decimal.count ? decimal.count - first : 0;
    const uint32_t taken = count < stored ? count : stored;
    Add(decimal.digits + first, taken);
    Add(nullptr, count - taken);
}

void FloatText::AddPoint(uint32_t precision, bool alternate)
{
    Add(".", precision || alternate ? 1 : 0);
}

void FloatText::AddFixed(uint32_t precision, bool alternate)
{
    if (decimal.pointPosition > 0) {
        const auto before = static_cast<uint32_t>(decimal.pointPosition);
        AddDigits(0, before);
        AddPoint(precision, alternate);
        AddDigits(before, precision);
        return;
    }
    const auto gap = static_cast<uint32_t>(-decimal.pointPosition);
    const uint32_t leading = gap < precision ? gap : precision;
    Add("0", 1);
    AddPoint(precision, alternate);
    Add(nullptr, leading);
    AddDigits(0, precision - leading);
}

void FloatText::AddExponential(uint32_t precision, bool alternate, bool upperCase)
{
    AddDigits(0, 1);
    AddPoint(precision, alternate);
    AddDigits(1, precision);
    AddExponent(decimal.pointPosition - 1, upperCase);
}

void FloatText::AddExponent(int value, bool upperCase)
{
    uint32_t count = 0;
    exponent[count++] = upperCase ? 'E' : 'e';
    exponent[count++] = value < 0 ? '-' : '+';
    const auto magnitude = static_cast<uint32_t>(value < 0 ? -value : value);
    if (magnitude >= 100)
        exponent[count++] = static_cast<char>('0' + magnitude / 100);
    exponent[count++] = static_cast<char>('0' + magnitude / 10 % 10);
    exponent[count++] = static_cast<char>('0' + magnitude % 10);
    Add(exponent, count);
}

/// Adds the text for %g. The exponent of the rounded value decides between the two forms. Trailing zeros are
/// removed unless the directive asks for them.
void FloatText::AddGeneral(const DoubleParts &parts, uint32_t precision, const FormatDirective &directive)
{
    if (precision == 0)
        precision = 1;
    RoundToSignificantDigits(parts, precision, decimal);
    const int rounded = decimal.pointPosition - 1;
    const bool fixed = rounded >= -4 && static_cast<int64_t>(rounded) < precision;
    if (!directive.alternate && precision > decimal.count)
        precision = decimal.count ? decimal.count : 1; // the stored digits have no trailing zeros
    if (!fixed)
        return AddExponential(precision - 1, directive.alternate, directive.upperCase);
    const int64_t behindPoint = static_cast<int64_t>(precision) - 1 - rounded;
    AddFixed(behindPoint > 0 ? static_cast<uint32_t>(behindPoint) : 0, directive.alternate);
}

} // namespace detail

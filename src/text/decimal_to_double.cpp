// Decimal text to double, correctly rounded for any length of input.
//
// One pass over the text reads the first 19 digits and the exponent. Then one of three methods is used, each
// rarer than the one before:
// - If the mantissa and the power of ten are both exact doubles, one multiplication or division.
// - Else a multiplication by the leading bits of the power. It detects when its error could matter.
// - In that case the whole text, as a big number, is compared with the point half-way between two
//   neighbouring doubles.

#include "text/decimal_to_double.h"

#include "text/big_number.h"
#include "text/double_parts.h"
#include "text/powers_of_five.h"

namespace detail
{

namespace
{

constexpr uint32_t kMostFastDigits = 19;   // 10^19 < 2^64
constexpr uint32_t kMostExactDigits = 770; // more digits than any half-way point has
constexpr uint64_t kInfinityBits = uint64_t{kLargestBiasedExponent} << kMantissaBits;
constexpr uint64_t kLargestExactInteger = uint64_t{1} << (kMantissaBits + 1);

/// The value is digits * 10^exponent, or slightly more when `truncated`.
template <typename T>
struct ParsedDecimal {
    uint64_t digits = 0;
    int32_t exponent = 0;
    bool truncated = false;
    const T *firstDigit; // the first significant digit
    const T *digitsEnd;  // after the last digit; the point may be between the two
};

bool IsDigit(uint32_t character)
{
    return character - '0' < 10;
}

/// Adds to an exponent and keeps the sum within the range in which its value still matters.
int32_t AddClamped(int32_t exponent, int64_t change)
{
    constexpr int64_t kMost = 0x40000000;
    const int64_t sum = exponent + change;
    return static_cast<int32_t>(sum > kMost ? kMost : sum < -kMost ? -kMost : sum);
}

/// Adds the decimal exponent after the digits if it is well formed, and returns its end; otherwise returns
/// `next`.
template <typename T>
const T *ParseExponent(const T *next, const T *last, int32_t &exponent)
{
    if (next == last || (*next | 0x20) != 'e')
        return next;
    const T *digit = next + 1;
    const bool negative = digit != last && *digit == '-';
    if (digit != last && (*digit == '-' || *digit == '+'))
        digit++;
    if (digit == last || !IsDigit(static_cast<uint32_t>(*digit)))
        return next;
    int32_t value = 0;
    for (; digit != last && IsDigit(static_cast<uint32_t>(*digit)); digit++)
        value = value < 100000000 ? value * 10 + static_cast<int32_t>(*digit - '0') : value;
    exponent = AddClamped(exponent, negative ? -value : value);
    return digit;
}

/// Returns the end of the number, or `next` when there is no digit.
template <typename T>
const T *ParseParts(const T *next, const T *last, ParsedDecimal<T> &decimal)
{
    const T *const start = next;
    uint32_t significant = 0;
    bool anyDigit = false;
    int64_t behindPoint = 0;
    int64_t dropped = 0;
    bool afterPoint = false;
    decimal.firstDigit = nullptr;
    for (; next != last; next++) {
        if (*next == '.' && !afterPoint) {
            afterPoint = true;
            continue;
        }
        const uint32_t digit = static_cast<uint32_t>(*next) - '0';
        if (digit >= 10)
            break;
        anyDigit = true;
        behindPoint += afterPoint;
        if (significant == 0 && digit == 0)
            continue;
        if (significant++ == 0)
            decimal.firstDigit = next;
        if (significant <= kMostFastDigits) {
            decimal.digits = decimal.digits * 10 + digit;
        } else {
            dropped++;
            decimal.truncated |= digit != 0;
        }
    }
    if (!anyDigit)
        return start;
    decimal.digitsEnd = next;
    decimal.exponent = AddClamped(0, dropped - behindPoint);
    return ParseExponent(next, last, decimal.exponent);
}

constexpr double kExactPowersOfTen[] = {1e0,  1e1,  1e2,  1e3,  1e4,  1e5,  1e6,  1e7,
                                        1e8,  1e9,  1e10, 1e11, 1e12, 1e13, 1e14, 1e15,
                                        1e16, 1e17, 1e18, 1e19, 1e20, 1e21, 1e22};
constexpr int32_t kLargestExactPowerOfTen = 22;

/// digits * 10^exponent, for an exponent in the table of powers: the bits of the double below or equal to it,
/// and what was cut off. When the power is not exact, that double may be one too low; the rest is then
/// unknown.
struct ScaledBits {
    uint64_t lower;
    Remainder rest;
};

ScaledBits Scale(uint64_t digits, int32_t exponent)
{
    const int zeros = LeadingZeros(digits);
    const Product192 product(digits << zeros, PowerOfFiveFor(exponent));
    // The value is product * 2^scale; its leading bit is worth 2^top.
    const int scale = ScaleOfPowerOfFive(exponent) + exponent - zeros;
    const int top = scale + (product.limbs[5] >> 31 ? 191 : 190);
    // The lowest mantissa bit of the result is worth 2^lowest: 52 below the top, but not below that of
    // subnormals.
    const int lowest =
        top - kMantissaBits > kSmallestBinaryExponent ? top - kMantissaBits : kSmallestBinaryExponent;
    const int shift = lowest - scale;
    if (shift > 192) // less than half of the smallest subnormal
        return {0, Remainder::kBelowHalf};
    // The leading bit of the mantissa, which only normal numbers have, carries into the exponent.
    const auto biasedLessOne = static_cast<uint64_t>(lowest - kSmallestBinaryExponent);
    const bool exact = exponent >= 0 && exponent <= kLargestExactPower;
    return {(biasedLessOne << kMantissaBits) + product.ShiftRight(static_cast<uint32_t>(shift)),
            JudgeRemainder(product, static_cast<uint32_t>(shift), exact)};
}

/// Rounds half to even. A mantissa that rounds up to 2^53 carries into the exponent, as it should.
uint64_t RoundKnown(const ScaledBits &scaled)
{
    uint64_t bits = scaled.lower;
    if (scaled.rest == Remainder::kAboveHalf)
        bits++;
    else if (scaled.rest == Remainder::kHalf)
        bits += bits & 1;
    return bits < kInfinityBits ? bits : kInfinityBits;
}

/// Chooses between the doubles with the bits `lower` and `lower` + 1: compares text * 10^exponent with the
/// point half-way between them.
uint64_t CompareWithHalfWay(BigNumber &text, int32_t exponent, uint64_t lower)
{
    // Compares (2 * mantissa + 1) * 2^(binary exponent - 1) with text * 5^exponent * 2^exponent, both
    // multiplied so that they are integers.
    const DoubleParts parts(MakeDouble(false, lower));
    BigNumber half(parts.Mantissa() * 2 + 1);
    const int shift = parts.Exponent() - 1 - exponent;
    if (exponent >= 0)
        text.MultiplyByPowerOfFive(static_cast<uint32_t>(exponent));
    else
        half.MultiplyByPowerOfFive(static_cast<uint32_t>(-exponent));
    if (shift >= 0)
        half.ShiftLeft(static_cast<uint32_t>(shift));
    else
        text.ShiftLeft(static_cast<uint32_t>(-shift));
    const int order = text.Compare(half);
    // Rounding up the largest double gives the bits of infinity, as it must.
    return order > 0 || (order == 0 && (lower & 1)) ? lower + 1 : lower;
}

/// Collects the significant digits of the text, as many as can matter. If any digit after them is not zero, a
/// single digit 1 replaces the rest. Returns the power of ten by which the number is multiplied.
template <typename T>
int32_t CollectDigits(const ParsedDecimal<T> &decimal, BigNumber &text)
{
    uint32_t count = 0;
    bool more = false;
    for (const T *next = decimal.firstDigit; next != decimal.digitsEnd; next++) {
        if (*next == '.')
            continue;
        const auto digit = static_cast<uint32_t>(*next - '0');
        if (count < kMostExactDigits) {
            text.MultiplyAdd(10, digit);
            count++;
        } else {
            more |= digit != 0;
        }
    }
    // The parsed exponent belongs to the first 19 digits, or to all when there are fewer.
    int32_t exponent = decimal.exponent;
    if (count > kMostFastDigits)
        exponent -= static_cast<int32_t>(count - kMostFastDigits);
    if (more) {
        text.MultiplyAdd(10, 1);
        exponent--;
    }
    return exponent;
}

template <typename T>
uint64_t NearestBits(const ParsedDecimal<T> &decimal)
{
    // For a text of more than 19 digits, the value is in [digits, digits + 1) * 10^exponent.
    if (decimal.digits == 0 || decimal.exponent < kSmallestPowerOfFive)
        return 0;
    if (decimal.exponent > kLargestPowerOfFive - 30)
        return kInfinityBits;
    const ScaledBits scaled = Scale(decimal.digits, decimal.exponent);
    if (scaled.rest != Remainder::kUnknown) {
        const uint64_t bits = RoundKnown(scaled);
        if (!decimal.truncated)
            return bits;
        const ScaledBits above = Scale(decimal.digits + 1, decimal.exponent);
        if (above.rest != Remainder::kUnknown && RoundKnown(above) == bits)
            return bits;
    }
    if (scaled.lower >= kInfinityBits)
        return kInfinityBits;
    BigNumber text(0);
    const int32_t exponent = CollectDigits(decimal, text);
    return CompareWithHalfWay(text, exponent, scaled.lower);
}

} // namespace

template <typename T>
const T *ParseDouble(const T *text, uint32_t length, double &value)
{
    const T *const last = text + length;
    const T *next = text;
    const bool negative = next != last && *next == '-';
    if (next != last && (*next == '-' || *next == '+'))
        next++;
    ParsedDecimal<T> decimal;
    const T *const end = ParseParts(next, last, decimal);
    value = 0;
    if (end == next)
        return text;
    if (!decimal.truncated && decimal.digits <= kLargestExactInteger &&
        decimal.exponent >= -kLargestExactPowerOfTen && decimal.exponent <= kLargestExactPowerOfTen) {
        // Both operands are exact, so this single operation rounds correctly.
        const auto number = static_cast<double>(static_cast<int64_t>(decimal.digits));
        value = decimal.exponent < 0 ? number / kExactPowersOfTen[-decimal.exponent]
                                     : number * kExactPowersOfTen[decimal.exponent];
        if (negative)
            value = -value;
        return end;
    }
    value = MakeDouble(negative, NearestBits(decimal));
    return end;
}

template const char *ParseDouble(const char *text, uint32_t length, double &value);
template const wchar_t *ParseDouble(const wchar_t *text, uint32_t length, double &value);

} // namespace detail

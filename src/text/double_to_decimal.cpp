// Doubles to decimal digits.
//
// The fast path multiplies the mantissa by the leading bits of a power of ten, so that the requested digits
// are above the binary point of a 192-bit product. The bits below the point decide the rounding. This works
// for up to 17 digits, unless the bits below are so near to one half that the power's error could change the
// decision; that happens mostly for exact halves.
//
// All other numbers take the exact path. It generates digits from a big number until it has one more than
// requested, and knows whether a part that is not zero is left after them.

#include "text/double_to_decimal.h"

#include "text/divide.h"
#include "text/integer_digits.h"
#include "text/powers_of_five.h"

namespace detail
{

namespace
{

constexpr uint32_t kMostFastDigits = 17;

constexpr uint64_t kPowersOfTen[] = {
    1,
    10,
    100,
    1000,
    10000,
    100000,
    1000000,
    10000000,
    100000000,
    1000000000,
    10000000000,
    100000000000,
    1000000000000,
    10000000000000,
    100000000000000,
    1000000000000000,
    10000000000000000,
    100000000000000000,
};

void TrimZeros(Decimal &decimal)
{
    while (decimal.count && decimal.digits[decimal.count - 1] == '0')
        decimal.count--;
}

/// floor(log10(mantissa * 2^exponent)), or one less.
int EstimateDecimalExponent(uint64_t mantissa, int exponent)
{
    const int log2 = 63 - LeadingZeros(mantissa) + exponent;
    // log10(2) = 0.30102999566...; 315652 / 2^20 is a little less.
    return log2 * 315652 >> 20;
}

enum class Scaled { kDone, kUnknown, kTooLarge };

/// The magnitude times 10^power as an integer, rounded half to even. kUnknown when this path cannot decide
/// the rounding; kTooLarge when the product reaches `limit` before it is rounded.
Scaled ScaleAndRound(uint64_t mantissa, int exponent, int power, uint64_t limit, uint64_t &integer)
{
    if (power < kSmallestPowerOfFive || power > kLargestPowerOfFive)
        return Scaled::kUnknown;
    const int zeros = LeadingZeros(mantissa);
    const Product192 product(mantissa << zeros, PowerOfFiveFor(power));
    // The product's lowest bit is worth 2^scale.
    const int scale = exponent - zeros + power + ScaleOfPowerOfFive(power);
    const int shift = -scale;
    if (shift > 192) { // far below one half
        integer = 0;
        return Scaled::kDone;
    }
    if (shift < 192 - 63) // too large for 64 bits, or for judging the error
        return Scaled::kTooLarge;
    integer = product.ShiftRight(static_cast<uint32_t>(shift));
    if (integer >= limit)
        return Scaled::kTooLarge;
    const bool exact = power >= 0 && power <= kLargestExactPower;
    switch (JudgeRemainder(product, static_cast<uint32_t>(shift), exact)) {
    case Remainder::kUnknown:
        return Scaled::kUnknown;
    case Remainder::kHalf:
        integer += integer & 1;
        break;
    case Remainder::kAboveHalf:
        integer++;
        break;
    case Remainder::kBelowHalf:
        break;
    }
    return Scaled::kDone;
}

/// Stores the digits of an integer as a decimal; its last digit is worth 10^-power.
void StoreInteger(uint64_t integer, int power, Decimal &decimal)
{
    char storage[kMostIntegerDigits];
    char *const end = storage + kMostIntegerDigits;
    const char *const first = WriteDigits(end, integer, 10, false);
    decimal.count = static_cast<uint32_t>(end - first);
    decimal.pointPosition = static_cast<int>(decimal.count) - power;
    for (uint32_t i = 0; i < decimal.count; i++)
        decimal.digits[i] = first[i];
    TrimZeros(decimal);
}

/// An exact magnitude: an integer part and a fraction of `fractionBits` bits, in one little-endian number.
class ExactDigits
{
public:
    ExactDigits(uint64_t mantissa, int exponent)
    {
        // The lowest limb starts a multiple of 32 bits away from the binary point.
        fractionLimbs_ = exponent < 0 ? static_cast<uint32_t>(-exponent + 31) / 32 : 0;
        const uint32_t shift = static_cast<uint32_t>(exponent + static_cast<int>(fractionLimbs_ * 32));
        for (uint32_t &limb : limbs_)
            limb = 0;
        const uint32_t limb = shift / 32;
        const uint32_t bits = shift % 32;
        limbs_[limb] = static_cast<uint32_t>(mantissa << bits);
        limbs_[limb + 1] = static_cast<uint32_t>(mantissa << bits >> 32);
        limbs_[limb + 2] = bits ? static_cast<uint32_t>(mantissa >> (64 - bits)) : 0;
        used_ = limb + 3;
        TrimUsed();
    }

    /// Generates digits from the first significant one on, at least until there are `significant` digits or
    /// `fraction` digits after the point, whichever comes first. True when a part that is not zero is left.
    bool Generate(uint32_t significant, uint32_t fraction, Decimal &decimal)
    {
        WriteIntegerDigits(decimal);
        uint32_t behindPoint = 0;
        while (decimal.count < significant && behindPoint < fraction && HasFraction()) {
            const uint32_t chunk = TakeFractionChunk();
            if (chunk == 0 && decimal.count == 0)
                decimal.pointPosition -= static_cast<int>(Decimal::kDigitsPerChunk);
            else
                AppendChunk(chunk, decimal);
            behindPoint += Decimal::kDigitsPerChunk;
        }
        return HasFraction();
    }

private:
    // 1074 bits of fraction or 1024 bits of integer, and the further limbs that a shift touches.
    static constexpr uint32_t kLimbs = (1074 + 64 + 31) / 32 + 3;
    static constexpr uint32_t kChunkUnit = 1000000000;

    void TrimUsed()
    {
        while (used_ > fractionLimbs_ && limbs_[used_ - 1] == 0)
            used_--;
    }

    bool HasFraction()
    {
        while (lowest_ < fractionLimbs_ && limbs_[lowest_] == 0)
            lowest_++;
        return lowest_ < fractionLimbs_;
    }

    /// Divides the integer part repeatedly, nine digits at a time, from its last digit to its first.
    void WriteIntegerDigits(Decimal &decimal)
    {
        char *const end = decimal.digits + sizeof decimal.digits;
        char *first = end;
        while (used_ > fractionLimbs_) {
            uint32_t remainder = 0;
            for (uint32_t i = used_; i-- > fractionLimbs_;)
                limbs_[i] = DivideWide(remainder, limbs_[i], kChunkUnit, remainder);
            TrimUsed();
            first = WriteDecimal(first, remainder, used_ > fractionLimbs_ ? Decimal::kDigitsPerChunk : 0);
        }
        decimal.count = static_cast<uint32_t>(end - first);
        decimal.pointPosition = static_cast<int>(decimal.count);
        for (uint32_t i = 0; i < decimal.count; i++)
            decimal.digits[i] = first[i];
    }

    /// Multiplies the fraction by 10^9: the part that passes the point is the next nine digits.
    uint32_t TakeFractionChunk()
    {
        uint64_t carry = 0;
        for (uint32_t i = lowest_; i < fractionLimbs_; i++) {
            carry += static_cast<uint64_t>(limbs_[i]) * kChunkUnit;
            limbs_[i] = static_cast<uint32_t>(carry);
            carry >>= 32;
        }
        return static_cast<uint32_t>(carry);
    }

    static void AppendChunk(uint32_t chunk, Decimal &decimal)
    {
        char digits[Decimal::kDigitsPerChunk];
        WriteDecimal(digits + Decimal::kDigitsPerChunk, chunk, Decimal::kDigitsPerChunk);
        uint32_t i = 0;
        if (decimal.count == 0) {
            for (; digits[i] == '0'; i++)
                decimal.pointPosition--;
        }
        for (; i < Decimal::kDigitsPerChunk; i++)
            decimal.digits[decimal.count++] = digits[i];
    }

    uint32_t limbs_[kLimbs];
    uint32_t fractionLimbs_;
    uint32_t lowest_ = 0; // the limbs below this one are zero
    uint32_t used_;
};

/// Keeps the first `keep` digits and rounds half to even. `more`: a part that is not zero follows the digits.
void RoundDigits(Decimal &decimal, uint32_t keep, bool more)
{
    if (keep >= decimal.count) // there are no digits to cut
        return TrimZeros(decimal);
    const char next = decimal.digits[keep];
    bool beyondHalf = next > '5' || (next == '5' && more);
    for (uint32_t i = keep + 1; next == '5' && !beyondHalf && i < decimal.count; i++)
        beyondHalf = decimal.digits[i] != '0';
    const bool half = next == '5' && !beyondHalf;
    const bool lastIsOdd = keep > 0 && (decimal.digits[keep - 1] & 1);
    decimal.count = keep;
    if (!beyondHalf && !(half && lastIsOdd))
        return TrimZeros(decimal);
    while (decimal.count && decimal.digits[decimal.count - 1] == '9')
        decimal.count--;
    if (decimal.count) {
        decimal.digits[decimal.count - 1]++;
        return;
    }
    decimal.digits[0] = '1';
    decimal.count = 1;
    decimal.pointPosition++;
}

void SetZero(Decimal &decimal)
{
    decimal.count = 0;
    decimal.pointPosition = 1;
}

} // namespace

void RoundToSignificantDigits(const DoubleParts &parts, uint32_t significant, Decimal &decimal)
{
    if (parts.IsZero())
        return SetZero(decimal);
    const uint64_t mantissa = parts.Mantissa();
    const int exponent = parts.Exponent();
    if (significant <= kMostFastDigits) {
        const uint64_t limit = kPowersOfTen[significant];
        int power = static_cast<int>(significant) - 1 - EstimateDecimalExponent(mantissa, exponent);
        uint64_t integer = 0;
        Scaled scaled = ScaleAndRound(mantissa, exponent, power, limit, integer);
        if (scaled == Scaled::kTooLarge) // the estimate was one too low
            scaled = ScaleAndRound(mantissa, exponent, --power, limit, integer);
        if (scaled == Scaled::kDone)
            return StoreInteger(integer, power, decimal);
    }
    if (significant > Decimal::kMostDigits)
        significant = Decimal::kMostDigits; // no double has more
    const bool more = ExactDigits(mantissa, exponent).Generate(significant + 1, UINT32_MAX, decimal);
    RoundDigits(decimal, significant, more);
}

void RoundToFractionDigits(const DoubleParts &parts, uint32_t fraction, Decimal &decimal)
{
    if (parts.IsZero())
        return SetZero(decimal);
    const uint64_t mantissa = parts.Mantissa();
    const int exponent = parts.Exponent();
    uint64_t integer = 0;
    if (fraction <= kLargestPowerOfFive &&
        ScaleAndRound(mantissa, exponent, static_cast<int>(fraction), kPowersOfTen[kMostFastDigits],
                      integer) == Scaled::kDone) {
        if (integer == 0)
            return SetZero(decimal);
        return StoreInteger(integer, static_cast<int>(fraction), decimal);
    }
    if (fraction > static_cast<uint32_t>(-kSmallestBinaryExponent))
        fraction = static_cast<uint32_t>(-kSmallestBinaryExponent); // no double has more
    const bool more = ExactDigits(mantissa, exponent).Generate(UINT32_MAX, fraction + 1, decimal);
    // How many digits to keep, up to the last requested place. Below zero, that place is more than one before
    // the first digit.
    const int64_t keep = static_cast<int64_t>(decimal.pointPosition) + fraction;
    if (keep < 0)
        return SetZero(decimal);
    RoundDigits(decimal, keep < decimal.count ? static_cast<uint32_t>(keep) : decimal.count, more);
    if (decimal.count == 0)
        SetZero(decimal);
}

} // namespace detail

// The parts of an IEEE 754 double: sign, exponent and mantissa.

#pragma once

#include <stdint.h>

namespace detail
{

constexpr int kMantissaBits = 52;              // the stored bits
constexpr int kSmallestBinaryExponent = -1074; // of the lowest mantissa bit of a subnormal
constexpr int kLargestBiasedExponent = 0x7FF;

struct DoubleParts {
    bool negative;
    int biasedExponent;
    uint64_t fraction; // the stored mantissa bits

    explicit DoubleParts(double value)
    {
        uint64_t bits = 0;
        __builtin_memcpy(&bits, &value, sizeof bits);
        negative = bits >> 63 != 0;
        biasedExponent = static_cast<int>(bits >> kMantissaBits) & kLargestBiasedExponent;
        fraction = bits & ((uint64_t{1} << kMantissaBits) - 1);
    }

    bool IsFinite() const { return biasedExponent != kLargestBiasedExponent; }
    bool IsNan() const { return !IsFinite() && fraction != 0; }
    bool IsZero() const { return biasedExponent == 0 && fraction == 0; }

    /// The magnitude of a finite value is Mantissa() * 2^Exponent().
    uint64_t Mantissa() const
    {
        return biasedExponent == 0 ? fraction : fraction | uint64_t{1} << kMantissaBits;
    }
    int Exponent() const
    {
        return biasedExponent == 0 ? kSmallestBinaryExponent : biasedExponent - 1 + kSmallestBinaryExponent;
    }
};

/// The double with this sign and these bits of its magnitude.
inline double MakeDouble(bool negative, uint64_t magnitudeBits)
{
    const uint64_t bits = magnitudeBits | static_cast<uint64_t>(negative) << 63;
    double value = 0;
    __builtin_memcpy(&value, &bits, sizeof value);
    return value;
}

/// The number of leading zero bits. The number must not be 0.
inline int LeadingZeros(uint64_t number)
{
    const auto high = static_cast<uint32_t>(number >> 32);
    return high ? __builtin_clz(high) : 32 + __builtin_clz(static_cast<uint32_t>(number));
}

} // namespace detail

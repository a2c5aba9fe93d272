// The leading 128 bits of every power of five that a double can meet, for the conversions between doubles and
// text.
//
// 5^q lies in [c, c + 1) * 2^s where c is the entry, its top bit set, and s the scale below. Between 0 and
// kLargestExactPower the entry is the power itself. A 64-bit number times an entry is then known to 192 bits
// with an error below 2^64, which decides all roundings but a few; the exact big-integer paths decide the
// rest.

#pragma once

#include <stdint.h>

namespace detail
{

constexpr int kSmallestPowerOfFive = -342;
constexpr int kLargestPowerOfFive = 342;
constexpr int kLargestExactPower = 55; // 5^55 < 2^128

struct PowerOfFive {
    uint32_t limbs[4]; // the lowest first
};

const PowerOfFive &PowerOfFiveFor(int exponent);

/// The binary scale s of the entry for an exponent: floor(exponent * log2(5)) - 127, exact for every entry.
constexpr int ScaleOfPowerOfFive(int exponent)
{
    // log2(5) = 2.321928094887362...; 152170 / 65536 = 2.32192993 keeps the floor right up to 5^342.
    return (exponent * 152170 >> 16) - 127;
}

/// A 64-bit number times a power's entry: 192 bits, the lowest limb first.
struct Product192 {
    uint32_t limbs[6];

    Product192(uint64_t number, const PowerOfFive &power)
    {
        const auto low = static_cast<uint32_t>(number);
        const auto high = static_cast<uint32_t>(number >> 32);
        uint64_t carry = 0;
        for (int i = 0; i < 4; i++) {
            carry += static_cast<uint64_t>(low) * power.limbs[i];
            limbs[i] = static_cast<uint32_t>(carry);
            carry >>= 32;
        }
        limbs[4] = static_cast<uint32_t>(carry);
        carry = 0;
        for (int i = 0; i < 4; i++) {
            carry += static_cast<uint64_t>(high) * power.limbs[i] + limbs[i + 1];
            limbs[i + 1] = static_cast<uint32_t>(carry);
            carry >>= 32;
        }
        limbs[5] = static_cast<uint32_t>(carry);
    }

    /// The bits from `shift` upwards, which must fit 64; `shift` may lie beyond the top.
    uint64_t ShiftRight(uint32_t shift) const
    {
        uint64_t bits = 0;
        for (uint32_t i = 0; i < 3; i++) {
            const uint32_t limb = shift / 32 + i;
            const uint64_t value = limb < 6 ? limbs[limb] : 0;
            const int place = static_cast<int>(i * 32) - static_cast<int>(shift % 32);
            if (place < 0)
                bits |= value >> -place;
            else if (place < 64)
                bits |= value << place;
        }
        return bits;
    }
};

/// How what was cut off at a bit of a product compares with half of that bit.
enum class Remainder { kBelowHalf, kHalf, kAboveHalf, kUnknown };

/// Judges the bits of `product` below `shift`, knowing that the true number is the product itself, when
/// `exact`, or lies less than 2^64 above it. `shift` is larger than 64.
Remainder JudgeRemainder(const Product192 &product, uint32_t shift, bool exact);

} // namespace detail

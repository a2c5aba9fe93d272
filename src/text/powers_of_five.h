// The leading 128 bits of every power of five that a double can meet, for the conversions between doubles and
// text.
//
// 5^q is in [c, c + 1) * 2^s, where c is the entry, with its top bit set, and s the scale below. From 0 to
// kLargestExactPower the entry is exact. So the product of a 64-bit number and an entry is known to 192 bits
// with an error below 2^64. That decides all roundings except a few; the exact big-integer paths decide
// those.

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

/// The product of a 64-bit number and a power's entry: 192 bits, the lowest limb first.
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

    /// The bits from `shift` upwards, which must fit into 64 bits; `shift` may be above the highest bit.
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

/// Compares the part of a product that was cut off below a bit with half of that bit.
enum class Remainder { kBelowHalf, kHalf, kAboveHalf, kUnknown };

/// Judges the bits of `product` below `shift`. The true number is the product itself if `exact`; otherwise it
/// may be above it by less than 2^64. `shift` must be larger than 64.
Remainder JudgeRemainder(const Product192 &product, uint32_t shift, bool exact);

} // namespace detail

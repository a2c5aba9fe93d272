// The table of powers of five, computed by the compiler, and the judgement of what a product's rounding cuts
// off.

#include "text/powers_of_five.h"

namespace detail
{

namespace
{

/// A number of 1280 bits, the lowest limb first. That is enough for 5^342 with 128 further bits, and for the
/// exact leading 128 bits of 2^1279 / 5^342: repeated floored divisions by five give the same as one floored
/// division by their product.
struct Wide {
    static constexpr uint32_t kLimbs = 40;
    uint32_t limbs[kLimbs];

    constexpr void MultiplyByFive()
    {
        uint64_t carry = 0;
        for (uint32_t &limb : limbs) {
            carry += static_cast<uint64_t>(limb) * 5;
            limb = static_cast<uint32_t>(carry);
            carry >>= 32;
        }
    }

    constexpr void DivideByFive()
    {
        uint64_t remainder = 0;
        for (uint32_t i = kLimbs; i-- > 0;) {
            remainder = remainder << 32 | limbs[i];
            limbs[i] = static_cast<uint32_t>(remainder / 5);
            remainder %= 5;
        }
    }

    /// The 128 bits that start with the highest set bit.
    constexpr PowerOfFive Leading() const
    {
        uint32_t top = kLimbs - 1;
        while (limbs[top] == 0)
            top--;
        uint32_t zeros = 0;
        while ((limbs[top] << zeros & 0x80000000) == 0)
            zeros++;
        PowerOfFive leading = {};
        for (uint32_t i = 0; i < 4; i++) {
            const uint32_t limb = top >= i ? limbs[top - i] : 0;
            const uint32_t next = top >= i + 1 ? limbs[top - i - 1] : 0;
            leading.limbs[3 - i] = zeros ? limb << zeros | next >> (32 - zeros) : limb;
        }
        return leading;
    }
};

struct Table {
    PowerOfFive powers[kLargestPowerOfFive - kSmallestPowerOfFive + 1];
};

constexpr Table MakeTable()
{
    Table table = {};
    Wide power = {};
    power.limbs[0] = 1;
    for (int exponent = 0; exponent <= kLargestPowerOfFive; exponent++) {
        table.powers[exponent - kSmallestPowerOfFive] = power.Leading();
        power.MultiplyByFive();
    }
    Wide reciprocal = {};
    reciprocal.limbs[Wide::kLimbs - 1] = 0x80000000;
    for (int exponent = -1; exponent >= kSmallestPowerOfFive; exponent--) {
        reciprocal.DivideByFive();
        table.powers[exponent - kSmallestPowerOfFive] = reciprocal.Leading();
    }
    return table;
}

constexpr Table kTable = MakeTable();

} // namespace

const PowerOfFive &PowerOfFiveFor(int exponent)
{
    return kTable.powers[exponent - kSmallestPowerOfFive];
}

Remainder JudgeRemainder(const Product192 &product, uint32_t shift, bool exact)
{
    constexpr uint32_t kErrorLimb = 2; // the error is within the limbs below this one
    const uint32_t halfBit = shift - 1;
    bool lowZero = true;
    bool highOnes = true;
    for (uint32_t i = 0; i * 32 < halfBit; i++) {
        const uint32_t bits = halfBit - i * 32;
        const uint32_t mask = bits >= 32 ? UINT32_MAX : (1u << bits) - 1;
        const uint32_t limb = product.limbs[i] & mask;
        lowZero &= limb == 0;
        highOnes &= i < kErrorLimb || limb == mask;
    }
    if (product.limbs[halfBit / 32] >> halfBit % 32 & 1) {
        if (!lowZero)
            return Remainder::kAboveHalf;
        return exact ? Remainder::kHalf : Remainder::kUnknown;
    }
    return highOnes && !exact ? Remainder::kUnknown : Remainder::kBelowHalf;
}

} // namespace detail

// Unsigned numbers of a fixed capacity, for the comparisons that rounding a decimal text may come down to.

#pragma once

#include <stdint.h>

namespace detail
{

/// The capacity holds every number that parsing meets: 771 digits, or half-way mantissas times 5^1112, with
/// the binary shift that goes with each.
class BigNumber
{
public:
    explicit BigNumber(uint64_t value);

    void MultiplyAdd(uint32_t factor, uint32_t addend);
    void MultiplyByPowerOfFive(uint32_t exponent);
    void ShiftLeft(uint32_t bits);

    /// Below zero, zero or above it, as this number is smaller, equal or larger.
    int Compare(const BigNumber &other) const;

private:
    static constexpr uint32_t kLimbs = 160;

    void Push(uint32_t limb) { limbs_[count_++] = limb; }

    uint32_t count_ = 0;
    uint32_t limbs_[kLimbs]; // the lowest first; the highest that counts is not 0
};

} // namespace detail

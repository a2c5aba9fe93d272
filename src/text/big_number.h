// Big unsigned numbers of a fixed capacity, for the exact comparisons that parsing a decimal text may need.

#pragma once

#include <stdint.h>

namespace detail
{

/// The capacity is enough for every number in parsing: 771 digits, or a half-way mantissa times 5^1112, each
/// with the binary shift that it needs.
class BigNumber
{
public:
    explicit BigNumber(uint64_t value);

    void MultiplyAdd(uint32_t factor, uint32_t addend);
    void MultiplyByPowerOfFive(uint32_t exponent);
    void ShiftLeft(uint32_t bits);

    /// Returns a number below, equal to or above zero when this number is smaller, equal or larger.
    int Compare(const BigNumber &other) const;

private:
    static constexpr uint32_t kLimbs = 160;

    void Push(uint32_t limb) { limbs_[count_++] = limb; }

    uint32_t count_ = 0;
    uint32_t limbs_[kLimbs]; // the lowest first; the highest one in use is not 0
};

} // namespace detail

// Arithmetic on big numbers: multiplication by small numbers and powers of five, shifts, comparison.

#include "text/big_number.h"

namespace detail
{

BigNumber::BigNumber(uint64_t value)
{
    for (; value; value >>= 32)
        Push(static_cast<uint32_t>(value));
}

void BigNumber::MultiplyAdd(uint32_t factor, uint32_t addend)
{
    uint64_t carry = addend;
    for (uint32_t i = 0; i < count_; i++) {
        carry += static_cast<uint64_t>(limbs_[i]) * factor;
        limbs_[i] = static_cast<uint32_t>(carry);
        carry >>= 32;
    }
    if (carry)
        Push(static_cast<uint32_t>(carry));
}

void BigNumber::MultiplyByPowerOfFive(uint32_t exponent)
{
    constexpr uint32_t kStep = 13;
    constexpr uint32_t kFiveToStep = 1220703125;
    for (; exponent >= kStep; exponent -= kStep)
        MultiplyAdd(kFiveToStep, 0);
    uint32_t rest = 1;
    while (exponent--)
        rest *= 5;
    MultiplyAdd(rest, 0);
}

void BigNumber::ShiftLeft(uint32_t bits)
{
    const uint32_t whole = bits / 32;
    const uint32_t part = bits % 32;
    MultiplyAdd(1u << part, 0);
    if (whole == 0 || count_ == 0)
        return;
    for (uint32_t i = count_; i-- > 0;)
        limbs_[i + whole] = limbs_[i];
    for (uint32_t i = 0; i < whole; i++)
        limbs_[i] = 0;
    count_ += whole;
}

int BigNumber::Compare(const BigNumber &other) const
{
    if (count_ != other.count_)
        return count_ < other.count_ ? -1 : 1;
    for (uint32_t i = count_; i-- > 0;) {
        if (limbs_[i] != other.limbs_[i])
            return limbs_[i] < other.limbs_[i] ? -1 : 1;
    }
    return 0;
}

} // namespace detail

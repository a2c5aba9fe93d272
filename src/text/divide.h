// Division of 64 bits by 32 with the processor's instruction. For such a division the compiler calls a
// function, because the quotient might not fit into 32 bits; here it always fits.

#pragma once

#include <stdint.h>

namespace detail
{

/// high:low divided by `divisor`, which must be larger than `high`.
inline uint32_t DivideWide(uint32_t high, uint32_t low, uint32_t divisor, uint32_t &remainder)
{
    uint32_t quotient = 0;
    __asm__("divl %4" : "=a"(quotient), "=d"(remainder) : "a"(low), "d"(high), "r"(divisor));
    return quotient;
}

/// Divides in place and returns the remainder.
inline uint32_t DivideInPlace(uint64_t &value, uint32_t divisor)
{
    const auto high = static_cast<uint32_t>(value >> 32);
    uint32_t remainder = 0;
    const uint32_t low = DivideWide(high % divisor, static_cast<uint32_t>(value), divisor, remainder);
    value = static_cast<uint64_t>(high / divisor) << 32 | low;
    return remainder;
}

} // namespace detail

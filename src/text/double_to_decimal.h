// The decimal digits of a double, correctly rounded at any digit.

#pragma once

#include "text/double_parts.h"

namespace detail
{

/// A magnitude in decimal: 0.d1 d2 d3 ... times 10^pointPosition. Digits that are not stored are zeros.
/// Without any digit it is zero.
struct Decimal {
    // No double has more significant digits than this.
    static constexpr uint32_t kMostDigits = 767;
    static constexpr uint32_t kDigitsPerChunk = 9;

    uint32_t count;
    int pointPosition;
    char digits[kMostDigits + 2 * kDigitsPerChunk];
};

/// Rounds a finite magnitude to `significant` digits, half to even. Zero gives no digits and position 1, so
/// that it is written with a 0 before the point.
void RoundToSignificantDigits(const DoubleParts &parts, uint32_t significant, Decimal &decimal);

/// Rounds a finite magnitude to `fraction` digits after the point, half to even. A result of zero has no
/// digits.
void RoundToFractionDigits(const DoubleParts &parts, uint32_t fraction, Decimal &decimal);

} // namespace detail

// Decimal text to the nearest double.

#pragma once

#include "orv/base.h"

namespace detail
{

/// Parses [-|+] digits [. digits] [e|E [-|+] digits] at the start of `length` characters, with at least one
/// digit before or after the point. The value is the double nearest to the text, half to even, for any number
/// of digits. A number that is too large gives infinity, one that is too small zero. Returns the end of the
/// number; or `text` when there is no number, and `value` is then 0.
template <typename T>
const T *ParseDouble(const T *text, uint32_t length, double &value);

} // namespace detail

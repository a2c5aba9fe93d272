// Decimal text to the nearest double.

#pragma once

#include "orv/base.h"

namespace detail
{

/// Parses [-|+] digits [. digits] [e|E [-|+] digits] at the start of `length` characters, with at least one
/// digit before or behind the point. The value is the double nearest to the text, half to even, for any
/// number of digits; too large gives infinity, too small zero. Returns the first character that does not
/// belong to the number, or `text` when there is none; `value` is then 0.
template <typename T>
const T *ParseDouble(const T *text, uint32_t length, double &value);

} // namespace detail

// Resolves the lengths that callers pass, and computes the sizes that are reported to them.

#pragma once

#include "orv/text/string.h"

namespace detail
{

/// The length of a text passed with `count`, which may be OrvTerminated. A null text is empty, whatever the
/// count.
template <typename T>
uint32_t ResolveLength(const T *text, uint32_t count)
{
    if (!text)
        return 0;
    return count == OrvTerminated ? OrvGetStringSizeInElements(text) : count;
}

/// The same when only lengths up to `limit` matter: for a longer text the result may be `limit`.
template <typename T>
uint32_t ResolveLengthUpTo(const T *text, uint32_t count, uint32_t limit)
{
    if (!text)
        return 0;
    return count == OrvTerminated ? OrvGetStringSizeInElements(text, limit) : count;
}

/// The capacity that `length` characters and a terminator need, limited to 32 bits.
inline uint32_t SizeWithTerminator(uint64_t length)
{
    return length < UINT32_MAX ? static_cast<uint32_t>(length) + 1 : UINT32_MAX;
}

} // namespace detail

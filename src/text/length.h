// Lengths as callers give them, and sizes as they are reported to them.

#pragma once

#include "orv/text/string.h"

namespace detail
{

/// The length of a text that was given with `count`. A null text is empty, whatever its count.
template <typename T>
uint32_t ResolveLength(const T *text, uint32_t count)
{
    if (!text)
        return 0;
    return count == OrvTerminated ? OrvGetStringSizeInElements(text) : count;
}

/// The same where only a length up to `limit` matters: a longer text may be given as `limit`.
template <typename T>
uint32_t ResolveLengthUpTo(const T *text, uint32_t count, uint32_t limit)
{
    if (!text)
        return 0;
    return count == OrvTerminated ? OrvGetStringSizeInElements(text, limit) : count;
}

/// The capacity that `length` characters and a terminator need; at most what can be said in 32 bits.
inline uint32_t SizeWithTerminator(uint64_t length)
{
    return length < UINT32_MAX ? static_cast<uint32_t>(length) + 1 : UINT32_MAX;
}

} // namespace detail

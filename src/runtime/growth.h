// How arrays grow: to twice their capacity, so that adding element by element copies each of them a bounded
// number of times.

#pragma once

#include <stdint.h>

namespace detail
{

/// The next capacity of an array with room for `capacity` elements that needs room for `needed`, which is
/// more. The result is at least `first`, so that small arrays do not grow again and again, and at most
/// `most`, which `needed` must not exceed.
constexpr uint32_t GrownCapacity(uint32_t capacity, uint32_t needed, uint32_t first,
                                 uint32_t most = UINT32_MAX)
{
    uint32_t grown = capacity > most / 2 ? most : capacity * 2;
    if (grown < first)
        grown = first;
    return grown < needed ? needed : grown;
}

} // namespace detail

// Substring search whose time is linear in the sum of both lengths, for any content, and that needs no
// memory: the two-way algorithm of Crochemore and Perrin (1991).
//
// The needle is cut into two parts, so that the second part is its greatest suffix. The second part is
// compared first, forwards. A difference in it moves the needle on by the number of units compared. If there
// is none, the first part is compared, backwards. A difference in it moves the needle on by its period; if
// the needle is periodic, the overlap with the previous place is known to match and is not compared again.
//
// It serves both directions: a text read from its end is another text, whose first match is the last match of
// the original.

#pragma once

#include "text/vector.h"

namespace detail
{

/// A text that is read from one of its ends.
template <typename T>
struct DirectedText {
    const T *first;
    ptrdiff_t step; ///< 1, or -1 to read backwards

    T operator[](uint32_t at) const { return LoadUnit(first + static_cast<ptrdiff_t>(at) * step); }
};

/// The place where a needle is cut.
struct NeedleCut {
    uint32_t position;
    uint32_t period; ///< of the part after the cut
};

/// The needle's greatest suffix, under the order of the units or the reversed order.
template <typename T>
NeedleCut GreatestSuffix(const DirectedText<T> &needle, uint32_t length, bool isReversed)
{
    NeedleCut greatest = {0, 1};
    uint32_t candidate = 1;
    uint32_t same = 0; // how many units of the candidate equal those of the greatest suffix so far
    while (candidate + same < length) {
        const T ours = needle[candidate + same];
        const T best = needle[greatest.position + same];
        if (ours == best) {
            same++;
            if (same == greatest.period) {
                candidate += same;
                same = 0;
            }
        } else if ((ours < best) != isReversed) {
            candidate += same + 1;
            same = 0;
            greatest.period = candidate - greatest.position;
        } else {
            greatest = {candidate, 1};
            candidate++;
            same = 0;
        }
    }
    return greatest;
}

/// The first of `places` at which the needle matches the text, or `places`. The needle has at least one unit.
template <typename T>
uint32_t TwoWaySearch(const DirectedText<T> &text, uint32_t places, const DirectedText<T> &needle,
                      uint32_t length)
{
    const NeedleCut ascending = GreatestSuffix(needle, length, false);
    const NeedleCut descending = GreatestSuffix(needle, length, true);
    const uint32_t cut = (ascending.position > descending.position ? ascending : descending).position;
    uint32_t period = (ascending.position > descending.position ? ascending : descending).period;

    uint32_t repeated = 0;
    while (repeated < cut && needle[repeated] == needle[period + repeated])
        repeated++;
    const bool isPeriodic = repeated == cut;
    if (!isPeriodic) // then any period of the whole needle is longer than both parts
        period = (cut > length - cut ? cut : length - cut) + 1;

    uint32_t known = 0; // units at the needle's start that are known to match at this place
    for (uint32_t place = 0; place < places;) {
        uint32_t at = known > cut ? known : cut;
        while (at < length && needle[at] == text[place + at])
            at++;
        if (at < length) {
            place += at - cut + 1;
            known = 0;
            continue;
        }
        at = cut;
        while (at > known && needle[at - 1] == text[place + at - 1])
            at--;
        if (at <= known)
            return place;
        place += period;
        known = isPeriodic ? length - period : 0;
    }
    return places;
}

} // namespace detail

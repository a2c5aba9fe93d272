// Security identifiers that are the same on every system.

#pragma once

#include "nt/nt.h"

namespace detail
{

/// A native security identifier with at most two sub-authorities.
struct WellKnownSid {
    UCHAR revision;
    UCHAR subAuthorityCount;
    UCHAR authority[6]; ///< big-endian
    ULONG subAuthority[2];
};
static_assert(sizeof(WellKnownSid) == 16 && offsetof(WellKnownSid, subAuthority) == 8);

constexpr UCHAR kWorldAuthority = 1;
constexpr UCHAR kNtAuthority = 5;
constexpr UCHAR kMandatoryLabelAuthority = 16;

constexpr WellKnownSid MakeSid(UCHAR authority, ULONG first)
{
    return {1, 1, {0, 0, 0, 0, 0, authority}, {first, 0}};
}

constexpr WellKnownSid MakeSid(UCHAR authority, ULONG first, ULONG second)
{
    return {1, 2, {0, 0, 0, 0, 0, authority}, {first, second}};
}

} // namespace detail

// What the conversions share: the end marker, the 1970 floor, and the platform's calendar.

#pragma once

#include "nt/nt.h"
#include "orv/time/time_struct.h"

namespace detail
{

inline constexpr OrvTimeStruct kEndMarkerStruct = {1600, OrvDecember, 31, OrvSunday, 0, 0, 0, 0, 0, 0};

/// Whether the value is an instant that the calendar accepts: not before 1970, not the end marker.
constexpr bool IsInstant(OrvTime time)
{
    return time >= OrvTimeFloor && time != OrvTimeEnd;
}

/// The instant of native fields, from 1601 on. Returns 0, or ORV_E_INVALID_ARGUMENT, and `time` is untouched,
/// when they are no date and time of the calendar.
OrvResult TimeFromFields(OrvTime &time, const TIME_FIELDS &fields);

} // namespace detail

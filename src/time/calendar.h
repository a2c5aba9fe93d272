// What the time conversions share: the end marker, the lower limit of 1970, and the platform's calendar.

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

/// Converts native fields, from 1601 on, to an instant. Returns 0, or ORV_E_INVALID_ARGUMENT when the fields
/// are no date and time of the calendar; `time` is then untouched.
OrvResult TimeFromFields(OrvTime &time, const TIME_FIELDS &fields);

} // namespace detail

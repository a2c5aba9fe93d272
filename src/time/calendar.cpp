// The platform's calendar, with one check of our own: 29 February exists only in leap years.

#include "time/calendar.h"

#include "orv/runtime/result.h"

namespace detail
{

OrvResult TimeFromFields(OrvTime &time, const TIME_FIELDS &fields)
{
    // Wine accepts 29 February in any year.
    constexpr USHORT kLeapDay = 29;
    const bool leapYear = fields.Year % 4 == 0 && (fields.Year % 100 != 0 || fields.Year % 400 == 0);
    if (fields.Month == OrvFebruary && fields.Day == kLeapDay && !leapYear)
        return ORV_E_INVALID_ARGUMENT;
    TIME_FIELDS native = fields;
    LONGLONG ticks = 0;
    if (!RtlTimeFieldsToTime(&native, &ticks))
        return ORV_E_INVALID_ARGUMENT;
    time = static_cast<OrvTime>(ticks);
    return ORV_S_OK;
}

} // namespace detail

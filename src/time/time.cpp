// Instants, durations and the day of the week. The platform computes the calendar.

#include "orv/time/time.h"

#include "nt/nt.h"
#include "orv/runtime/result.h"
#include "time/calendar.h"

namespace
{

constexpr uint64_t kHoursPerDay = 24;

constexpr uint64_t kDaysPer400Years = 400 * 365 + 97; // a whole number of weeks
constexpr uint64_t kUnitsPer400Years = kDaysPer400Years * OrvTimeUnitsPerDay;
static_assert(kDaysPer400Years % 7 == 0);

/// Splits a magnitude in units of 100 ns. Stores the fields from nanoseconds to minutes and returns the total
/// number of hours.
uint64_t SplitDuration(OrvTimeDifferenceStruct &structure, uint64_t units)
{
    structure.nanoseconds = static_cast<uint16_t>(units % 10 * 100);
    units /= 10;
    structure.microseconds = static_cast<uint16_t>(units % 1000);
    units /= 1000;
    structure.milliseconds = static_cast<uint16_t>(units % 1000);
    units /= 1000;
    structure.seconds = static_cast<uint16_t>(units % 60);
    units /= 60;
    structure.minutes = static_cast<uint16_t>(units % 60);
    return units / 60;
}

} // namespace

OrvResult OrvConvertOrvTimeToStruct(OrvTimeStruct &structure, OrvTime time)
{
    if (time == OrvTimeEnd) {
        structure = detail::kEndMarkerStruct;
        return ORV_S_END_OF_TIME;
    }
    if (time < OrvTimeFloor)
        return ORV_E_TIME_OUT_OF_RANGE;
    // The platform takes its time as a signed number. The calendar, with its weekdays, repeats every 400
    // years: a time whose top bit is set is therefore moved back into the first 400 years.
    const bool isBeyondPlatform = time >> 63;
    const uint64_t cycles = isBeyondPlatform ? time / kUnitsPer400Years : 0;
    const auto ticks = static_cast<LONGLONG>(time - cycles * kUnitsPer400Years);
    TIME_FIELDS fields;
    RtlTimeToTimeFields(&ticks, &fields);
    const auto year = static_cast<uint16_t>(fields.Year + cycles * 400);
    structure.Initialize(year, static_cast<OrvMonth>(fields.Month), fields.Day,
                         static_cast<OrvDayOfWeek>(fields.Weekday), fields.Hour, fields.Minute, fields.Second,
                         fields.Milliseconds, static_cast<uint16_t>(time / 10 % 1000),
                         static_cast<uint16_t>(time % 10 * 100));
    return ORV_S_OK;
}

OrvResult OrvConvertStructToOrvTime(OrvTime &time, const OrvTimeStruct &structure)
{
    if (structure.Equal(detail::kEndMarkerStruct, OrvTimeStruct::ResolutionNanosecond)) {
        time = OrvTimeEnd;
        return ORV_S_END_OF_TIME;
    }
    constexpr uint16_t kFirstYear = 1970;
    if (structure.year < kFirstYear)
        return ORV_E_TIME_OUT_OF_RANGE;
    // A month is wider here than in the platform's fields: cut to their width, a wrong one could become
    // valid.
    if (structure.month > OrvDecember)
        return ORV_E_INVALID_ARGUMENT;
    const OrvResult result = detail::TimeFromFields(
        time, {structure.year, static_cast<USHORT>(structure.month), structure.day, structure.hour,
               structure.minute, structure.second, structure.millisecond, 0});
    if (OrvSucceeded(result))
        time += structure.microsecond * 10u + structure.nanosecond / 100u;
    return result;
}

OrvResult OrvConvertOrvTimeDifferenceToStruct(OrvTimeDifferenceStruct &structure, int64_t difference)
{
    const auto bits = static_cast<uint64_t>(difference);
    const uint64_t hours = SplitDuration(structure, difference < 0 ? 0 - bits : bits);
    if (hours / kHoursPerDay > UINT16_MAX) {
        structure = {};
        return ORV_E_DURATION_OUT_OF_RANGE;
    }
    structure.days = static_cast<uint16_t>(hours / kHoursPerDay);
    structure.hours = static_cast<uint16_t>(hours % kHoursPerDay);
    return ORV_S_OK;
}

OrvResult OrvConvertOrvTimeDifferenceToStruct(OrvTimeDifferenceStruct &structure, OrvTime first,
                                              OrvTime second)
{
    if (!detail::IsInstant(first) || !detail::IsInstant(second))
        return ORV_E_TIME_OUT_OF_RANGE;
    if (second < first) {
        structure = {};
        return ORV_W_NEGATIVE_DURATION;
    }
    const uint64_t hours = SplitDuration(structure, second - first);
    // The hours complement the days as stored, which are cut to 16 bits.
    structure.days = static_cast<uint16_t>(hours / kHoursPerDay);
    structure.hours = static_cast<uint16_t>(hours - kHoursPerDay * structure.days);
    return ORV_S_OK;
}

OrvResult OrvConvertStructToOrvTimeDifference(int64_t &difference, const OrvTimeDifferenceStruct &structure)
{
    int64_t units = structure.days * int64_t{24} + structure.hours;
    units = units * 60 + structure.minutes;
    units = units * 60 + structure.seconds;
    units = units * 1000 + structure.milliseconds;
    units = units * 1000 + structure.microseconds;
    difference = units * 10 + structure.nanoseconds / 100;
    return ORV_S_OK;
}

OrvResult OrvTimeStructApplyDifference(OrvTimeStruct &structure, int64_t difference)
{
    OrvTime time = 0;
    OrvResult result = OrvConvertStructToOrvTime(time, structure);
    if (OrvFailed(result))
        return result;
    OrvTimeStruct moved;
    result = OrvConvertOrvTimeToStruct(moved, time + static_cast<uint64_t>(difference));
    if (OrvFailed(result))
        return result;
    structure = moved;
    return ORV_S_OK;
}

OrvResult OrvGetDayOfWeek(OrvDayOfWeek &dayOfWeek, uint16_t year, OrvMonth month, uint16_t day)
{
    // Within these bounds the weekday is a sum: each year moves it by one day and each leap year by one more.
    // A year starts in March here, so that the leap day is its last day. The table moves it by months.
    constexpr uint16_t kFirstYear = 1753;
    constexpr uint16_t kLastYear = 9999;
    if (year >= kFirstYear && year <= kLastYear && month >= OrvJanuary && month <= OrvDecember && day >= 1 &&
        day <= 31) {
        static constexpr uint8_t kMonthOffsets[] = {0, 3, 2, 5, 0, 3, 5, 1, 4, 6, 2, 4};
        const uint32_t marchYear = month < OrvMarch ? year - 1u : year;
        const uint32_t days = day + marchYear + marchYear / 4 - marchYear / 100 + marchYear / 400 +
                              kMonthOffsets[month - OrvJanuary];
        dayOfWeek = static_cast<OrvDayOfWeek>(days % 7);
        return ORV_S_OK;
    }
    OrvTime time = 0;
    const OrvResult result =
        OrvConvertStructToOrvTime(time, OrvTimeStruct(year, month, day, OrvSunday, 0, 0, 0, 0, 0, 0));
    return OrvFailed(result) ? result : OrvGetDayOfWeek(dayOfWeek, time);
}

OrvResult OrvGetDayOfWeek(OrvDayOfWeek &dayOfWeek, const OrvTimeStruct &structure)
{
    return OrvGetDayOfWeek(dayOfWeek, structure.year, structure.month, structure.day);
}

OrvResult OrvGetDayOfWeek(OrvDayOfWeek &dayOfWeek, OrvTime time)
{
    OrvTimeStruct structure;
    const OrvResult result = OrvConvertOrvTimeToStruct(structure, time);
    if (OrvSucceeded(result))
        dayOfWeek = structure.dayOfWeek;
    return result;
}

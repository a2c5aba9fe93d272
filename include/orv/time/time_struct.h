// Broken-down instants and durations, and the number that represents an instant.
//
// OrvTime counts intervals of 100 ns since 1601-01-01 00:00:00 on the proleptic Gregorian calendar, the scale
// of the platform's system time. Its user decides whether a value means UTC or local time. The library's
// calendar starts in 1970: nearly every conversion refuses an earlier instant. The value with all bits set is
// not an instant but the end marker, which means "no time" or "without end".

#pragma once

#include "orv/base.h"

/// An instant, in units of 100 ns since 1601.
typedef uint64_t OrvTime;

/// The end marker.
constexpr OrvTime OrvTimeEnd = 0xFFFFFFFFFFFFFFFF;

/// 1970-01-01 00:00:00, the first instant that conversions accept.
constexpr OrvTime OrvTimeFloor = 116444736000000000;

/// Durations in units of 100 ns.
constexpr OrvTime OrvTimeUnitsPerSecond = 10000000;
constexpr OrvTime OrvTimeUnitsPerDay = 86400 * OrvTimeUnitsPerSecond;

/// From 1 on.
enum OrvMonth : uint32_t {
    OrvJanuary = 1,
    OrvFebruary,
    OrvMarch,
    OrvApril,
    OrvMay,
    OrvJune,
    OrvJuly,
    OrvAugust,
    OrvSeptember,
    OrvOctober,
    OrvNovember,
    OrvDecember,
};

/// From Sunday, 0, on.
enum OrvDayOfWeek : uint32_t {
    OrvSunday = 0,
    OrvMonday,
    OrvTuesday,
    OrvWednesday,
    OrvThursday,
    OrvFriday,
    OrvSaturday,
};

/// A broken-down instant. Nothing here checks the fields' ranges; the conversions do.
///
/// The end marker's structure is 1600-12-31 with every other field 0.
struct OrvTimeStruct {
    uint16_t year;          ///< 1970, not 70
    OrvMonth month;         ///< 1 to 12
    OrvDayOfWeek dayOfWeek; ///< conversions to this structure set it; those to an OrvTime do not read it
    uint16_t day;           ///< 1 to 31
    uint16_t hour;          ///< 0 to 23
    uint16_t minute;        ///< 0 to 59
    uint16_t second;        ///< 0 to 59
    uint16_t millisecond;   ///< 0 to 999
    uint16_t microsecond;   ///< 0 to 999, within the millisecond
    uint16_t nanosecond;    ///< 0 to 900 in steps of 100, within the microsecond

    /// How far a comparison goes: the named field is the last one that is compared. Below ResolutionYear
    /// counts as ResolutionYear, above ResolutionNanosecond as ResolutionNanosecond.
    enum ComparisonResolution : int32_t {
        ResolutionYear = 1,
        ResolutionMonth,
        ResolutionDay,
        ResolutionHour,
        ResolutionMinute,
        ResolutionSecond,
        ResolutionMillisecond,
        ResolutionMicrosecond,
        ResolutionNanosecond,
    };

    /// 1970-01-01 00:00:00, with Sunday as its day of the week although it was a Thursday.
    constexpr OrvTimeStruct() : OrvTimeStruct(1970, OrvJanuary, 1, OrvSunday, 0, 0, 0, 0, 0, 0) {}

    /// The day precedes the day of the week here; in the structure it follows.
    constexpr OrvTimeStruct(uint16_t yearValue, OrvMonth monthValue, uint16_t dayValue,
                            OrvDayOfWeek dayOfWeekValue, uint16_t hourValue, uint16_t minuteValue,
                            uint16_t secondValue, uint16_t millisecondValue, uint16_t microsecondValue,
                            uint16_t nanosecondValue)
        : year(yearValue), month(monthValue), dayOfWeek(dayOfWeekValue), day(dayValue), hour(hourValue),
          minute(minuteValue), second(secondValue), millisecond(millisecondValue),
          microsecond(microsecondValue), nanosecond(nanosecondValue)
    {
    }

    /// As the constructor.
    ORV_API void Initialize(uint16_t yearValue, OrvMonth monthValue, uint16_t dayValue,
                            OrvDayOfWeek dayOfWeekValue, uint16_t hourValue, uint16_t minuteValue,
                            uint16_t secondValue, uint16_t millisecondValue, uint16_t microsecondValue,
                            uint16_t nanosecondValue);

    /// -1, 0 or 1, as this instant is before, equal to or after the other one, down to the resolution. The
    /// day of the week is never compared.
    ORV_API int Compare(const OrvTimeStruct &other, int resolution) const;

    /// Compare below 0.
    ORV_API bool Less(const OrvTimeStruct &other, int resolution) const;

    /// Compare equal to 0.
    ORV_API bool Equal(const OrvTimeStruct &other, int resolution) const;

    /// Whether the date is after that of the end marker's structure. The fields' ranges are not checked.
    ORV_API bool IsValid() const;
};

static_assert(sizeof(OrvTimeStruct) == 28 && offsetof(OrvTimeStruct, dayOfWeek) == 8 &&
                  offsetof(OrvTimeStruct, nanosecond) == 24,
              "fixed layout");

/// A duration without a sign.
struct OrvTimeDifferenceStruct {
    uint16_t days;         ///< up to 65,535
    uint16_t hours;        ///< 0 to 23, or more when the days do not fit
    uint16_t minutes;      ///< 0 to 59
    uint16_t seconds;      ///< 0 to 59
    uint16_t milliseconds; ///< 0 to 999
    uint16_t microseconds; ///< 0 to 999, within the millisecond
    uint16_t nanoseconds;  ///< in steps of 100

    /// No time, or these fields.
    constexpr OrvTimeDifferenceStruct() : OrvTimeDifferenceStruct(0, 0, 0, 0, 0, 0, 0) {}
    constexpr OrvTimeDifferenceStruct(uint16_t dayCount, uint16_t hourCount, uint16_t minuteCount,
                                      uint16_t secondCount, uint16_t millisecondCount,
                                      uint16_t microsecondCount, uint16_t nanosecondCount)
        : days(dayCount), hours(hourCount), minutes(minuteCount), seconds(secondCount),
          milliseconds(millisecondCount), microseconds(microsecondCount), nanoseconds(nanosecondCount)
    {
    }

    /// As the constructor.
    ORV_API void Initialize(uint16_t dayCount, uint16_t hourCount, uint16_t minuteCount, uint16_t secondCount,
                            uint16_t millisecondCount, uint16_t microsecondCount, uint16_t nanosecondCount);

    /// Whether all fields are equal.
    ORV_API bool Equal(const OrvTimeDifferenceStruct &other) const;
};

static_assert(sizeof(OrvTimeDifferenceStruct) == 14, "fixed layout");

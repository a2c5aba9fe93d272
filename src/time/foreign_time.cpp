// Conversions to and from the time formats of others: FILETIME, time_t, timeval, tm, variant time,
// SYSTEMTIME, DOS. Each is expressed in units of 100 ns from an epoch. Where a conversion is unusual, that is
// intended, and its public documentation says so.

#include "orv/time/foreign_time.h"

#include "nt/nt.h"
#include "orv/runtime/result.h"
#include "orv/time/time.h"
#include "time/calendar.h"

// The C library's structures, as the platform's compilers lay them out.

struct timeval {
    int32_t tv_sec;
    int32_t tv_usec;
};

struct tm {
    int tm_sec;
    int tm_min;
    int tm_hour;
    int tm_mday;
    int tm_mon;
    int tm_year;
    int tm_wday;
    int tm_yday;
    int tm_isdst;
};

namespace
{

constexpr int64_t kSecondsTo1970 = 11644473600;
constexpr OrvTime kVariantEpoch = 94353120000000000; // 1899-12-30

constexpr uint16_t kFirstSystemTimeYear = 1970;
constexpr uint16_t kLastSystemTimeYear = 30827;

/// Checks the fields that SYSTEMTIME and OrvTimeStruct have in common.
bool IsSystemTimeRange(uint32_t year, uint32_t month, uint32_t dayOfWeek, uint32_t day, uint32_t hour,
                       uint32_t minute, uint32_t second, uint32_t millisecond)
{
    return year >= kFirstSystemTimeYear && year <= kLastSystemTimeYear && month >= OrvJanuary &&
           month <= OrvDecember && dayOfWeek <= OrvSaturday && day >= 1 && day <= 31 && hour <= 23 &&
           minute <= 59 && second <= 59 && millisecond <= 999;
}

} // namespace

OrvResult OrvConvertWin32FileTimeToOrvTime(OrvTime &time, uint32_t high, uint32_t low)
{
    time = static_cast<uint64_t>(high) << 32 | low;
    return ORV_S_OK;
}

OrvResult OrvConvertOrvTimeToWin32FileTime(uint32_t &high, uint32_t &low, OrvTime time)
{
    if (time == OrvTimeEnd)
        return ORV_E_TIME_OUT_OF_RANGE;
    high = static_cast<uint32_t>(time >> 32);
    low = static_cast<uint32_t>(time);
    return ORV_S_OK;
}

OrvResult OrvConvertOrvTimeToTimeT(int64_t &seconds, OrvTime time)
{
    if (time < OrvTimeFloor)
        return ORV_E_TIME_OUT_OF_RANGE;
    seconds = static_cast<int64_t>(time / OrvTimeUnitsPerSecond) - kSecondsTo1970;
    return ORV_S_OK;
}

OrvResult OrvConvertTimeTToOrvTime(OrvTime &time, int64_t seconds)
{
    time = (static_cast<uint64_t>(seconds) + kSecondsTo1970) * OrvTimeUnitsPerSecond;
    return ORV_S_OK;
}

OrvResult OrvConvertOrvTimeToTimeval(timeval &value, OrvTime time)
{
    int64_t seconds = 0;
    const OrvResult result = OrvConvertOrvTimeToTimeT(seconds, time);
    if (OrvFailed(result))
        return result;
    value.tv_sec = static_cast<int32_t>(seconds);
    value.tv_usec = static_cast<int32_t>(time % OrvTimeUnitsPerSecond / 10);
    return ORV_S_OK;
}

OrvResult OrvConvertTimevalToOrvTime(OrvTime &time, const timeval &value)
{
    time =
        static_cast<OrvTime>((value.tv_sec + kSecondsTo1970) * static_cast<int64_t>(OrvTimeUnitsPerSecond) +
                             int64_t{value.tv_usec} * 10);
    return time < OrvTimeFloor ? ORV_E_TIME_OUT_OF_RANGE : ORV_S_OK;
}

OrvResult OrvConvertTMToOrvTime(OrvTime &time, const tm &value)
{
    // The platform's fields are 16 bits wide: the low 16 bits of each member are used, and the sums wrap at
    // 16 bits too.
    constexpr unsigned kFirstYear = 1900;
    return detail::TimeFromFields(
        time, {static_cast<USHORT>(kFirstYear + static_cast<unsigned>(value.tm_year)),
               static_cast<USHORT>(static_cast<unsigned>(value.tm_mon) + 1),
               static_cast<USHORT>(value.tm_mday), static_cast<USHORT>(value.tm_hour),
               static_cast<USHORT>(value.tm_min), static_cast<USHORT>(value.tm_sec), 0, 0});
}

OrvResult OrvNtDllConvertTMToOrvTime(OrvTime &time, const tm &value)
{
    return OrvConvertTMToOrvTime(time, value);
}

OrvResult OrvConvertOrvTimeToTM(tm &, OrvTime time)
{
    return time < OrvTimeFloor ? ORV_E_TIME_OUT_OF_RANGE : ORV_E_NOT_PROVIDED;
}

OrvResult OrvConvertOrvTimeToVariantTime(double &days, OrvTime time)
{
    if (!detail::IsInstant(time))
        return ORV_E_TIME_OUT_OF_RANGE;
    days = static_cast<double>(static_cast<int64_t>(time - kVariantEpoch)) /
           static_cast<double>(OrvTimeUnitsPerDay);
    return ORV_S_OK;
}

OrvResult OrvConvertVariantTimeToOrvTime(OrvTime &time, double days)
{
    constexpr double kTwoTo63 = 9223372036854775808.0;
    const double units = days * static_cast<double>(OrvTimeUnitsPerDay) + static_cast<double>(kVariantEpoch);
    if (!(units >= 0) || units >= 2 * kTwoTo63) // also true for a NaN
        time = 0;
    else if (units >= kTwoTo63) // the processor converts signed numbers only
        time = static_cast<uint64_t>(static_cast<int64_t>(units - kTwoTo63)) + (uint64_t{1} << 63);
    else
        time = static_cast<uint64_t>(static_cast<int64_t>(units));
    return time < OrvTimeFloor ? ORV_E_TIME_OUT_OF_RANGE : ORV_S_OK;
}

OrvResult OrvConvertSYSTEMTIMEToOrvTimeStruct(OrvTimeStruct &structure, const _SYSTEMTIME &value)
{
    if (!IsSystemTimeRange(value.wYear, value.wMonth, value.wDayOfWeek, value.wDay, value.wHour,
                           value.wMinute, value.wSecond, value.wMilliseconds))
        return ORV_E_FIELD_OUT_OF_RANGE;
    structure.Initialize(value.wYear, static_cast<OrvMonth>(value.wMonth), value.wDay,
                         static_cast<OrvDayOfWeek>(value.wDayOfWeek), value.wHour, value.wMinute,
                         value.wSecond, value.wMilliseconds, 0, 0);
    return ORV_S_OK;
}

OrvResult OrvConvertSYSTEMTIMEToOrvTime(OrvTime &time, const _SYSTEMTIME &value)
{
    OrvTimeStruct structure;
    const OrvResult result = OrvConvertSYSTEMTIMEToOrvTimeStruct(structure, value);
    return OrvFailed(result) ? result : OrvConvertStructToOrvTime(time, structure);
}

OrvResult OrvConvertOrvTimeStructToSYSTEMTIME(_SYSTEMTIME &value, const OrvTimeStruct &structure)
{
    if (!IsSystemTimeRange(structure.year, structure.month, structure.dayOfWeek, structure.day,
                           structure.hour, structure.minute, structure.second, structure.millisecond) ||
        structure.microsecond > 999 || structure.nanosecond > 999)
        return ORV_E_FIELD_OUT_OF_RANGE;
    value = {structure.year,
             static_cast<USHORT>(structure.month),
             static_cast<USHORT>(structure.dayOfWeek),
             structure.day,
             structure.hour,
             structure.minute,
             structure.second,
             structure.millisecond};
    return ORV_S_OK;
}

OrvResult OrvConvertOrvTimeToSYSTEMTIME(_SYSTEMTIME &value, const OrvTime &time)
{
    OrvTimeStruct structure;
    const OrvResult result = OrvConvertOrvTimeToStruct(structure, time);
    return OrvFailed(result) ? result : OrvConvertOrvTimeStructToSYSTEMTIME(value, structure);
}

// A DOS date holds day, month and years since 1980 in 5, 4 and 7 bits; a DOS time half seconds, minutes and
// hours in 5, 6 and 5 bits.

OrvResult OrvConvertDosDateTimeToOrvTime(OrvTime &time, uint16_t dosDate, uint16_t dosTime)
{
    constexpr uint16_t kFirstYear = 1980;
    const uint32_t month = dosDate >> 5 & 0xF;
    if (month < OrvJanuary || month > OrvDecember)
        return ORV_E_INVALID_ARGUMENT;
    const OrvTimeStruct structure(static_cast<uint16_t>(kFirstYear + (dosDate >> 9)),
                                  static_cast<OrvMonth>(month), dosDate & 0x1F, OrvSunday, dosTime >> 11,
                                  dosTime >> 5 & 0x3F, static_cast<uint16_t>((dosTime & 0x1F) * 2), 0, 0, 0);
    return OrvConvertStructToOrvTime(time, structure);
}

OrvResult OrvConvertOrvTimeToDosDateTime(uint16_t &dosDate, uint16_t &dosTime, OrvTime time)
{
    constexpr int kFirstYear = 1980;
    constexpr int kMostYears = 127;
    OrvTimeStruct structure;
    const OrvResult result = OrvConvertOrvTimeToStruct(structure, time);
    if (OrvFailed(result))
        return result;
    const int years = structure.year - kFirstYear;
    if (years < 0 || years > kMostYears)
        return ORV_E_INVALID_ARGUMENT;
    dosDate = static_cast<uint16_t>(static_cast<uint32_t>(years) << 9 | structure.month << 5 | structure.day);
    dosTime = static_cast<uint16_t>(structure.hour << 11 | structure.minute << 5 | structure.second >> 1);
    return ORV_S_OK;
}

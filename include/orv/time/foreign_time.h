// Converting instants to and from other representations: FILETIME halves, SYSTEMTIME, time_t, timeval, tm,
// OLE automation dates, MS-DOS dates.
//
// The structures are those of the platform's headers, which are only declared here. Unless an operation says
// otherwise, its outputs are untouched when it fails.

#pragma once

#include "orv/time/time_struct.h"

struct _SYSTEMTIME;
struct timeval;
struct tm;

/// Always 0.
ORV_API OrvResult OrvConvertWin32FileTimeToOrvTime(OrvTime &time, uint32_t high, uint32_t low);

/// Returns 0, or ORV_E_TIME_OUT_OF_RANGE for the end marker.
ORV_API OrvResult OrvConvertOrvTimeToWin32FileTime(uint32_t &high, uint32_t &low, OrvTime time);

/// Whole seconds since 1970; fractions are cut. The end marker converts like any number.
///
/// Returns 0, or ORV_E_TIME_OUT_OF_RANGE before 1970.
ORV_API OrvResult OrvConvertOrvTimeToTimeT(int64_t &seconds, OrvTime time);

/// Always 0: seconds that do not fit in an OrvTime wrap.
ORV_API OrvResult OrvConvertTimeTToOrvTime(OrvTime &time, int64_t seconds);

/// Seconds since 1970, which wrap at 32 bits, and microseconds.
///
/// Returns 0, or ORV_E_TIME_OUT_OF_RANGE before 1970.
ORV_API OrvResult OrvConvertOrvTimeToTimeval(timeval &value, OrvTime time);

/// Returns 0, or ORV_E_TIME_OUT_OF_RANGE when the result is before 1970; it is stored all the same.
ORV_API OrvResult OrvConvertTimevalToOrvTime(OrvTime &time, const timeval &value);

/// A broken-down time of the C library, from 1601 on: this conversion does not stop at 1970. Days of the week
/// and of the year and the daylight flag are not read; of the other fields the low 16 bits are.
///
/// Returns 0, or ORV_E_INVALID_ARGUMENT for fields that are not a date and time.
ORV_API OrvResult OrvConvertTMToOrvTime(OrvTime &time, const tm &value);

/// The same operation.
ORV_API OrvResult OrvNtDllConvertTMToOrvTime(OrvTime &time, const tm &value);

/// Not provided: `value` is never written.
///
/// Returns ORV_E_TIME_OUT_OF_RANGE before 1970, otherwise ORV_E_NOT_PROVIDED.
ORV_API OrvResult OrvConvertOrvTimeToTM(tm &value, OrvTime time);

/// Days since 1899-12-30 with the time of day as their fraction.
///
/// Returns 0, or ORV_E_TIME_OUT_OF_RANGE before 1970 and for the end marker.
ORV_API OrvResult OrvConvertOrvTimeToVariantTime(double &days, OrvTime time);

/// The reverse conversion, cut to 100 ns. Negative days have no special meaning.
///
/// Returns 0, or ORV_E_TIME_OUT_OF_RANGE when the result is before 1970 or does not fit in an OrvTime; it is
/// stored all the same, as 0 in the second case.
ORV_API OrvResult OrvConvertVariantTimeToOrvTime(OrvTime &time, double days);

/// Copies the fields and sets microseconds and nanoseconds to 0. The day is not compared with the length of
/// its month.
///
/// Returns 0, or ORV_E_FIELD_OUT_OF_RANGE when a field is out of its range; the years are 1970 to 30827.
ORV_API OrvResult OrvConvertSYSTEMTIMEToOrvTimeStruct(OrvTimeStruct &structure, const _SYSTEMTIME &value);

/// The same, and then OrvConvertStructToOrvTime, whose failures are returned, too.
ORV_API OrvResult OrvConvertSYSTEMTIMEToOrvTime(OrvTime &time, const _SYSTEMTIME &value);

/// Copies the fields; microseconds and nanoseconds are dropped.
///
/// Returns 0, or ORV_E_FIELD_OUT_OF_RANGE when a field, those two included, is out of its range.
ORV_API OrvResult OrvConvertOrvTimeStructToSYSTEMTIME(_SYSTEMTIME &value, const OrvTimeStruct &structure);

/// OrvConvertOrvTimeToStruct, and then the same. The end marker gives ORV_E_FIELD_OUT_OF_RANGE.
ORV_API OrvResult OrvConvertOrvTimeToSYSTEMTIME(_SYSTEMTIME &value, const OrvTime &time);

/// Returns 0; ORV_E_INVALID_ARGUMENT for numbers that are not a date and time.
ORV_API OrvResult OrvConvertDosDateTimeToOrvTime(OrvTime &time, uint16_t dosDate, uint16_t dosTime);

/// Odd seconds are cut to even ones.
///
/// Returns 0; ORV_E_INVALID_ARGUMENT outside the years 1980 to 2107, the end marker included;
/// ORV_E_TIME_OUT_OF_RANGE before 1970.
ORV_API OrvResult OrvConvertOrvTimeToDosDateTime(uint16_t &dosDate, uint16_t &dosTime, OrvTime time);

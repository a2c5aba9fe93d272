// Converting instants and durations to their structures and back, and the day of the week.
//
// Unless an operation says otherwise, its outputs are untouched when it fails. No operation has a state.

#pragma once

#include "orv/time/time_struct.h"

/// Breaks an instant down, its day of the week included, up to the last instant, in the year 60056. From 2^63
/// on (14 September 30828) there is no way back: OrvConvertStructToOrvTime accepts no year that the platform
/// refuses.
///
/// Returns 0; ORV_S_END_OF_TIME for the end marker, which gives the end marker's structure;
/// ORV_E_TIME_OUT_OF_RANGE before 1970.
ORV_API OrvResult OrvConvertOrvTimeToStruct(OrvTimeStruct &structure, OrvTime time);

/// The instant of a structure. Microseconds and nanoseconds beyond their ranges carry over, nanoseconds in
/// steps of 100; the day of the week is not read.
///
/// Returns 0; ORV_S_END_OF_TIME for the end marker's structure, which gives the end marker;
/// ORV_E_TIME_OUT_OF_RANGE before 1970; ORV_E_INVALID_ARGUMENT when another field is out of its range, the
/// month has no such day, or the platform's calendar ends before that year: Windows takes years up to 30827.
ORV_API OrvResult OrvConvertStructToOrvTime(OrvTime &time, const OrvTimeStruct &structure);

/// Breaks a difference of 100-ns units down; its sign is lost.
///
/// Returns 0, or ORV_E_DURATION_OUT_OF_RANGE for 65,536 days and more, and the structure is then zero.
ORV_API OrvResult OrvConvertOrvTimeDifferenceToStruct(OrvTimeDifferenceStruct &structure, int64_t difference);

/// Breaks the time from `first` to `second` down. A number of days beyond 16 bits is cut to its low 16 bits;
/// the hours hold the rest above those days, also cut to 16 bits.
///
/// Returns 0; ORV_E_TIME_OUT_OF_RANGE when either is before 1970 or the end marker; the warning
/// ORV_W_NEGATIVE_DURATION when `second` is before `first`, and the structure is then zero.
ORV_API OrvResult OrvConvertOrvTimeDifferenceToStruct(OrvTimeDifferenceStruct &structure, OrvTime first,
                                                      OrvTime second);

/// The 100-ns units of a duration, from fields of any size; nanoseconds count in steps of 100. Always 0.
ORV_API OrvResult OrvConvertStructToOrvTimeDifference(int64_t &difference,
                                                      const OrvTimeDifferenceStruct &structure);

/// Moves an instant by 100-ns units, and sets its day of the week.
///
/// Returns 0, or what the conversion there or back returns when it fails.
ORV_API OrvResult OrvTimeStructApplyDifference(OrvTimeStruct &structure, int64_t difference);

/// The day of the week of a date. From 1753 to 9999 no calendar is used: any day from 1 to 31 is accepted, so
/// that 31 February counts as the day 30 days after 1 February.
///
/// Returns 0; outside those years and days ORV_E_TIME_OUT_OF_RANGE before 1970, ORV_E_INVALID_ARGUMENT for a
/// date that does not exist, and ORV_S_END_OF_TIME with Sunday for the date of the end marker's structure.
ORV_API OrvResult OrvGetDayOfWeek(OrvDayOfWeek &dayOfWeek, uint16_t year, OrvMonth month, uint16_t day);

/// The same of a structure's year, month and day.
ORV_API OrvResult OrvGetDayOfWeek(OrvDayOfWeek &dayOfWeek, const OrvTimeStruct &structure);

/// The same of an instant. Returns as OrvConvertOrvTimeToStruct.
ORV_API OrvResult OrvGetDayOfWeek(OrvDayOfWeek &dayOfWeek, OrvTime time);

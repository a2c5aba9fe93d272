// The current time, local time, and the counters of milliseconds since the system started. (OrvGetTimestamp,
// the 32-bit counter, is with the ntdll entry points.) Reading them costs no native call.

#pragma once

#include "orv/runtime/ntdll_entry_points.h"
#include "orv/time/time_struct.h"

/// The current UTC time. Always 0.
ORV_API OrvResult OrvGetSystemTime(OrvTime &time);

/// The same, broken down. Returns as OrvConvertOrvTimeToStruct.
ORV_API OrvResult OrvGetSystemTime(OrvTimeStruct &structure);

/// The current local time.
///
/// Returns 0, or the failure of OrvConvertSystemTimeToLocalTime; `time` is then the UTC time.
ORV_API OrvResult OrvGetLocalTime(OrvTime &time);

/// The same, broken down; untouched on failure.
ORV_API OrvResult OrvGetLocalTime(OrvTimeStruct &structure);

/// Converts UTC to local time, in the platform's time zone.
///
/// Returns 0; ORV_E_TIME_OUT_OF_RANGE before 1970 and for the end marker; otherwise the converted status of
/// the platform. On failure the time is as it was.
ORV_API OrvResult OrvConvertSystemTimeToLocalTime(OrvTime &time);

/// The same for a structure; it also returns what the conversions to an OrvTime and back return.
ORV_API OrvResult OrvConvertSystemTimeToLocalTime(OrvTimeStruct &structure);

/// Converts local time to UTC. Returns as OrvConvertSystemTimeToLocalTime.
ORV_API OrvResult OrvConvertLocalTimeToSystemTime(OrvTime &time);
ORV_API OrvResult OrvConvertLocalTimeToSystemTime(OrvTimeStruct &structure);

/// Milliseconds since the system started, in steps of the system's clock.
ORV_API uint64_t OrvGetTimestamp64();

/// The same operation.
ORV_API uint64_t OrvWinGetTickCount64();

// The clock and the tick counters, read from the page that the system shares with every process; and the
// conversions by the platform's time zone.

#include "orv/time/clock.h"

#include "nt/nt.h"
#include "nt/teb.h"
#include "orv/runtime/result.h"
#include "orv/time/time.h"
#include "runtime/status.h"
#include "time/calendar.h"

namespace
{

typedef decltype(&RtlSystemTimeToLocalTime) ZoneConversion;

OrvResult ConvertZone(OrvTime &time, ZoneConversion convert)
{
    if (!detail::IsInstant(time))
        return ORV_E_TIME_OUT_OF_RANGE;
    const auto ticks = static_cast<LONGLONG>(time);
    LONGLONG converted = 0;
    const NTSTATUS status = convert(&ticks, &converted);
    if (!NT_SUCCESS(status))
        return detail::ResultFromStatus(status);
    time = static_cast<OrvTime>(converted);
    return ORV_S_OK;
}

OrvResult ConvertZone(OrvTimeStruct &structure, ZoneConversion convert)
{
    OrvTime time = 0;
    OrvResult result = OrvConvertStructToOrvTime(time, structure);
    if (OrvSucceeded(result))
        result = ConvertZone(time, convert);
    return OrvFailed(result) ? result : OrvConvertOrvTimeToStruct(structure, time);
}

} // namespace

OrvResult OrvGetSystemTime(OrvTime &time)
{
    time = ReadSharedTime(SharedUserData().SystemTime);
    return ORV_S_OK;
}

OrvResult OrvGetSystemTime(OrvTimeStruct &structure)
{
    OrvTime time = 0;
    OrvGetSystemTime(time);
    return OrvConvertOrvTimeToStruct(structure, time);
}

OrvResult OrvGetLocalTime(OrvTime &time)
{
    OrvGetSystemTime(time);
    return OrvConvertSystemTimeToLocalTime(time);
}

OrvResult OrvGetLocalTime(OrvTimeStruct &structure)
{
    OrvTime time = 0;
    const OrvResult result = OrvGetLocalTime(time);
    return OrvFailed(result) ? result : OrvConvertOrvTimeToStruct(structure, time);
}

OrvResult OrvConvertSystemTimeToLocalTime(OrvTime &time)
{
    return ConvertZone(time, RtlSystemTimeToLocalTime);
}

OrvResult OrvConvertSystemTimeToLocalTime(OrvTimeStruct &structure)
{
    return ConvertZone(structure, RtlSystemTimeToLocalTime);
}

OrvResult OrvConvertLocalTimeToSystemTime(OrvTime &time)
{
    return ConvertZone(time, RtlLocalTimeToSystemTime);
}

OrvResult OrvConvertLocalTimeToSystemTime(OrvTimeStruct &structure)
{
    return ConvertZone(structure, RtlLocalTimeToSystemTime);
}

uint64_t OrvWinGetTickCount64()
{
    const uint64_t ticks = ReadSharedTime(SharedUserData().TickCount);
    const uint64_t multiplier = SharedUserData().TickCountMultiplier;
    return ((ticks & UINT32_MAX) * multiplier >> 24) + ((ticks >> 32) * multiplier << 8);
}

uint64_t OrvGetTimestamp64()
{
    return OrvWinGetTickCount64();
}

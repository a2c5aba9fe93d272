// Reading the clock from the page that the system shares with every process.
//
// The system updates a 64-bit count there while it is read: it writes the second copy of the high part first,
// then the low part, then the first copy. Whoever reads the first copy, the low part and the second copy, in
// that order, and finds both copies equal, has a count that was true at one moment.

#include "orv/time/clock.h"

#include "nt/nt.h"
#include "nt/teb.h"
#include "orv/runtime/result.h"
#include "orv/time/time.h"
#include "runtime/status.h"
#include "time/calendar.h"

namespace
{

struct Count {
    ULONG high;
    ULONG low;
};

Count ReadCount(const volatile KSYSTEM_TIME &count)
{
    for (;;) {
        const LONG high = count.High1Time;
        const ULONG low = count.LowPart;
        if (high == count.High2Time)
            return {static_cast<ULONG>(high), low};
    }
}

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
    const Count count = ReadCount(SharedUserData().SystemTime);
    time = static_cast<uint64_t>(count.high) << 32 | count.low;
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
    const Count ticks = ReadCount(SharedUserData().TickCount);
    const uint64_t multiplier = SharedUserData().TickCountMultiplier;
    return (ticks.low * multiplier >> 24) + (ticks.high * multiplier << 8);
}

uint64_t OrvGetTimestamp64()
{
    return OrvWinGetTickCount64();
}

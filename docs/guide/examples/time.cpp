#include "orv/orv.h"

namespace
{

void PrintTime(const wchar_t *what, OrvTime time)
{
    OrvTimeStruct t;
    if (OrvFailed(OrvConvertOrvTimeToStruct(t, time)))
        return;
    OrvPrint(L"%s: %04u-%02u-%02u %02u:%02u:%02u.%03u\n", what, t.year, t.month, t.day, t.hour, t.minute,
             t.second, t.millisecond);
}

} // namespace

int OrvMain(int, wchar_t **)
{
    // A date and time as fields, then as one number, in units of 100 ns.
    const OrvTimeStruct noon(2024, OrvFebruary, 28, OrvSunday, 12, 0, 0, 0, 0, 0);
    OrvTime time = 0;
    OrvResult result = OrvConvertStructToOrvTime(time, noon);
    if (OrvFailed(result))
        return 1;
    PrintTime(L"noon", time);
    PrintTime(L"36 hours later", time + 36 * 3600 * OrvTimeUnitsPerSecond);

    OrvDayOfWeek day = OrvSunday;
    OrvGetDayOfWeek(day, time);
    OrvPrint(L"day of the week: %u\n", day);

    // Foreign forms.
    int64_t seconds = 0;
    OrvConvertOrvTimeToTimeT(seconds, time);
    OrvPrint(L"time_t: %I64d\n", seconds);
    uint16_t dosDate = 0;
    uint16_t dosTime = 0;
    result = OrvConvertOrvTimeToDosDateTime(dosDate, dosTime, time);
    OrvPrint(L"MS-DOS: %04X %04X\n", dosDate, dosTime);

    // The calendar starts in 1970. Times in the wrong order give a warning, which is a failure by its sign.
    OrvTimeStruct fields;
    OrvPrint(L"1969: %08X\n", OrvConvertOrvTimeToStruct(fields, OrvTimeFloor - 1));
    OrvTimeDifferenceStruct difference;
    OrvPrint(L"backwards: %08X\n", OrvConvertOrvTimeDifferenceToStruct(difference, time, time - 1));

    // Reading the clock makes no native call.
    OrvTime now = 0;
    OrvGetSystemTime(now);
    OrvPrint(L"it is later than that: %s\n", now > time ? L"yes" : L"no");
    return OrvFailed(result) ? 1 : 0;
}

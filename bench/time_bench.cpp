// Reading the clock, compared with the native call.

#include "bench.h"

#include "nt/programs.h"
#include "orv/orv.h"

BENCHMARK(TimeClock)
{
    bench::Compare(
        {"system time", 0, "NtQuerySystemTime"},
        [] {
            OrvTime time = 0;
            OrvGetSystemTime(time);
            bench::Use(time);
        },
        [] {
            LONGLONG time = 0;
            NtQuerySystemTime(&time);
            bench::Use(time);
        });
    bench::Compare(
        {"day of the week", 0, "RtlTimeToTimeFields"},
        [] {
            OrvDayOfWeek day = OrvSunday;
            OrvGetDayOfWeek(day, 2024, OrvMay, 17);
            bench::Use(day);
        },
        [] {
            const LONGLONG time = 133603776000000000;
            TIME_FIELDS fields;
            RtlTimeToTimeFields(&time, &fields);
            bench::Use(fields);
        });
}

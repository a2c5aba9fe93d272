// The clock and the zone of the real platform.

#include "orv/time/clock.h"

#include "harness/test.h"
#include "harness/thread.h"
#include "nt/programs.h"
#include "orv/runtime/result.h"
#include "orv/time/time.h"

TEST_CASE(ClockAgreesWithTheNativeCall)
{
    LONGLONG before = 0;
    LONGLONG after = 0;
    OrvTime time = 0;
    NtQuerySystemTime(&before);
    CHECK_EQUAL(OrvGetSystemTime(time), ORV_S_OK);
    NtQuerySystemTime(&after);
    // The shared page moves in steps, of 16 ms on some systems, and so does what the call answers on others.
    constexpr LONGLONG kStep = 1000000;
    CHECK(static_cast<LONGLONG>(time) >= before - kStep && static_cast<LONGLONG>(time) <= after + kStep);

    OrvTimeStruct structure;
    CHECK_EQUAL(OrvGetSystemTime(structure), ORV_S_OK);
    OrvTime fromStructure = 0;
    CHECK_EQUAL(OrvConvertStructToOrvTime(fromStructure, structure), ORV_S_OK);
    CHECK(fromStructure - time < OrvTimeUnitsPerSecond);
}

TEST_CASE(LocalTimeComesBack)
{
    OrvTime system = 0;
    OrvGetSystemTime(system);
    OrvTime local = system;
    CHECK_EQUAL(OrvConvertSystemTimeToLocalTime(local), ORV_S_OK);
    LONGLONG native = 0;
    const auto ticks = static_cast<LONGLONG>(system);
    RtlSystemTimeToLocalTime(&ticks, &native);
    CHECK_EQUAL(local, static_cast<OrvTime>(native));
    CHECK_EQUAL(OrvConvertLocalTimeToSystemTime(local), ORV_S_OK);
    CHECK_EQUAL(local, system);

    OrvTimeStruct structure(2020, OrvJune, 15, OrvSunday, 12, 0, 0, 1, 2, 300);
    CHECK_EQUAL(OrvConvertSystemTimeToLocalTime(structure), ORV_S_OK);
    CHECK_EQUAL(OrvConvertLocalTimeToSystemTime(structure), ORV_S_OK);
    CHECK(structure.Equal(OrvTimeStruct(2020, OrvJune, 15, OrvMonday, 12, 0, 0, 1, 2, 300), 9));
    CHECK_EQUAL(static_cast<uint32_t>(structure.dayOfWeek), static_cast<uint32_t>(OrvMonday));

    OrvTime now = 0;
    CHECK_EQUAL(OrvGetLocalTime(now), ORV_S_OK);
    CHECK_EQUAL(OrvGetLocalTime(structure), ORV_S_OK);
    const OrvTime bad[] = {OrvTimeFloor - 1, OrvTimeEnd, 0};
    for (const OrvTime time : bad) {
        OrvTime untouched = time;
        CHECK_EQUAL(OrvConvertSystemTimeToLocalTime(untouched), ORV_E_TIME_OUT_OF_RANGE);
        CHECK_EQUAL(OrvConvertLocalTimeToSystemTime(untouched), ORV_E_TIME_OUT_OF_RANGE);
        CHECK_EQUAL(untouched, time);
    }
    OrvTimeStruct early(1969, OrvDecember, 31, OrvSunday, 0, 0, 0, 0, 0, 0);
    CHECK_EQUAL(OrvConvertLocalTimeToSystemTime(early), ORV_E_TIME_OUT_OF_RANGE);
    CHECK_EQUAL(early.year, 1969);
}

TEST_CASE(CountersRunTogether)
{
    const uint64_t first = OrvGetTimestamp64();
    const uint32_t narrow = OrvGetTimestamp();
    CHECK(narrow - static_cast<uint32_t>(first) + 100 < 1100);
    LONGLONG wait = -500000;
    ZwDelayExecution(false, &wait);
    uint64_t elapsed = 0; // on a machine that has much to do, the system writes it late
    CHECK(test::Eventually([&] { return (elapsed = OrvWinGetTickCount64() - first) >= 30; }));
    CHECK(elapsed < 5000);
}

// Instants, durations, days of the week and the comparison of structures.

#include "orv/time/time.h"

#include "harness/test.h"
#include "orv/runtime/result.h"

namespace
{

constexpr int64_t kHour = 36000000000;
constexpr OrvTime kDay = OrvTimeUnitsPerDay;

bool SameExact(const OrvTimeStruct &a, const OrvTimeStruct &b)
{
    return a.Equal(b, OrvTimeStruct::ResolutionNanosecond) && a.dayOfWeek == b.dayOfWeek;
}

constexpr OrvTimeStruct Date(uint16_t year, uint32_t month, uint16_t day)
{
    return OrvTimeStruct(year, static_cast<OrvMonth>(month), day, OrvSunday, 0, 0, 0, 0, 0, 0);
}

constexpr OrvTimeStruct kEndStruct = Date(1600, 12, 31);

} // namespace

TEST_CASE(InstantsAndStructuresAreOneAnother)
{
    struct {
        OrvTime time;
        OrvTimeStruct structure;
        OrvResult result;
    } const cases[] = {
        {OrvTimeFloor, OrvTimeStruct(1970, OrvJanuary, 1, OrvThursday, 0, 0, 0, 0, 0, 0), ORV_S_OK},
        {OrvTimeFloor + 123456789, OrvTimeStruct(1970, OrvJanuary, 1, OrvThursday, 0, 0, 12, 345, 678, 900),
         ORV_S_OK},
        {125911584000000000, OrvTimeStruct(2000, OrvJanuary, 1, OrvSaturday, 0, 0, 0, 0, 0, 0), ORV_S_OK},
        {125962559999999999, OrvTimeStruct(2000, OrvFebruary, 28, OrvMonday, 23, 59, 59, 999, 999, 900),
         ORV_S_OK},
        {OrvTimeEnd, kEndStruct, ORV_S_END_OF_TIME},
    };
    for (const auto &c : cases) {
        test::Note("time", c.time);
        OrvTimeStruct structure;
        OrvTime time = 7;
        CHECK_EQUAL(OrvConvertOrvTimeToStruct(structure, c.time), c.result);
        CHECK(SameExact(structure, c.structure));
        structure.dayOfWeek = static_cast<OrvDayOfWeek>(99); // never read
        CHECK_EQUAL(OrvConvertStructToOrvTime(time, structure), c.result);
        CHECK_EQUAL(time, c.time);
    }
    OrvTimeStruct untouched;
    CHECK_EQUAL(OrvConvertOrvTimeToStruct(untouched, OrvTimeFloor - 1), ORV_E_TIME_OUT_OF_RANGE);
    CHECK(SameExact(untouched, OrvTimeStruct()));
    CHECK(!kEndStruct.IsValid());
}

TEST_CASE(InstantsBeyondThePlatformsSignAreOneWay)
{
    struct {
        OrvTime time;
        OrvTimeStruct structure;
    } const cases[] = {
        {0x7FFFFFFFFFFFFFFF, OrvTimeStruct(30828, OrvSeptember, 14, OrvThursday, 2, 48, 5, 477, 580, 700)},
        {0x8000000000000000, OrvTimeStruct(30828, OrvSeptember, 14, OrvThursday, 2, 48, 5, 477, 580, 800)},
        {OrvTimeEnd - 1, OrvTimeStruct(60056, OrvMay, 28, OrvSunday, 5, 36, 10, 955, 161, 400)},
    };
    for (const auto &c : cases) {
        test::Note("time", c.time);
        OrvTimeStruct structure;
        CHECK_EQUAL(OrvConvertOrvTimeToStruct(structure, c.time), ORV_S_OK);
        CHECK(SameExact(structure, c.structure));
    }
    OrvTimeStruct moved = Date(16000, 1, 1);
    CHECK_EQUAL(OrvTimeStructApplyDifference(moved, 20000 * 365 * static_cast<int64_t>(kDay)), ORV_S_OK);
    CHECK_EQUAL(moved.year, 35986);
    CHECK_EQUAL(moved.month, OrvSeptember);
}

TEST_CASE(ImpossibleStructuresAreRefused)
{
    struct {
        OrvTimeStruct structure;
        OrvResult result;
    } const cases[] = {
        {Date(1969, 12, 31), ORV_E_TIME_OUT_OF_RANGE},
        {Date(1600, 12, 30), ORV_E_TIME_OUT_OF_RANGE},
        {Date(2001, 0, 1), ORV_E_INVALID_ARGUMENT},
        {Date(2001, 0x10001, 1), ORV_E_INVALID_ARGUMENT},
        {Date(2001, 1, 0), ORV_E_INVALID_ARGUMENT},
        {Date(65535, 1, 1), ORV_E_INVALID_ARGUMENT},
        {OrvTimeStruct(2001, OrvMay, 1, OrvSunday, 24, 0, 0, 0, 0, 0), ORV_E_INVALID_ARGUMENT},
        {OrvTimeStruct(2001, OrvMay, 1, OrvSunday, 0, 0, 0, 1000, 0, 0), ORV_E_INVALID_ARGUMENT},
    };
    for (const auto &c : cases) {
        OrvTime time = 7;
        CHECK_EQUAL(OrvConvertStructToOrvTime(time, c.structure), c.result);
        CHECK_EQUAL(time, OrvTime(7));
    }
    // What lies below a millisecond carries instead.
    OrvTime time = 0;
    CHECK_EQUAL(OrvConvertStructToOrvTime(
                    time, OrvTimeStruct(1970, OrvJanuary, 1, OrvSunday, 0, 0, 0, 0, 65535, 65535)),
                ORV_S_OK);
    CHECK_EQUAL(time, OrvTimeFloor + 655350 + 655);
}

TEST_CASE(EveryDayFollowsTheCalendar)
{
    // The Gregorian rule on its own: months one by one, leap years by their definition.
    static const uint8_t kMonthLengths[] = {31, 28, 31, 30, 31, 30, 31, 31, 30, 31, 30, 31};
    OrvTime time = OrvTimeFloor;
    uint32_t dayOfWeek = OrvThursday;
    for (uint16_t year = 1970; year <= 4000; year++) {
        const bool leap = year % 4 == 0 && (year % 100 != 0 || year % 400 == 0);
        for (uint32_t month = 1; month <= 12; month++) {
            const uint16_t length = static_cast<uint16_t>(kMonthLengths[month - 1] + (month == 2 && leap));
            for (uint16_t day = 1; day <= length; day++) {
                OrvTimeStruct expected = Date(year, month, day);
                expected.dayOfWeek = static_cast<OrvDayOfWeek>(dayOfWeek);
                OrvTimeStruct structure;
                OrvTime back = 0;
                OrvDayOfWeek fast = OrvSunday;
                OrvConvertOrvTimeToStruct(structure, time);
                OrvConvertStructToOrvTime(back, structure);
                OrvGetDayOfWeek(fast, structure);
                if (!CHECK(SameExact(structure, expected)) || !CHECK_EQUAL(back, time) ||
                    !CHECK_EQUAL(static_cast<uint32_t>(fast), dayOfWeek))
                    return;
                time += kDay;
                dayOfWeek = (dayOfWeek + 1) % 7;
            }
            OrvTime none = 0;
            CHECK_EQUAL(OrvConvertStructToOrvTime(none, Date(year, month, static_cast<uint16_t>(length + 1))),
                        ORV_E_INVALID_ARGUMENT);
        }
    }
}

TEST_CASE(DaysOfTheWeekOutsideTheFastRange)
{
    struct {
        uint16_t year;
        uint32_t month;
        uint16_t day;
        OrvResult result;
        uint32_t dayOfWeek;
    } const cases[] = {
        {2000, 2, 31, ORV_S_OK, OrvThursday},         {1753, 1, 1, ORV_S_OK, OrvMonday},
        {1800, 2, 28, ORV_S_OK, OrvFriday},           {1800, 3, 1, ORV_S_OK, OrvSaturday},
        {1904, 2, 29, ORV_S_OK, OrvMonday},           {1899, 12, 31, ORV_S_OK, OrvSunday},
        {9999, 12, 31, ORV_S_OK, OrvFriday},          {10000, 1, 1, ORV_S_OK, OrvSaturday},
        {1752, 12, 31, ORV_E_TIME_OUT_OF_RANGE, 77},  {2000, 2, 32, ORV_E_INVALID_ARGUMENT, 77},
        {2000, 2, 0, ORV_E_INVALID_ARGUMENT, 77},     {2000, 13, 1, ORV_E_INVALID_ARGUMENT, 77},
        {1600, 12, 31, ORV_S_END_OF_TIME, OrvSunday},
    };
    for (const auto &c : cases) {
        test::Note("year", c.year);
        auto dayOfWeek = static_cast<OrvDayOfWeek>(77);
        CHECK_EQUAL(OrvGetDayOfWeek(dayOfWeek, c.year, static_cast<OrvMonth>(c.month), c.day), c.result);
        CHECK_EQUAL(static_cast<uint32_t>(dayOfWeek), c.dayOfWeek);
    }
    auto dayOfWeek = OrvSunday;
    CHECK_EQUAL(OrvGetDayOfWeek(dayOfWeek, OrvTimeStruct()), ORV_S_OK);
    CHECK_EQUAL(static_cast<uint32_t>(dayOfWeek), static_cast<uint32_t>(OrvThursday));
}

TEST_CASE(DurationsLoseTheirSignAndOverflow)
{
    struct {
        int64_t difference;
        OrvTimeDifferenceStruct structure;
        OrvResult result;
    } const cases[] = {
        {0, OrvTimeDifferenceStruct(), ORV_S_OK},
        {kHour, OrvTimeDifferenceStruct(0, 1, 0, 0, 0, 0, 0), ORV_S_OK},
        {-kHour, OrvTimeDifferenceStruct(0, 1, 0, 0, 0, 0, 0), ORV_S_OK},
        {937840050067 + 8, OrvTimeDifferenceStruct(1, 2, 3, 4, 5, 7, 500), ORV_S_OK},
        {65536 * static_cast<int64_t>(kDay) - 1, OrvTimeDifferenceStruct(65535, 23, 59, 59, 999, 999, 900),
         ORV_S_OK},
        {65536 * static_cast<int64_t>(kDay), OrvTimeDifferenceStruct(), ORV_E_DURATION_OUT_OF_RANGE},
        {INT64_MIN, OrvTimeDifferenceStruct(), ORV_E_DURATION_OUT_OF_RANGE},
    };
    for (const auto &c : cases) {
        test::Note("difference", static_cast<uint64_t>(c.difference));
        OrvTimeDifferenceStruct structure;
        structure.Initialize(9, 9, 9, 9, 9, 9, 9);
        CHECK_EQUAL(OrvConvertOrvTimeDifferenceToStruct(structure, c.difference), c.result);
        CHECK(structure.Equal(c.structure));
        int64_t back = 0;
        CHECK_EQUAL(OrvConvertStructToOrvTimeDifference(back, structure), ORV_S_OK);
        if (OrvSucceeded(c.result))
            CHECK_EQUAL(back, c.difference < 0 ? -c.difference : c.difference);
    }
}

TEST_CASE(DurationsBetweenInstants)
{
    struct {
        OrvTime first;
        OrvTime second;
        OrvTimeDifferenceStruct structure;
        OrvResult result;
    } const cases[] = {
        {OrvTimeFloor, OrvTimeFloor + kHour, OrvTimeDifferenceStruct(0, 1, 0, 0, 0, 0, 0), ORV_S_OK},
        // Days are cut to 16 bits, and the hours, which follow the cut days, too.
        {OrvTimeFloor, OrvTimeFloor + 65537 * kDay + kHour, OrvTimeDifferenceStruct(1, 1, 0, 0, 0, 0, 0),
         ORV_S_OK},
        {OrvTimeFloor + 1, OrvTimeFloor, OrvTimeDifferenceStruct(), ORV_W_NEGATIVE_DURATION},
        {OrvTimeFloor - 1, OrvTimeFloor, OrvTimeDifferenceStruct(9, 9, 9, 9, 9, 9, 9),
         ORV_E_TIME_OUT_OF_RANGE},
        {OrvTimeFloor, OrvTimeEnd, OrvTimeDifferenceStruct(9, 9, 9, 9, 9, 9, 9), ORV_E_TIME_OUT_OF_RANGE},
        {OrvTimeEnd, OrvTimeEnd, OrvTimeDifferenceStruct(9, 9, 9, 9, 9, 9, 9), ORV_E_TIME_OUT_OF_RANGE},
    };
    for (const auto &c : cases) {
        test::Note("second", c.second);
        OrvTimeDifferenceStruct structure(9, 9, 9, 9, 9, 9, 9);
        CHECK_EQUAL(OrvConvertOrvTimeDifferenceToStruct(structure, c.first, c.second), c.result);
        CHECK(structure.Equal(c.structure));
    }
}

TEST_CASE(StructuresMoveByDifferences)
{
    OrvTimeStruct structure = Date(1999, 12, 31);
    CHECK_EQUAL(OrvTimeStructApplyDifference(structure, static_cast<int64_t>(kDay) + kHour), ORV_S_OK);
    CHECK(SameExact(structure, OrvTimeStruct(2000, OrvJanuary, 1, OrvSaturday, 1, 0, 0, 0, 0, 0)));
    CHECK_EQUAL(OrvTimeStructApplyDifference(structure, -40 * 366 * static_cast<int64_t>(kDay)),
                ORV_E_TIME_OUT_OF_RANGE);
    CHECK_EQUAL(structure.year, 2000);
    structure = kEndStruct;
    CHECK_EQUAL(OrvTimeStructApplyDifference(structure, 0), ORV_S_OK);
    CHECK(SameExact(structure, kEndStruct));
    CHECK_EQUAL(OrvTimeStructApplyDifference(structure, 1), ORV_E_TIME_OUT_OF_RANGE);
    CHECK(SameExact(structure, kEndStruct));
}

TEST_CASE(ComparisonsGoAsDeepAsTheyAreAsked)
{
    const OrvTimeStruct base(2000, OrvMay, 10, OrvSunday, 5, 5, 5, 5, 5, 5);
    OrvTimeStruct changed[9];
    for (OrvTimeStruct &other : changed)
        other = base;
    changed[0].year++;
    changed[1].month = OrvJune;
    changed[2].day++;
    changed[3].hour++;
    changed[4].minute++;
    changed[5].second++;
    changed[6].millisecond++;
    changed[7].microsecond++;
    changed[8].nanosecond++;
    for (int field = 1; field <= 9; field++) {
        for (int resolution = -1; resolution <= 10; resolution++) {
            test::Note("resolution", static_cast<uint32_t>(resolution));
            const bool seen = field <= (resolution < 1 ? 1 : resolution);
            CHECK_EQUAL(base.Compare(changed[field - 1], resolution), seen ? -1 : 0);
            CHECK_EQUAL(changed[field - 1].Compare(base, resolution), seen ? 1 : 0);
            CHECK_EQUAL(base.Less(changed[field - 1], resolution), seen);
            CHECK_EQUAL(base.Equal(changed[field - 1], resolution), !seen);
        }
    }
    OrvTimeStruct otherDay = base;
    otherDay.dayOfWeek = OrvFriday;
    CHECK(base.Equal(otherDay, 99));
    OrvTimeStruct negativeMonth = base;
    negativeMonth.month = static_cast<OrvMonth>(0xFFFFFFFF);
    CHECK_EQUAL(negativeMonth.Compare(base, OrvTimeStruct::ResolutionMonth), -1);

    const OrvTimeDifferenceStruct duration(1, 2, 3, 4, 5, 6, 7);
    for (uint32_t field = 0; field < 7; field++) {
        OrvTimeDifferenceStruct other = duration;
        reinterpret_cast<uint16_t *>(&other)[field]++;
        CHECK(!other.Equal(duration));
    }
    CHECK(Date(1601, 13, 40).IsValid());
    CHECK(Date(1600, 13, 0).IsValid());
    CHECK(!Date(1600, 12, 31).IsValid());
    CHECK(!Date(1599, 12, 31).IsValid());
}

// The representations of others, at their borders and through their oddities.

#include "orv/time/foreign_time.h"

#include "harness/test.h"
#include "nt/nt.h"
#include "orv/runtime/result.h"
#include "orv/time/time.h"

struct timeval {
    int32_t tv_sec;
    int32_t tv_usec;
};

struct tm {
    int tm_sec, tm_min, tm_hour, tm_mday, tm_mon, tm_year, tm_wday, tm_yday, tm_isdst;
};

namespace
{

constexpr OrvTime kSecond = OrvTimeUnitsPerSecond;

} // namespace

TEST_CASE(SecondsSince1970)
{
    struct {
        OrvTime time;
        int64_t seconds;
        OrvResult result;
    } const cases[] = {
        {OrvTimeFloor, 0, ORV_S_OK},
        {OrvTimeFloor + kSecond - 1, 0, ORV_S_OK},
        {OrvTimeFloor + 0x80000000 * kSecond, 0x80000000, ORV_S_OK},
        {OrvTimeEnd, 1833029933770, ORV_S_OK},
        {OrvTimeFloor - 1, 77, ORV_E_TIME_OUT_OF_RANGE},
    };
    for (const auto &c : cases) {
        test::Note("time", c.time);
        int64_t seconds = 77;
        timeval value = {77, 77};
        CHECK_EQUAL(OrvConvertOrvTimeToTimeT(seconds, c.time), c.result);
        CHECK_EQUAL(seconds, c.seconds);
        CHECK_EQUAL(OrvConvertOrvTimeToTimeval(value, c.time), c.result);
        CHECK_EQUAL(value.tv_sec, static_cast<int32_t>(c.seconds)); // wraps from 2038 on
    }
    OrvTime time = 0;
    CHECK_EQUAL(OrvConvertTimeTToOrvTime(time, -11644473600), ORV_S_OK);
    CHECK_EQUAL(time, OrvTime(0));
    CHECK_EQUAL(OrvConvertTimeTToOrvTime(time, 1), ORV_S_OK);
    CHECK_EQUAL(time, OrvTimeFloor + kSecond);
    CHECK_EQUAL(OrvConvertTimeTToOrvTime(time, INT64_MAX), ORV_S_OK);

    timeval value = {};
    CHECK_EQUAL(OrvConvertOrvTimeToTimeval(value, OrvTimeFloor + kSecond + 9999999), ORV_S_OK);
    CHECK_EQUAL(value.tv_usec, 999999);
    CHECK_EQUAL(OrvConvertTimevalToOrvTime(time, {5, 7}), ORV_S_OK);
    CHECK_EQUAL(time, OrvTimeFloor + 5 * kSecond + 70);
    CHECK_EQUAL(OrvConvertTimevalToOrvTime(time, {-1, 0}), ORV_E_TIME_OUT_OF_RANGE);
    CHECK_EQUAL(time, OrvTime(116444735990000000)); // stored all the same
}

TEST_CASE(FileTimeHalves)
{
    uint32_t high = 7;
    uint32_t low = 7;
    CHECK_EQUAL(OrvConvertOrvTimeToWin32FileTime(high, low, OrvTimeEnd), ORV_E_TIME_OUT_OF_RANGE);
    CHECK_EQUAL(high, 7u);
    CHECK_EQUAL(OrvConvertOrvTimeToWin32FileTime(high, low, 0x0123456789ABCDEF), ORV_S_OK);
    OrvTime time = 0;
    CHECK_EQUAL(OrvConvertWin32FileTimeToOrvTime(time, high, low), ORV_S_OK);
    CHECK_EQUAL(time, OrvTime(0x0123456789ABCDEF));
    CHECK_EQUAL(low, 0x89ABCDEFu);
}

TEST_CASE(BrokenDownTimesOfTheCLibrary)
{
    struct {
        tm value;
        OrvResult result;
        OrvTime time;
    } const cases[] = {
        {{0, 0, 0, 1, 0, 70, 9, 9, 9}, ORV_S_OK, OrvTimeFloor},
        {{0, 0, 0, 1, 0, 0, 0, 0, 0}, ORV_S_OK, 94354848000000000}, // 1900
        {{1, 0, 0, 1, 0, -299, 0, 0, 0}, ORV_S_OK, kSecond},        // 1601
        {{58, 59, 23, 29, 1, 100, 0, 0, 0}, ORV_S_OK, 125963423980000000},
        {{0, 0, 0, 31, 11, -300, 0, 0, 0}, ORV_E_INVALID_ARGUMENT, 7},
        {{0, 0, 0, 29, 1, 101, 0, 0, 0}, ORV_E_INVALID_ARGUMENT, 7},
        {{60, 0, 0, 1, 0, 70, 0, 0, 0}, ORV_E_INVALID_ARGUMENT, 7},
        {{0x10000, 0, 0, 1, 0, 70, 0, 0, 0}, ORV_S_OK, OrvTimeFloor}, // the low 16 bits
    };
    for (const auto &c : cases) {
        OrvTime time = 7;
        CHECK_EQUAL(OrvConvertTMToOrvTime(time, c.value), c.result);
        CHECK_EQUAL(time, c.time);
        CHECK_EQUAL(OrvNtDllConvertTMToOrvTime(time, c.value), c.result);
    }
    tm value = {};
    CHECK_EQUAL(OrvConvertOrvTimeToTM(value, OrvTimeFloor), ORV_E_NOT_PROVIDED);
    CHECK_EQUAL(OrvConvertOrvTimeToTM(value, OrvTimeFloor - 1), ORV_E_TIME_OUT_OF_RANGE);
    CHECK_EQUAL(value.tm_mday, 0);
}

TEST_CASE(VariantDates)
{
    double days = 7;
    CHECK_EQUAL(OrvConvertOrvTimeToVariantTime(days, OrvTimeFloor), ORV_S_OK);
    CHECK(days == 25569.0);
    CHECK_EQUAL(OrvConvertOrvTimeToVariantTime(days, OrvTimeFloor + OrvTimeUnitsPerDay / 4), ORV_S_OK);
    CHECK(days == 25569.25);
    CHECK_EQUAL(OrvConvertOrvTimeToVariantTime(days, OrvTimeFloor - 1), ORV_E_TIME_OUT_OF_RANGE);
    CHECK_EQUAL(OrvConvertOrvTimeToVariantTime(days, OrvTimeEnd), ORV_E_TIME_OUT_OF_RANGE);
    CHECK(days == 25569.25);

    struct {
        double days;
        OrvResult result;
        OrvTime time;
    } const cases[] = {
        {25569, ORV_S_OK, OrvTimeFloor},
        {25569.5, ORV_S_OK, OrvTimeFloor + OrvTimeUnitsPerDay / 2},
        {25568, ORV_E_TIME_OUT_OF_RANGE, OrvTimeFloor - OrvTimeUnitsPerDay},
        {-1, ORV_E_TIME_OUT_OF_RANGE, 94352256000000000},
        {12000000, ORV_S_OK, 10462353120000000000u}, // above 2^63
        {-1e9, ORV_E_TIME_OUT_OF_RANGE, 0},
        {1e300, ORV_E_TIME_OUT_OF_RANGE, 0},
        {__builtin_nan(""), ORV_E_TIME_OUT_OF_RANGE, 0},
    };
    for (const auto &c : cases) {
        test::Note("expected", c.time);
        OrvTime time = 7;
        CHECK_EQUAL(OrvConvertVariantTimeToOrvTime(time, c.days), c.result);
        CHECK_EQUAL(time, c.time);
    }
}

TEST_CASE(SystemTimeFieldsHaveRanges)
{
    const _SYSTEMTIME good = {2000, 2, 2, 29, 23, 59, 58, 999};
    OrvTimeStruct structure;
    CHECK_EQUAL(OrvConvertSYSTEMTIMEToOrvTimeStruct(structure, good), ORV_S_OK);
    CHECK(structure.Equal(OrvTimeStruct(2000, OrvFebruary, 29, OrvTuesday, 23, 59, 58, 999, 0, 0), 9));
    CHECK_EQUAL(static_cast<uint32_t>(structure.dayOfWeek), 2u);
    _SYSTEMTIME back = {};
    CHECK_EQUAL(OrvConvertOrvTimeStructToSYSTEMTIME(back, structure), ORV_S_OK);
    CHECK(__builtin_memcmp(&back, &good, sizeof good) == 0);
    OrvTime time = 0;
    CHECK_EQUAL(OrvConvertSYSTEMTIMEToOrvTime(time, good), ORV_S_OK);
    CHECK_EQUAL(OrvConvertOrvTimeToSYSTEMTIME(back, time), ORV_S_OK);
    CHECK(__builtin_memcmp(&back, &good, sizeof good) == 0);

    const _SYSTEMTIME extremes[] = {{1970, 1, 0, 1, 0, 0, 0, 0}, {30827, 12, 6, 31, 23, 59, 59, 999}};
    for (const _SYSTEMTIME &extreme : extremes)
        CHECK_EQUAL(OrvConvertSYSTEMTIMEToOrvTimeStruct(structure, extreme), ORV_S_OK);

    // Each field just outside its range, both ways.
    struct {
        uint32_t field;
        USHORT value;
    } const bad[] = {{0, 1969}, {0, 30828}, {1, 0},  {1, 13}, {2, 7},   {3, 0},
                     {3, 32},   {4, 24},    {5, 60}, {6, 60}, {7, 1000}};
    for (const auto &b : bad) {
        test::Note("field", b.field);
        _SYSTEMTIME value = good;
        reinterpret_cast<USHORT *>(&value)[b.field] = b.value;
        OrvTimeStruct untouched;
        CHECK_EQUAL(OrvConvertSYSTEMTIMEToOrvTimeStruct(untouched, value), ORV_E_FIELD_OUT_OF_RANGE);
        CHECK(untouched.Equal(OrvTimeStruct(), 9));
        const OrvTimeStruct same(value.wYear, static_cast<OrvMonth>(value.wMonth), value.wDay,
                                 static_cast<OrvDayOfWeek>(value.wDayOfWeek), value.wHour, value.wMinute,
                                 value.wSecond, value.wMilliseconds, 0, 0);
        CHECK_EQUAL(OrvConvertOrvTimeStructToSYSTEMTIME(back, same), ORV_E_FIELD_OUT_OF_RANGE);
    }
    OrvTimeStruct parts[] = {structure, structure};
    parts[0].microsecond = 1000;
    parts[1].nanosecond = 1000;
    for (const OrvTimeStruct &above : parts)
        CHECK_EQUAL(OrvConvertOrvTimeStructToSYSTEMTIME(back, above), ORV_E_FIELD_OUT_OF_RANGE);
    _SYSTEMTIME noSuchDay = good;
    noSuchDay.wDay = 30;
    CHECK_EQUAL(OrvConvertSYSTEMTIMEToOrvTimeStruct(structure, noSuchDay), ORV_S_OK);
    CHECK_EQUAL(OrvConvertSYSTEMTIMEToOrvTime(time, noSuchDay), ORV_E_INVALID_ARGUMENT);
    CHECK_EQUAL(OrvConvertOrvTimeToSYSTEMTIME(back, OrvTimeEnd), ORV_E_FIELD_OUT_OF_RANGE);
    CHECK_EQUAL(OrvConvertOrvTimeToSYSTEMTIME(back, OrvTimeFloor - 1), ORV_E_TIME_OUT_OF_RANGE);
}

TEST_CASE(DosDatesAndTimes)
{
    struct {
        OrvTimeStruct structure;
        uint16_t date;
        uint16_t time;
    } const cases[] = {
        {OrvTimeStruct(1980, OrvJanuary, 1, OrvSunday, 0, 0, 0, 0, 0, 0), 0x0021, 0},
        {OrvTimeStruct(2107, OrvDecember, 31, OrvSunday, 23, 59, 58, 0, 0, 0), 0xFF9F, 0xBF7D},
    };
    for (const auto &c : cases) {
        OrvTime time = 0;
        OrvTime back = 0;
        uint16_t date = 0;
        uint16_t timeOfDay = 0;
        CHECK_EQUAL(OrvConvertStructToOrvTime(time, c.structure), ORV_S_OK);
        // An odd second and a fraction are cut.
        CHECK_EQUAL(OrvConvertOrvTimeToDosDateTime(date, timeOfDay, time + kSecond + 5), ORV_S_OK);
        CHECK_EQUAL(date, c.date);
        CHECK_EQUAL(timeOfDay, c.time);
        CHECK_EQUAL(OrvConvertDosDateTimeToOrvTime(back, date, timeOfDay), ORV_S_OK);
        CHECK_EQUAL(back, time);
    }
    struct {
        uint16_t date;
        uint16_t time;
    } const bad[] = {{0x0001, 0},      {0x01A1, 0},      {0x0020, 0},
                     {0x0021, 0xC000}, {0x0021, 0x001E}, {0x0021, 0x0780}};
    for (const auto &b : bad) {
        test::Note("date", b.date);
        OrvTime time = 7;
        CHECK_EQUAL(OrvConvertDosDateTimeToOrvTime(time, b.date, b.time), ORV_E_INVALID_ARGUMENT);
        CHECK_EQUAL(time, OrvTime(7));
    }
    uint16_t date = 7;
    uint16_t timeOfDay = 7;
    OrvTime time = 0;
    OrvConvertStructToOrvTime(time, OrvTimeStruct(2108, OrvJanuary, 1, OrvSunday, 0, 0, 0, 0, 0, 0));
    CHECK_EQUAL(OrvConvertOrvTimeToDosDateTime(date, timeOfDay, time), ORV_E_INVALID_ARGUMENT);
    CHECK_EQUAL(OrvConvertOrvTimeToDosDateTime(date, timeOfDay, OrvTimeFloor), ORV_E_INVALID_ARGUMENT);
    CHECK_EQUAL(OrvConvertOrvTimeToDosDateTime(date, timeOfDay, OrvTimeEnd), ORV_E_INVALID_ARGUMENT);
    CHECK_EQUAL(OrvConvertOrvTimeToDosDateTime(date, timeOfDay, OrvTimeFloor - 1), ORV_E_TIME_OUT_OF_RANGE);
    CHECK_EQUAL(date, 7);
}

// The clock that keeps GUIDs apart, and what a GUID is made of when the platform reserves no times.

#include "random/guid_source.h"

#include "harness/replace.h"
#include "harness/test.h"
#include "orv/time/clock.h"

TEST_CASE(GuidClockNeverRepeatsItself)
{
    detail::GuidClock clock;
    CHECK(!clock.IsStarted());
    clock.Start(0x7FFF);
    CHECK(clock.IsStarted());
    struct {
        uint64_t now;
        uint64_t time;
        uint32_t sequence;
    } const cases[] = {
        {100, 100, 0x3FFF}, // as the clock shows
        {100, 101, 0x3FFF}, // it stands still
        {100, 102, 0x3FFF}, // it has moved, but less than was counted
        {104, 104, 0x3FFF}, // it has caught up
        {200, 200, 0x3FFF}, //
        {150, 150, 0x0000}, // it was set back: another sequence, which wraps
        {149, 149, 0x0001}, // set back by less than was counted
        {149, 150, 0x0001}, //
    };
    for (const auto &c : test::Rows(cases)) {
        CHECK_EQUAL(clock.Take(c.now), c.time);
        CHECK_EQUAL(clock.Sequence(), c.sequence);
    }
}

TEST_CASE(GuidPartsAreOfThisProcess)
{
    OrvTime before = 0;
    OrvGetSystemTime(before);
    const test::ReplacedFunction reservesNothing(L"ntdll.dll", "ZwAllocateUuids", 0, 16);
    detail::GuidParts first = {};
    detail::GuidParts second = {};
    CHECK_EQUAL(detail::TakeGuidParts(first), 0);
    CHECK_EQUAL(detail::TakeGuidParts(second), 0);
    CHECK(first.time >= before && first.time < before + OrvTimeUnitsPerDay); // counted as the platform counts
    CHECK(second.time > first.time || second.sequence != first.sequence);
    CHECK(first.node[0] & 1); // a multicast address
    for (uint32_t i = 0; i < 6; i++)
        CHECK_EQUAL(first.node[i], second.node[i]);
}

// No two GUIDs are equal, however fast and by however many threads they are made; and what making them takes
// from a platform that reserves times.

#include "harness/replace.h"
#include "harness/test.h"
#include "harness/thread.h"
#include "orv/random/create_guid.h"
#include "orv/runtime/result.h"
#include "random/guid_source.h"

namespace
{

constexpr const wchar_t *kNtdll = L"ntdll.dll";
constexpr ULONG kRetry = 0xC000022D;
constexpr ULONG kRange = 10000;

constexpr uint64_t kStart = 0x01DA0123456789AB;
uint64_t clockTime = kStart; ///< of the platform, which reserves times only once it has moved
uint64_t reservedTime = kStart;
uint32_t reservations;
uint32_t sleeps;

NTSTATUS NTAPI ReserveTimes(ULONGLONG *time, ULONG *range, ULONG *sequence, uint8_t *node)
{
    if (reservedTime == clockTime)
        return static_cast<NTSTATUS>(kRetry);
    *time = reservedTime;
    *range = kRange;
    *sequence = 0xABCD1234;
    for (uint8_t i = 0; i < 6; i++)
        node[i] = 10 + i;
    reservedTime = clockTime;
    reservations++;
    return 0;
}

NTSTATUS NTAPI SleepAndMoveClock(BOOLEAN, const LONGLONG *interval)
{
    sleeps += *interval == -10000;
    clockTime += kRange;
    return 0;
}

constexpr uint64_t kTimeBits = (uint64_t{1} << 60) - 1; // as many as a GUID holds

uint64_t TimeOf(const _OrvGuid &guid)
{
    constexpr uint8_t kPlaces[8] = {6, 7, 4, 5, 0, 1, 2, 3}; // highest byte first
    uint64_t time = 0;
    for (const uint8_t place : kPlaces)
        time = time << 8 | (guid.bytes[place] ^ detail::kGuidMask[place]);
    return time & kTimeBits;
}

} // namespace

TEST_CASE(ReservedTimesAreUsedUpOneByOne)
{
    const test::ReplacedFunction reserves(kNtdll, "ZwAllocateUuids", ReserveTimes);
    const test::ReplacedFunction moves(kNtdll, "ZwDelayExecution", SleepAndMoveClock);
    reservations = sleeps = 0;
    const uint64_t firstTime = clockTime;
    for (uint32_t i = 0; i < 3 * kRange; i++) {
        _OrvGuid guid = {};
        CHECK_EQUAL(OrvGuidUtils::CreateGuid(guid), 0);
        if (!CHECK_EQUAL(TimeOf(guid), (firstTime + i) & kTimeBits))
            break;
        CHECK_EQUAL((guid.bytes[6] ^ detail::kGuidMask[6]) >> 4, 1); // the version
        constexpr uint8_t kRest[] = {0x92, 0x34, 10, 11, 12, 13, 14, 15};
        for (uint32_t byte = 0; byte < sizeof kRest; byte++)
            CHECK_EQUAL(guid.bytes[8 + byte] ^ detail::kGuidMask[8 + byte], kRest[byte]);
    }
    CHECK_EQUAL(reservations, 3u);
    CHECK_EQUAL(sleeps, 3u);
}

TEST_CASE(RefusedTimesAreNoGuid)
{
    struct {
        ULONG status;
        OrvResult result;
    } const cases[] = {
        {kRetry, static_cast<OrvResult>(0xC00704D5)}, // the clock stands still for good
        {0x80000005, ORV_E_BUFFER_TOO_SMALL},
        {0xC0000022, ORV_E_ACCESS_DENIED},
    };
    for (const auto &c : cases) {
        const test::ReplacedFunction refuses(kNtdll, "ZwAllocateUuids", c.status, 16);
        const test::ReplacedFunction moves(kNtdll, "ZwDelayExecution", SleepAndMoveClock);
        _OrvGuid guid = {{1, 2, 3}};
        sleeps = 0;
        CHECK_EQUAL(OrvGuidUtils::CreateGuid(guid), c.result);
        CHECK(guid.bytes[0] == 1 && guid.bytes[1] == 2 && guid.bytes[2] == 3);
        CHECK_EQUAL(sleeps, c.status == kRetry ? 99u : 0u);
    }
}

TEST_CASE(GuidsOfAllThreadsDiffer)
{
    constexpr uint32_t kThreads = 3;
    constexpr uint32_t kEach = 1000;
    static _OrvGuid made[kThreads * kEach];
    uint32_t failed[kThreads] = {};
    auto work = [&failed](uint32_t thread) {
        for (uint32_t i = 0; i < kEach; i++)
            failed[thread] += OrvGuidUtils::CreateGuid(made[thread * kEach + i]) != 0;
    };
    test::RunOnThreads(kThreads, work);
    CHECK_EQUAL(failed[0] + failed[1] + failed[2], 0u);
    uint32_t equal = 0;
    for (uint32_t i = 0; i < kThreads * kEach; i++) {
        for (uint32_t k = 0; k < i; k++)
            equal += __builtin_memcmp(made[i].bytes, made[k].bytes, sizeof made[i].bytes) == 0;
    }
    CHECK_EQUAL(equal, 0u);
}

// The spin lock between threads, and what its guard holds when.

#include "orv/sync/spin_lock.h"

#include "harness/replace.h"
#include "harness/test.h"
#include "harness/thread.h"
#include "harness/usage.h"

TEST_CASE(SpinLockGuardHoldsWhatItSays)
{
    OrvSpinLock first = {0, 0};
    OrvSpinLock second = {0, 7};
    {
        OrvSpinLockLocker empty;
        empty.Release();
        const OrvSpinLockLocker null(nullptr, true);
        const OrvSpinLockLocker unasked(&first, false);
        CHECK_EQUAL(first.locked, 0);
        OrvSpinLockLocker locker(&first, true);
        CHECK_EQUAL(first.locked, 1);
        CHECK_EQUAL(locker.Lock(&second), 0);
        CHECK_EQUAL(first.locked, 0);
        CHECK_EQUAL(second.locked, 1);
        locker.Release();
        CHECK_EQUAL(second.locked, 0);
        // Released, it does not touch the lock again, whoever holds it now.
        const OrvSpinLockLocker other(&second, true);
        locker.Release();
        CHECK_EQUAL(second.locked, 1);
        locker.Lock(&first);
    }
    CHECK_EQUAL(first.locked, 0);
    CHECK_EQUAL(second.locked, 0);
    CHECK_EQUAL(second.sleepMs, 7u);
}

namespace
{

OrvSpinLock held = {0, 1};
OrvSpinLock wanted;
LONGLONG asked; ///< 1 when no interval was given
uint32_t askedTimes;

/// What the holder of the wanted lock does while another thread sleeps: at the third time it gives it back.
NTSTATUS NTAPI WatchSleep(BOOLEAN alertable, const LONGLONG *interval)
{
    asked = alertable || held.locked != 1 ? 2 : interval ? *interval : 1;
    if (++askedTimes == 3)
        wanted.locked = 0;
    return STATUS_SUCCESS;
}

} // namespace

TEST_CASE(SpinLockSleepsAsLongAsItIsToldAndHoldsTheOldOneMeanwhile)
{
    struct {
        uint32_t sleepMs;
        LONGLONG interval; ///< in 100 ns, from now on
    } const cases[] = {{0, 0}, {429497, -4294970000}, {0xFFFFFFFE, -42949672940000}, {0xFFFFFFFF, 1}};
    for (const auto &c : test::Rows(cases)) {
        wanted = {1, c.sleepMs};
        askedTimes = 0;
        OrvSpinLockLocker locker(&held, true);
        {
            const test::ReplacedFunction watched(L"ntdll.dll", "ZwDelayExecution", WatchSleep);
            locker.Lock(&wanted);
        }
        CHECK_EQUAL(askedTimes, 3u);
        CHECK_EQUAL(asked, c.interval);
        CHECK_EQUAL(held.locked, 0);
        CHECK_EQUAL(wanted.locked, 1);
    }
}

TEST_CASE(SpinLockHoldsUnderLoad)
{
    constexpr uint32_t kThreads = 8;
    constexpr uint32_t kRounds = 10000;
    const test::Usage before = test::CountUsage();
    for (uint32_t sleepMs = 0; sleepMs < 2; sleepMs++) {
        OrvSpinLock lock = {0, sleepMs};
        volatile uint32_t count = 0;
        auto work = [&](uint32_t) {
            for (uint32_t i = 0; i < kRounds; i++) {
                const OrvSpinLockLocker locker(&lock, true);
                const uint32_t seen = count;
                if (i % 64 == 0)
                    test::Sleep(0); // lets the others come and wait
                count = seen + 1;
            }
        };
        test::RunOnThreads(kThreads, work);
        CHECK_EQUAL(count, kThreads * kRounds);
        CHECK_EQUAL(lock.locked, 0);
    }
    CHECK_USAGE(before);
}

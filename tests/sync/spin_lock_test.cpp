// The spin lock between threads, and what its guard holds when.

#include "orv/sync/spin_lock.h"

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

TEST_CASE(SpinLockIsHeldUntilTheNextOneIs)
{
    OrvSpinLock held = {0, 1};
    OrvSpinLock wanted = {1, 1};
    volatile bool isTaken = false;
    auto work = [&] {
        OrvSpinLockLocker locker(&held, true);
        locker.Lock(&wanted);
        isTaken = true;
        while (held.locked == 0) // until the main thread has seen it free
            test::Sleep(1);
    };
    test::Thread thread(work);
    test::Sleep(30);
    CHECK(!isTaken);
    CHECK_EQUAL(held.locked, 1);
    wanted.locked = 0;
    for (uint32_t i = 0; i < 500 && !isTaken; i++)
        test::Sleep(1);
    CHECK(isTaken);
    CHECK_EQUAL(held.locked, 0);
    CHECK_EQUAL(wanted.locked, 1);
    held.locked = 1;
    thread.Join();
    CHECK_EQUAL(wanted.locked, 0);
}

TEST_CASE(SpinLockLetsOneThreadInAtATime)
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

namespace
{

// 429,497 ms are 2^32 + 2,704 units of 100 ns.
OrvSpinLock slowLock = {1, 429497};
volatile bool slowIsTaken;

ULONG NTAPI TakeSlowLock(PVOID)
{
    const OrvSpinLockLocker locker(&slowLock, true);
    slowIsTaken = true;
    return 0;
}

} // namespace

TEST_CASE(SpinLockSleepsAsLongAsItIsTold)
{
    // The thread is left asleep; the end of the program ends it.
    HANDLE thread = nullptr;
    CHECK_EQUAL(RtlCreateUserThread(NtCurrentProcess(), nullptr, false, 0, 0, 0, TakeSlowLock, nullptr,
                                    &thread, nullptr),
                0);
    ZwClose(thread);
    test::Sleep(30);
    slowLock.locked = 0;
    test::Sleep(30);
    CHECK(!slowIsTaken);
}

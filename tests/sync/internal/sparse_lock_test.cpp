// The events of a sparse lock manager: how many there are at each moment, and what happens when there is none
// to be had. Calls through the imports' slots stand for what other threads do meanwhile.

#include "orv/sync/sparse_lock.h"

#include "harness/memory.h"
#include "harness/test.h"
#include "harness/thread.h"
#include "harness/usage.h"
#include "nt/teb.h"
#include "orv/runtime/result.h"
#include "orv/sync/sparse_lock_manager.h"
#include "sync/internal/redirected.h"

IMPORT_SLOT(RtlEnterCriticalSection, 4);
IMPORT_SLOT(ZwCreateEvent, 20);
IMPORT_SLOT(ZwWaitForSingleObject, 12);

namespace
{

using Wait = Redirected<decltype(ZwWaitForSingleObject)>;
using Enter = Redirected<decltype(RtlEnterCriticalSection)>;
using Create = Redirected<decltype(ZwCreateEvent)>;

constexpr LONGLONG kNow = 0;
constexpr uint32_t kMostLocks = 10000;
OrvBasSparseNonrecursiveLock locks[kMostLocks];

volatile long &WordOf(OrvBasSparseNonrecursiveLock &lock)
{
    return *reinterpret_cast<volatile long *>(&lock);
}

uint32_t AssignedCount(const OrvBasSparseLockManager &manager)
{
    return reinterpret_cast<const uint32_t *>(&manager)[2];
}

uint32_t IdleCount(const OrvBasSparseLockManager &manager)
{
    return reinterpret_cast<const uint32_t *>(&manager)[6];
}

/// Locks that are all contended at once. One thread plays all parts: while it waits for one lock, it goes on
/// to contend for the next, and comes back as the holder that hands over.
struct Crowd {
    OrvBasSparseLockManager manager;
    uint32_t count = 0, depth = 0, mostAssigned = 0, mostIdle = 0, faults = 0, threadId = 0;

    OrvBasSparseNonrecursiveLock &Lock() const { return locks[depth * 7919 % count]; }

    void Contend()
    {
        OrvBasSparseNonrecursiveLock &lock = Lock();
        faults += lock.Acquire(&manager) != ORV_S_OK;
        faults += lock.Acquire(&manager) != ORV_S_OK || WordOf(lock) != 1;
        faults += lock.Release(&manager) != ORV_S_OK || WordOf(lock) != 0;
        if (IdleCount(manager) > mostIdle)
            mostIdle = IdleCount(manager);
    }
};

Crowd *crowd;

NTSTATUS NTAPI WaitInTheCrowd(HANDLE event, BOOLEAN alertable, const LONGLONG *timeout)
{
    if (CurrentThreadId() != crowd->threadId)
        return Wait::original(event, alertable, timeout);
    OrvBasSparseNonrecursiveLock &lock = crowd->Lock();
    if (++crowd->depth < crowd->count)
        crowd->Contend();
    else
        crowd->mostAssigned = AssignedCount(crowd->manager);
    crowd->faults += Wait::original(event, false, &kNow) != STATUS_TIMEOUT;
    crowd->faults += lock.Release(&crowd->manager) != ORV_S_OK;
    return Wait::original(event, false, &kNow);
}

// What other threads do to the first lock meanwhile: the one that waits stays alone, another gives up its
// claim.

NTSTATUS NTAPI WaitAndBeAlone(HANDLE event, BOOLEAN, const LONGLONG *)
{
    WordOf(locks[0]) = 1;
    return Wait::original(event, false, &kNow);
}

NTSTATUS NTAPI WithdrawAndEnter(RTL_CRITICAL_SECTION *section)
{
    WordOf(locks[0]) = 1;
    return Enter::original(section);
}

uint32_t refusals;
bool withdraws;

NTSTATUS NTAPI CreateAfterRefusals(HANDLE *event, ACCESS_MASK access, const OBJECT_ATTRIBUTES *attributes,
                                   ULONG type, BOOLEAN initialState)
{
    if (refusals-- != 0)
        return kQuota;
    if (!withdraws)
        return Create::original(event, access, attributes, type, initialState);
    WordOf(locks[0]) = 1;
    return kQuota;
}

} // namespace

TEST_CASE(SparseLockManagerKeepsIdleEventsWithinBounds)
{
    struct {
        uint32_t minimumIdle, idlePercent, count, mostIdle, idleAtEnd;
    } const cases[] = {
        {0, 0, 10, 0, 0},
        {2, 50, 10, 3, 2},
        {3, 0xFFFFFFFF, 20, 20, 20},
        {100, 25, kMostLocks, 2000, 100},
    };
    const test::Usage before = test::CountUsage();
    for (const auto &c : test::Rows(cases)) {
        Crowd current;
        current.count = c.count;
        crowd = &current;
        CHECK_EQUAL(current.manager.Initialize(c.minimumIdle, c.idlePercent), ORV_S_OK);
        CHECK_EQUAL(current.manager.Initialize(77, 77), ORV_E_ALREADY_EXISTS); // does not count
        {
            const Wait redirected(ZwWaitForSingleObjectSlot, WaitInTheCrowd);
            auto work = [&] {
                current.threadId = CurrentThreadId();
                current.Contend();
            };
            const test::Thread thread(work, 0x1000000);
        }
        CHECK_EQUAL(current.faults, 0u);
        CHECK_EQUAL(current.mostAssigned, c.count);
        CHECK_EQUAL(AssignedCount(current.manager), 0u);
        CHECK_EQUAL(current.mostIdle, c.mostIdle);
        CHECK_EQUAL(IdleCount(current.manager), c.idleAtEnd);
        CHECK_EQUAL(test::CountUsage().handles, before.handles + c.idleAtEnd);
    }
    CHECK_USAGE(before);
}

TEST_CASE(SparseLockLosesNothingWhenThereIsNoEvent)
{
    const test::Usage before = test::CountUsage();
    {
        OrvBasSparseNonrecursiveLock &lock = locks[0];
        OrvBasSparseLockManager manager;
        const auto check = [&](OrvResult result, OrvResult expected, long word, uint32_t assigned,
                               uint32_t idle) {
            CHECK_EQUAL(result, expected);
            CHECK_EQUAL(WordOf(locks[0]), word);
            CHECK_EQUAL(AssignedCount(manager), assigned);
            CHECK_EQUAL(IdleCount(manager), idle);
        };
        const auto acquire = [&](const auto &) { return lock.Acquire(&manager); };
        CHECK_EQUAL(manager.Initialize(1, 0), ORV_S_OK);
        const test::Usage initialised = test::CountUsage(); // some platforms allocate for a critical section
        check(lock.Acquire(&manager), ORV_S_OK, 1, 0, 0);
        check(acquire(Refuse<kQuota>(ZwCreateEventSlot)), kQuotaResult, 1, 0, 0);
        check(acquire(test::RefusingHeap()), ORV_E_OUT_OF_MEMORY, 1, 0, 0);
        CHECK_USAGE(initialised);
        check(acquire(Refuse<kQuota>(RtlEnterCriticalSectionSlot)), kQuotaResult, 2, 0, 0);

        // The releaser tries until it has an event; the waiter comes then, is awake at once, and gives it
        // back.
        const Create create(ZwCreateEventSlot, CreateAfterRefusals);
        refusals = 3;
        check(lock.Release(&manager), ORV_S_OK, 1, 1, 0);
        CHECK_EQUAL(refusals, 0xFFFFFFFF);
        check(acquire(Wait(ZwWaitForSingleObjectSlot, WaitAndBeAlone)), ORV_S_OK, 1, 0, 1);

        // The waiter has gone when the releaser comes into the critical section: an event is on loan.
        check(acquire(Refuse<STATUS_SUCCESS>(ZwWaitForSingleObjectSlot)), ORV_S_OK, 2, 1, 0);
        {
            const Enter redirected(RtlEnterCriticalSectionSlot, WithdrawAndEnter);
            check(lock.Release(&manager), ORV_S_OK, 0, 0, 1);
        }

        // It goes while the releaser tries to get an event.
        OrvBasSparseLockManager other;
        CHECK_EQUAL(other.Initialize(0, 0), ORV_S_OK);
        WordOf(lock) = 2;
        refusals = 2;
        withdraws = true;
        check(lock.Release(&other), ORV_S_OK, 0, 0, 1);
    }
    CHECK_USAGE(before);
}

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

constexpr NTSTATUS kQuota = static_cast<NTSTATUS>(0xC0000044); // ERROR_NOT_ENOUGH_QUOTA
constexpr auto kQuotaResult = static_cast<OrvResult>(0xC0070718);

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
    uint32_t count = 0;
    OrvBasSparseLockManager manager;
    uint32_t depth = 0;
    uint32_t mostAssigned = 0;
    uint32_t mostIdle = 0;
    uint32_t faults = 0;
    uint32_t threadId = 0;
    decltype(&ZwWaitForSingleObject) wait = nullptr;

    void Contend();
};

constexpr uint32_t kMostLocks = 10000;
OrvBasSparseNonrecursiveLock locks[kMostLocks];
Crowd *crowd;

NTSTATUS NTAPI WaitInTheCrowd(HANDLE event, BOOLEAN alertable, const LONGLONG *timeout)
{
    if (CurrentThreadId() != crowd->threadId)
        return crowd->wait(event, alertable, timeout);
    OrvBasSparseNonrecursiveLock &lock = locks[crowd->depth++ * 7919 % crowd->count];
    if (crowd->depth < crowd->count)
        crowd->Contend();
    const LONGLONG now = 0;
    crowd->faults += crowd->wait(event, false, &now) != STATUS_TIMEOUT;
    crowd->faults += lock.Release(&crowd->manager) != ORV_S_OK;
    return crowd->wait(event, false, &now);
}

void Crowd::Contend()
{
    OrvBasSparseNonrecursiveLock &lock = locks[depth * 7919 % count];
    faults += lock.Acquire(&manager) != ORV_S_OK;
    faults += lock.Acquire(&manager) != ORV_S_OK || WordOf(lock) != 1;
    faults += lock.Release(&manager) != ORV_S_OK || WordOf(lock) != 0;
    const uint32_t assigned = AssignedCount(manager) + 1;
    mostAssigned = assigned > mostAssigned ? assigned : mostAssigned;
    mostIdle = IdleCount(manager) > mostIdle ? IdleCount(manager) : mostIdle;
}

/// What to do to `lock` in place of other threads, when it waits or comes into the critical section.
OrvBasSparseNonrecursiveLock *lock;
decltype(&ZwWaitForSingleObject) originalWait;
decltype(&RtlEnterCriticalSection) originalEnter;
decltype(&ZwCreateEvent) originalCreate;
uint32_t refusals;
bool withdraws;

NTSTATUS NTAPI WaitAndBeAlone(HANDLE event, BOOLEAN, const LONGLONG *)
{
    WordOf(*lock) = 1;
    const LONGLONG now = 0;
    return originalWait(event, false, &now);
}

NTSTATUS NTAPI WithdrawAndEnter(RTL_CRITICAL_SECTION *section)
{
    WordOf(*lock) = 1;
    return originalEnter(section);
}

NTSTATUS NTAPI CreateAfterRefusals(HANDLE *event, ACCESS_MASK access, const OBJECT_ATTRIBUTES *attributes,
                                   ULONG type, BOOLEAN initialState)
{
    if (refusals-- != 0)
        return kQuota;
    if (!withdraws)
        return originalCreate(event, access, attributes, type, initialState);
    WordOf(*lock) = 1;
    return kQuota;
}

} // namespace

TEST_CASE(SparseLockManagerKeepsIdleEventsWithinBounds)
{
    struct {
        uint32_t minimumIdle;
        uint32_t idlePercent;
        uint32_t count;
        uint32_t mostIdle;
        uint32_t idleAtEnd;
    } const cases[] = {
        {0, 0, 10, 0, 0},
        {1, 0, 1, 1, 1},
        {4, 0, 10, 4, 4},
        {2, 50, 10, 3, 2},
        {0, 200, 10, 7, 2},
        {0, 99, 1, 0, 0},
        {3, 0xFFFFFFFF, 20, 20, 20},
        {100, 25, kMostLocks, 2000, 100},
    };
    const test::Usage before = test::CountUsage();
    for (const auto &c : cases) {
        test::Note("case", static_cast<uint32_t>(&c - cases));
        Crowd current;
        current.count = c.count;
        crowd = &current;
        CHECK_EQUAL(current.manager.Initialize(c.minimumIdle, c.idlePercent), ORV_S_OK);
        {
            const Redirected redirected(ZwWaitForSingleObjectSlot, WaitInTheCrowd);
            current.wait = redirected.original;
            auto work = [&] {
                current.threadId = CurrentThreadId();
                current.Contend();
            };
            test::Thread thread(work, 0x1000000);
            thread.Join();
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
        OrvBasSparseNonrecursiveLock contended;
        lock = &contended;
        OrvBasSparseLockManager manager;
        CHECK_EQUAL(manager.Initialize(1, 0), ORV_S_OK);
        CHECK_EQUAL(contended.Acquire(&manager), ORV_S_OK);
        {
            const auto refused = Refuse<kQuota>(ZwCreateEventSlot);
            CHECK_EQUAL(contended.Acquire(&manager), kQuotaResult);
        }
        {
            const test::RefusingHeap refusing;
            CHECK_EQUAL(contended.Acquire(&manager), ORV_E_OUT_OF_MEMORY);
        }
        CHECK_EQUAL(AssignedCount(manager) + IdleCount(manager), 0u);
        CHECK_USAGE(before);
        CHECK_EQUAL(WordOf(contended), 1);
        {
            const auto refused = Refuse<kQuota>(RtlEnterCriticalSectionSlot);
            CHECK_EQUAL(contended.Acquire(&manager), kQuotaResult);
            CHECK_EQUAL(WordOf(contended), 2);
            CHECK_EQUAL(contended.Release(&manager), kQuotaResult);
            CHECK_EQUAL(WordOf(contended), 2);
        }

        // The releaser tries until it has an event to wake the waiter with.
        const Redirected create(ZwCreateEventSlot, CreateAfterRefusals);
        originalCreate = create.original;
        refusals = 3;
        CHECK_EQUAL(contended.Release(&manager), ORV_S_OK);
        CHECK_EQUAL(refusals, 0xFFFFFFFF);
        CHECK_EQUAL(WordOf(contended), 1);
        CHECK_EQUAL(AssignedCount(manager), 1u);
        {
            // The waiter comes, is awake at once, and gives back the event.
            const Redirected redirected(ZwWaitForSingleObjectSlot, WaitAndBeAlone);
            originalWait = redirected.original;
            CHECK_EQUAL(contended.Acquire(&manager), ORV_S_OK);
            CHECK_EQUAL(AssignedCount(manager), 0u);
            CHECK_EQUAL(IdleCount(manager), 1u);
            CHECK_EQUAL(contended.Release(&manager), ORV_S_OK);
        }
        {
            // The waiter has gone when the releaser comes into the critical section: an event is on loan.
            const auto wait = Refuse<STATUS_SUCCESS>(ZwWaitForSingleObjectSlot);
            CHECK_EQUAL(contended.Acquire(&manager), ORV_S_OK);
            CHECK_EQUAL(contended.Acquire(&manager), ORV_S_OK);
            CHECK_EQUAL(AssignedCount(manager), 1u);
            const Redirected redirected(RtlEnterCriticalSectionSlot, WithdrawAndEnter);
            originalEnter = redirected.original;
            CHECK_EQUAL(contended.Release(&manager), ORV_S_OK);
            CHECK_EQUAL(WordOf(contended), 0);
            CHECK_EQUAL(AssignedCount(manager), 0u);
            CHECK_EQUAL(IdleCount(manager), 1u);
        }
        // The waiter goes while the releaser tries to get an event.
        OrvBasSparseLockManager other;
        CHECK_EQUAL(other.Initialize(0, 0), ORV_S_OK);
        WordOf(contended) = 2;
        refusals = 2;
        withdraws = true;
        CHECK_EQUAL(contended.Release(&other), ORV_S_OK);
        CHECK_EQUAL(WordOf(contended), 0);
    }
    CHECK_USAGE(before);
}

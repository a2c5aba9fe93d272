// Sparse locks between threads. What they borrow and give back is looked at from inside.

#include "orv/sync/sparse_lock.h"

#include "harness/test.h"
#include "harness/thread.h"
#include "harness/usage.h"
#include "orv/runtime/result.h"
#include "orv/sync/sparse_lock_manager.h"

namespace
{

struct Item {
    OrvBasSparseNonrecursiveLock lock;
    volatile uint32_t left = 0, right = 0;
};

constexpr uint32_t kItems = 10000;
constinit Item items[kItems];

uint32_t WordOf(const OrvBasSparseNonrecursiveLock &lock)
{
    return *reinterpret_cast<const volatile uint32_t *>(&lock);
}

} // namespace

TEST_CASE(SparseLockNeedsItsManagerOnlyWhenContended)
{
    OrvBasSparseNonrecursiveLock lock;
    OrvBasSparseLockManager uncreated;
    OrvBasSparseLockManager *const managers[] = {nullptr, &uncreated};
    for (OrvBasSparseLockManager *const manager : managers) {
        CHECK_EQUAL(lock.Acquire(manager), ORV_S_OK);
        CHECK_EQUAL(lock.Acquire(manager), manager ? ORV_E_INVALID_STATE : ORV_E_INVALID_ARGUMENT);
        CHECK_EQUAL(WordOf(lock), 1u);
        CHECK_EQUAL(lock.Release(manager), ORV_S_OK);
        CHECK_EQUAL(WordOf(lock), 0u);
        CHECK_EQUAL(lock.Release(manager), ORV_E_NOT_OWNER);
    }
}

// If a refused thread counted itself only for a moment, a holder that releases then would hand the lock to
// nobody, and the next thread would come in beside its owner.
TEST_CASE(SparseLockIsNotTouchedByARefusedThread)
{
    OrvBasSparseNonrecursiveLock lock;
    OrvBasSparseLockManager uncreated;
    OrvBasSparseLockManager *const managers[] = {nullptr, &uncreated};
    for (OrvBasSparseLockManager *const manager : managers) {
        constexpr uint32_t kLooks = 30000000; // many time slices, should there be but one processor
        volatile uint32_t attempts = 0;
        volatile bool ends = false;
        uint32_t refused = 0, touched = 0;
        CHECK_EQUAL(lock.Acquire(nullptr), ORV_S_OK);
        auto intrude = [&] {
            for (; !ends; attempts = attempts + 1)
                refused += OrvFailed(lock.Acquire(manager));
        };
        test::Thread intruder(intrude);
        CHECK(test::Eventually([&] { return attempts != 0; }));
        for (uint32_t i = 0; i < kLooks && touched == 0; i++)
            touched += WordOf(lock) != 1;
        ends = true;
        intruder.Join();
        CHECK_EQUAL(refused, attempts);
        CHECK_EQUAL(touched, 0u);
        CHECK_EQUAL(lock.Release(nullptr), ORV_S_OK);
    }
}

TEST_CASE(SparseLocksHoldUnderLoad)
{
    constexpr uint32_t kThreads = 8;
    struct {
        uint32_t items, rounds;
    } const cases[] = {{1, 3000}, {3, 1000}, {kItems, 1}};
    const test::Usage before = test::CountUsage();
    for (const auto &c : test::Rows(cases)) {
        OrvBasSparseLockManager manager;
        CHECK_EQUAL(manager.Initialize(2, 50), ORV_S_OK);
        uint32_t faults[kThreads] = {};
        auto work = [&](uint32_t self) {
            for (uint32_t i = 0; i < c.items * c.rounds; i++) {
                Item &item = items[i % c.items];
                faults[self] += item.lock.Acquire(&manager) != ORV_S_OK;
                item.left = item.left + 1;
                if ((i + self) % 4 == 0)
                    test::Sleep(0); // lets the others come and wait
                faults[self] += item.left != item.right + 1;
                item.right = item.right + 1;
                faults[self] += item.lock.Release(&manager) != ORV_S_OK;
            }
        };
        test::RunOnThreads(kThreads, work);
        for (const uint32_t count : faults)
            CHECK_EQUAL(count, 0u);
        for (uint32_t i = 0; i < c.items; i++) {
            if (items[i].right != kThreads * c.rounds || WordOf(items[i].lock) != 0)
                CHECK_EQUAL(i, kItems);
            items[i].left = 0;
            items[i].right = 0;
        }
        CHECK(test::CountUsage().handles <= before.handles + 2);
    }
    CHECK_USAGE(before);
}

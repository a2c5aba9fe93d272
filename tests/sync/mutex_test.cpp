// Mutexes and their owners.

#include "orv/sync/mutex.h"

#include "harness/thread.h"
#include "orv/runtime/ntdll_entry_points.h"
#include "orv/runtime/result.h"
#include "sync/objects.h"

namespace
{

constexpr auto kNotOwner = static_cast<OrvResult>(0xC0070120);

/// What another thread gets, which ends without releasing.
OrvResult AcquireElsewhere(OrvBasMutex &mutex, int timeoutMs)
{
    OrvResult result = 0;
    auto acquire = [&] { result = mutex.Acquire(timeoutMs); };
    test::Thread(acquire).Join();
    return result;
}

} // namespace

TEST_CASE(MutexBelongsToOneThread)
{
    for (uint32_t initialOwner = 0; initialOwner < 2; initialOwner++) {
        OrvBasMutex mutex;
        CHECK_EQUAL(mutex.Release(), ORV_E_INVALID_HANDLE);
        CHECK_EQUAL(mutex.Create(initialOwner != 0), ORV_S_OK);
        CHECK_EQUAL(mutex.Acquire(0), ORV_S_OK);
        CHECK_EQUAL(mutex.Release(), ORV_S_OK);
        CHECK_EQUAL(mutex.Release(), initialOwner ? ORV_S_OK : kNotOwner);
        CHECK_EQUAL(AcquireElsewhere(mutex, 1000), ORV_S_OK);
        CHECK_EQUAL(mutex.Acquire(1000), ORV_S_ABANDONED);
        CHECK_EQUAL(AcquireElsewhere(mutex, 10), ORV_W_TIMEOUT);
        CHECK_EQUAL(mutex.Release(), ORV_S_OK);
        CHECK_EQUAL(mutex.Acquire(0), ORV_S_OK); // it was said once
    }
}

TEST_CASE(MutexNeedsItsEntryPoint)
{
    OrvBasMutex mutex;
    OrvNtdllTableDestroy();
    CHECK_EQUAL(mutex.Create(false), ORV_E_NOT_SUPPORTED);
    CHECK(!mutex.IsInitialized());
    CHECK_EQUAL(OrvNtdllTableInitialize(), ORV_S_OK);
}

// Mutexes and their owners.

#include "orv/sync/mutex_holder.h"

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

TEST_CASE(MutexHolderHoldsWhatItSays)
{
    OrvBasMutex first, second, empty, forward;
    CHECK_EQUAL(first.Create(false), ORV_S_OK);
    CHECK_EQUAL(second.Create(false), ORV_S_OK);
    forward.AttachForward(&first);
    {
        OrvBasMutexHolder holder(&first, -1);
        CHECK_EQUAL(AcquireElsewhere(first, 0), ORV_W_TIMEOUT);
        CHECK_EQUAL(holder.Lock(&second, 0), ORV_S_OK);
        CHECK_EQUAL(AcquireElsewhere(first, 0), ORV_S_OK); // released; and now abandoned
        CHECK_EQUAL(holder.Lock(&first, 0), ORV_S_ABANDONED);
        CHECK(holder.IsHeld() && holder.GetResult() == ORV_S_ABANDONED);
        CHECK_EQUAL(second.Release(), kNotOwner);
    }
    CHECK_EQUAL(first.Release(), kNotOwner);

    OrvBasMutex *const refused[] = {nullptr, &empty, &forward};
    for (OrvBasMutex *const mutex : refused) {
        OrvBasMutexHolder holder(&first, 0);
        CHECK_EQUAL(holder.Lock(mutex, 0), mutex ? ORV_E_INVALID_STATE : ORV_E_INVALID_ARGUMENT);
        CHECK(!holder.IsHeld());
        CHECK_EQUAL(first.Release(), kNotOwner); // given back all the same
    }
    OrvBasMutexHolder holder(&first, 0);
    holder.DetachWithoutReleasing();
    CHECK(!holder.IsHeld());
    CHECK_EQUAL(first.Release(), ORV_S_OK);
}

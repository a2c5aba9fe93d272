// A lock of one word, for data that needs a lock for each of very many items, of which few are ever
// contended.
//
// While only one thread at a time wants the lock, acquire and release are one interlocked instruction each,
// and nothing else is touched. When a second thread arrives, the lock borrows an event from a manager; it
// returns the event when no thread waits any more. The lock does not remember its manager: all operations on
// one lock must name the same one.
//
// It is not recursive: a thread that acquires it twice waits for ever. A release passes the lock directly to
// a waiting thread; threads do not compete for it. If a thread ends while it holds the lock, the lock is
// never released.

#pragma once

#include "orv/base.h"
#include "orv/runtime/result.h"
#include "orv/sync/interlocked.h"

class OrvBasSparseLockManager;

/// A lock whose bytes are all zeros is free.
class OrvBasSparseNonrecursiveLock
{
public:
    /// A free lock.
    ///
    /// A global lock is initialised by the compiler, so it can be acquired before any code has run. A
    /// compiler that instead called this imported constructor at start-up would free a lock that a thread may
    /// already hold. Declare the lock `constinit`, where the language has it: such a compiler then refuses
    /// it.
    ORV_API constexpr OrvBasSparseNonrecursiveLock() : contenders_(0) {}
    OrvBasSparseNonrecursiveLock(const OrvBasSparseNonrecursiveLock &) = delete;
    OrvBasSparseNonrecursiveLock &operator=(const OrvBasSparseNonrecursiveLock &) = delete;

    /// Acquires the lock, waiting as long as necessary.
    ///
    /// Returns 0. When the lock is contended, also ORV_E_OUT_OF_MEMORY, or the converted status, when there
    /// is no event to wait on; ORV_E_INVALID_ARGUMENT when the manager is null and ORV_E_INVALID_STATE when
    /// it is not initialized, and such a call never touches the lock. After a failure the calling thread does
    /// not hold the lock, and the lock is as it was. The one exception: when the manager's critical section
    /// cannot be entered, which the platform does not let happen, the claim to the lock stays.
    ORV_API ORV_ALWAYS_INLINE OrvResult Acquire(OrvBasSparseLockManager *manager)
    {
        return _InterlockedCompareExchange(&contenders_, 1, 0) == 0 ? ORV_S_OK : Contend(manager);
    }

    /// Releases the lock, which the calling thread must hold. If threads wait for it, one of them gets it. As
    /// long as there is no event to wake that thread with, this yields the processor and tries again.
    ///
    /// Returns 0; ORV_E_NOT_OWNER when the lock is free. When the lock is contended, also the failures of
    /// Acquire that concern the manager, and then the calling thread still holds the lock.
    ORV_API ORV_ALWAYS_INLINE OrvResult Release(OrvBasSparseLockManager *manager)
    {
        return _InterlockedCompareExchange(&contenders_, 0, 1) == 1 ? ORV_S_OK : ReleaseContended(manager);
    }

private:
    ORV_API OrvResult Contend(OrvBasSparseLockManager *manager);
    ORV_API OrvResult ReleaseContended(OrvBasSparseLockManager *manager);

    long contenders_; ///< threads that hold the lock or wait for it; changed by interlocked instructions only
};

static_assert(sizeof(OrvBasSparseNonrecursiveLock) == 4, "fixed layout");

// The spin lock: two words that threads of one process share, and the scope guard that acquires and releases
// them.
//
// A thread that finds the lock held sleeps and tries again; it never spins. So the lock suits work that takes
// only a few instructions and is seldom contended: then acquire and release are one locked instruction each,
// there is nothing to create, and a constant-initialised lock is ready before any code has run. It is not
// recursive. If a thread ends while it holds the lock, the lock is never released.

#pragma once

#include "orv/base.h"
#include "orv/runtime/result.h"
#include "orv/sync/interlocked.h"

/// The lock itself. When its bytes are all zeros, it is free and its waiters yield the processor.
struct OrvSpinLock {
    volatile long locked; ///< 0 free, 1 held; changed only by the locker

    /// How long a waiter sleeps between attempts, in milliseconds; the owner of the structure sets it. 0 only
    /// yields the processor, which does not help a holder of a lower priority. With 0xFFFFFFFF the system's
    /// sleep is given no interval at all. The result depends on the system: where it refuses the call at
    /// once, as Windows does, waiters spin; where it sleeps for ever, a waiter never wakes.
    uint32_t sleepMs;
};

static_assert(sizeof(OrvSpinLock) == 8 && offsetof(OrvSpinLock, sleepMs) == 4, "fixed layout");

/// Holds at most one spin lock, until its scope ends. The lock must outlive it.
class OrvSpinLockLocker
{
public:
    /// Holds nothing.
    ORV_API OrvSpinLockLocker() : spinLock_(nullptr), held_(false) {}

    /// Acquires the lock when it is not null and `acquire` is true; holds nothing otherwise.
    ORV_API ORV_ALWAYS_INLINE OrvSpinLockLocker(OrvSpinLock *spinLock, bool acquire)
        : spinLock_(nullptr), held_(false)
    {
        if (spinLock && acquire)
            Lock(spinLock);
    }

    OrvSpinLockLocker(const OrvSpinLockLocker &) = delete;
    OrvSpinLockLocker &operator=(const OrvSpinLockLocker &) = delete;

    ORV_API ORV_ALWAYS_INLINE ~OrvSpinLockLocker() { Release(); }

    /// Acquires the lock, waiting as long as necessary, and only then releases the one that was held:
    /// acquiring the same lock twice waits for ever. The lock must not be null.
    ///
    /// Always returns 0.
    ORV_API ORV_ALWAYS_INLINE OrvResult Lock(OrvSpinLock *spinLock)
    {
        if (_InterlockedCompareExchange(&spinLock->locked, 1, 0) != 0)
            WaitAndLock(*spinLock);
        Release();
        spinLock_ = spinLock;
        held_ = true;
        return ORV_S_OK;
    }

    /// Releases the lock that is held, if any.
    ORV_API ORV_ALWAYS_INLINE void Release()
    {
        if (held_ && spinLock_)
            _InterlockedCompareExchange(&spinLock_->locked, 0, 1);
        held_ = false;
    }

private:
    ORV_API static void WaitAndLock(OrvSpinLock &spinLock);

    OrvSpinLock *spinLock_;
    bool held_;
};

static_assert(sizeof(OrvSpinLockLocker) == 8, "fixed layout");

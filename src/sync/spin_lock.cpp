// The contended half of the spin lock. The uncontended half is inline, in the header.

#include "orv/sync/spin_lock.h"

#include "nt/nt.h"

void OrvSpinLockLocker::WaitAndLock(OrvSpinLock &spinLock)
{
    constexpr uint32_t kNoInterval = 0xFFFFFFFF;
    constexpr LONGLONG kMillisecond = 10000;
    do {
        // Read again each time: the lock's owner may change it while threads wait. A negative interval is
        // relative to now.
        const uint32_t sleepMs = *const_cast<const volatile uint32_t *>(&spinLock.sleepMs);
        const LONGLONG interval = -(sleepMs * kMillisecond);
        ZwDelayExecution(false, sleepMs == kNoInterval ? nullptr : &interval);
    } while (_InterlockedCompareExchange(&spinLock.locked, 1, 0) != 0);
}

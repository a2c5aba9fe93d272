// The contended half of the spin lock; the other half is in line.

#include "orv/sync/spin_lock.h"

#include "nt/nt.h"

void OrvSpinLockLocker::WaitAndLock(OrvSpinLock &spinLock)
{
    constexpr uint32_t kNoInterval = 0xFFFFFFFF;
    constexpr LONGLONG kMillisecond = 10000;
    do {
        // Read anew each time: the owner may change it while threads wait. Below zero is from now on.
        const uint32_t sleepMs = *const_cast<const volatile uint32_t *>(&spinLock.sleepMs);
        const LONGLONG interval = -(sleepMs * kMillisecond);
        ZwDelayExecution(false, sleepMs == kNoInterval ? nullptr : &interval);
    } while (_InterlockedCompareExchange(&spinLock.locked, 1, 0) != 0);
}

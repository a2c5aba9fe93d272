// The contended half of the sparse lock; the other half is in line.
//
// A thread that finds the lock taken counts itself. From then on the holder cannot free the lock by the short
// way: it comes into the manager's critical section and hands the lock over by taking off its own count and
// setting the lock's event. The event stays on loan until the thread that wakes on it finds itself alone.
// Both the waiter and the releaser borrow it when it is not there yet; the first of them does.
//
// A count is taken back inside the critical section only. The holder decides there whether somebody waits: if
// a waiter could leave after that, the event would be signalled for nobody, and the next thread would come in
// beside the owner. So a thread looks at its manager before it counts itself.

#include "orv/sync/sparse_lock.h"

#include "nt/nt.h"
#include "orv/runtime/result.h"
#include "orv/sync/sparse_lock_manager.h"

namespace
{

long Read(const long &contenders)
{
    return *const_cast<const volatile long *>(&contenders);
}

OrvResult Check(OrvBasSparseLockManager *manager)
{
    if (!manager)
        return ORV_E_INVALID_ARGUMENT;
    return manager->IsInitialized() ? ORV_S_OK : ORV_E_INVALID_STATE;
}

} // namespace

OrvResult OrvBasSparseNonrecursiveLock::Contend(OrvBasSparseLockManager *manager)
{
    OrvResult result = Check(manager);
    if (OrvFailed(result))
        return result;
    if (_InterlockedIncrement(&contenders_) == 1)
        return ORV_S_OK; // it was freed meanwhile
    OrvBasCriticalSection &section = manager->lock_;
    result = section.Acquire();
    if (OrvFailed(result))
        return result;
    void *event = manager->assigned_.Find(this);
    if (!event) {
        const bool isMine = Read(contenders_) == 1;
        if (!isMine) {
            result = manager->Lend(this, event);
            if (OrvFailed(result))
                _InterlockedDecrement(&contenders_);
        }
        if (isMine || OrvFailed(result)) {
            section.Release();
            return result;
        }
    }
    section.Release();
    ZwWaitForSingleObject(event, false, nullptr);

    if (Read(contenders_) == 1 && OrvSucceeded(section.Acquire())) {
        if (Read(contenders_) == 1)
            manager->TakeBack(this, event);
        section.Release();
    }
    return ORV_S_OK;
}

OrvResult OrvBasSparseNonrecursiveLock::ReleaseContended(OrvBasSparseLockManager *manager)
{
    if (Read(contenders_) == 0)
        return ORV_E_NOT_OWNER;
    OrvResult result = Check(manager);
    if (OrvFailed(result))
        return result;
    OrvBasCriticalSection &section = manager->lock_;
    for (;;) {
        result = section.Acquire();
        if (OrvFailed(result))
            return result;
        void *event = manager->assigned_.Find(this);
        // A claim may have been withdrawn. Taking the last count off and seeing that it is the last must be
        // one step: who came in between would wait for a hand-over that never comes.
        if (_InterlockedCompareExchange(&contenders_, 0, 1) == 1) {
            if (event)
                manager->TakeBack(this, event);
            section.Release();
            return ORV_S_OK;
        }
        if (event || OrvSucceeded(manager->Lend(this, event))) {
            // From here on the lock is another thread's, which may even free its memory once it is awake;
            // the event stays on loan until then.
            _InterlockedDecrement(&contenders_);
            section.Release();
            ZwSetEvent(event, nullptr);
            return ORV_S_OK;
        }
        section.Release();
        const LONGLONG yield = 0;
        ZwDelayExecution(false, &yield);
    }
}

// The contended half of the sparse lock. The uncontended half is inline, in the header.
//
// A thread that finds the lock taken increments the lock's count. From then on the holder cannot free the
// lock by the short way: it enters the manager's critical section, decrements the count for itself, and
// passes the lock on by setting the lock's event. The waiter or the releaser borrows the event, whichever
// needs it first. The event stays on loan until a thread that was woken by it finds no other waiter.
//
// A waiter withdraws its count only inside the critical section, where the holder also decides whether a
// thread waits. If a waiter could leave after that decision, the event would be signalled with no waiter, and
// the next thread would enter while the lock has an owner. So a thread checks its manager before it
// increments the count.

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
        return ORV_S_OK; // the lock was freed meanwhile
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
        // A waiter may have withdrawn its count. The test for the last count and its removal must be one
        // step: a thread that came in between would wait for a signal that never comes.
        if (_InterlockedCompareExchange(&contenders_, 0, 1) == 1) {
            if (event)
                manager->TakeBack(this, event);
            section.Release();
            return ORV_S_OK;
        }
        if (event || OrvSucceeded(manager->Lend(this, event))) {
            // After the decrement the lock belongs to another thread, which may even free the lock's memory
            // once it is awake. The event stays on loan until then.
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

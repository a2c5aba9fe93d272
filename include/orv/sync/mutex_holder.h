// The scope guard of mutexes, with a name or without: it holds at most one, until its scope ends.

#pragma once

#include "orv/base.h"
#include "orv/runtime/result.h"
#include "orv/sync/mutex.h"

/// The mutex must exist as long as it is held. Only the thread that owns the mutex uses the holder.
class OrvBasMutexHolder
{
public:
    /// Acquires the mutex, waiting up to `timeoutMs` milliseconds, -1 for ever. When that fails, when the
    /// mutex is null or when it was not created, the holder holds nothing.
    OrvBasMutexHolder(OrvBasMutex *mutex, int timeoutMs) { Lock(mutex, timeoutMs); }
    OrvBasMutexHolder(const OrvBasMutexHolder &) = delete;
    OrvBasMutexHolder &operator=(const OrvBasMutexHolder &) = delete;

    /// Release.
    ~OrvBasMutexHolder() { Release(); }

    /// Acquires a mutex as the constructor does, and only then releases the one that was held before, even
    /// when the acquisition failed. After a failure the holder holds nothing.
    ///
    /// Returns 0; ORV_S_ABANDONED, a success: the mutex is held, but its owner had ended without releasing
    /// it, so what it guards may be half done; ORV_W_TIMEOUT (a failure); ORV_E_INVALID_ARGUMENT for null;
    /// ORV_E_INVALID_STATE for a mutex that was not created or opened, whose own Acquire would succeed, and
    /// for one that forwards to another waitable; otherwise the converted status.
    OrvResult Lock(OrvBasMutex *mutex, int timeoutMs)
    {
        OrvResult result = ORV_E_INVALID_ARGUMENT;
        if (mutex)
            result = mutex->GetResourceType() == OrvBasWaitableHandle ? mutex->Acquire(timeoutMs)
                                                                      : ORV_E_INVALID_STATE;
        Release();
        result_ = result;
        if (OrvSucceeded(result))
            mutex_ = mutex;
        return result;
    }

    /// Releases the mutex that is held, if any.
    void Release()
    {
        if (mutex_)
            mutex_->Release();
        mutex_ = nullptr;
    }

    /// Holds nothing from now on, without releasing: the calling thread must release the mutex itself.
    void DetachWithoutReleasing() { mutex_ = nullptr; }

    /// Whether a mutex is held.
    bool IsHeld() const { return mutex_ != nullptr; }

    /// The result of the constructor or of the last Lock: look for ORV_S_ABANDONED.
    OrvResult GetResult() const { return result_; }

private:
    OrvBasMutex *mutex_ = nullptr;
    OrvResult result_;
};

static_assert(sizeof(OrvBasMutexHolder) == 8, "fixed layout");

// An owner of the platform's critical section: the recursive lock of one process, which goes to the kernel
// only when a thread has to wait.
//
// It never moves, because the platform may keep a list of all critical sections by address. A thread must
// leave it as often as it entered. If a thread ends inside, the critical section is never free again.

#pragma once

#include "orv/base.h"

/// One critical section.
class OrvBasCriticalSection
{
public:
    /// A critical section that is not created yet.
    ORV_API OrvBasCriticalSection();
    OrvBasCriticalSection(const OrvBasCriticalSection &) = delete;
    OrvBasCriticalSection &operator=(const OrvBasCriticalSection &) = delete;

    /// Destroy.
    ORV_API ~OrvBasCriticalSection();

    /// Creates the critical section, which is then free.
    ///
    /// Returns 0; ORV_E_ALREADY_EXISTS when there is one here, which stays as it is, with the threads inside;
    /// otherwise the converted status, and then there is no critical section here.
    ORV_API OrvResult Create();

    /// Deletes the critical section, in which no thread may be, and does nothing when there is none.
    ///
    /// Returns 0 or the converted status; there is no critical section here afterwards either way.
    ORV_API OrvResult Destroy();

    /// Whether it was created and not destroyed.
    ORV_API bool IsInitialized() const { return initialized_; }

    /// Enters, waiting as long as necessary; at once when the calling thread is inside already.
    ///
    /// Returns 0; ORV_E_INVALID_STATE when there is no critical section here; otherwise the converted status.
    ORV_API OrvResult Acquire();

    /// Leaves. After as many calls as there were to Acquire, the next thread may enter. The calling thread
    /// must be inside; this is not checked.
    ///
    /// Returns as Acquire.
    ORV_API OrvResult Release();

private:
    friend class OrvBasResource; // does not need the results of entering and leaving

    void *native_[6]; ///< the platform's structure
    bool initialized_ = false;
};

static_assert(sizeof(OrvBasCriticalSection) == 28, "fixed layout");

// An unnamed kernel semaphore.

#pragma once

#include "orv/sync/waitable.h"

struct _OBJECT_ATTRIBUTES;

/// A semaphore of this process, unless its handle is passed on.
class OrvBasSemaphore : public OrvBasWaitable
{
public:
    ORV_API OrvBasSemaphore();
    ORV_API ~OrvBasSemaphore() override;

    /// Creates the semaphore.
    ///
    /// Returns 0; ORV_E_ALREADY_EXISTS when the object holds a resource; otherwise the converted status:
    /// ORV_E_INVALID_ARGUMENT when the initial count is negative or above the maximum, or the maximum is not
    /// positive. On failure the object is unchanged.
    ORV_API OrvResult Create(int initialCount, int maximumCount);

    /// Adds `count`, so that as many waits succeed. Returns 0 or the converted status: 0xC007012A
    /// (ERROR_TOO_MANY_POSTS) when the maximum would be exceeded, and then nothing is added;
    /// ORV_E_INVALID_HANDLE when there is no semaphore here.
    ORV_API OrvResult Release(int count);

    /// InternalWait, which succeeds at once for a semaphore that was never created. Any other success
    /// subtracts one from the count.
    ORV_API OrvResult Wait(int timeoutMs);

protected:
    /// Creates a semaphore with native attributes, null for none. The semaphore replaces any resource held.
    ///
    /// Returns 0; ORV_S_ALREADY_EXISTS when the attributes name a semaphore that existed, which was opened;
    /// otherwise the converted status, and the object is unchanged.
    ORV_API OrvResult InternalCreate(int initialCount, int maximumCount,
                                     const _OBJECT_ATTRIBUTES *attributes);
};

static_assert(sizeof(OrvBasSemaphore) == sizeof(OrvBasWaitable), "fixed layout");

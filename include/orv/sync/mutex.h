// An unnamed kernel mutex: recursive, and owned by the thread that acquired it. When that thread ends without
// releasing it, the next thread acquires it with a remark.

#pragma once

#include "orv/sync/waitable.h"

/// A mutex of this process, unless its handle is passed on.
class OrvBasMutex : public OrvBasWaitable
{
public:
    ORV_API OrvBasMutex();
    ORV_API ~OrvBasMutex() override;

    /// Creates the mutex, owned by the calling thread or free.
    ///
    /// Returns 0; ORV_E_ALREADY_EXISTS when the object holds a resource; ORV_E_NOT_SUPPORTED while the table
    /// of ntdll.dll entry points is empty; otherwise the converted status. On failure the object is
    /// unchanged.
    ORV_API OrvResult Create(bool initialOwner);

    /// Releases one acquisition. Returns 0 or the converted status: 0xC0070120 (ERROR_NOT_OWNER) when the
    /// calling thread is not the owner, ORV_E_INVALID_HANDLE when there is no mutex here.
    ORV_API OrvResult Release();

    /// InternalWait. ORV_S_ABANDONED is a success: the mutex was acquired. ACQUIRING A MUTEX THAT WAS NEVER
    /// CREATED SUCCEEDS TOO, because every wait on an empty waitable succeeds at once: check the result of
    /// Create, or hold the mutex by an OrvBasMutexHolder, which refuses such a mutex.
    ORV_API OrvResult Acquire(int timeoutMs);

protected:
    /// Creates a mutex by its full native name (terminated, null for none), or opens the one of that name.
    /// The mutex replaces any resource held. The handle has the rights to wait, to delete and to query, and
    /// no others. The native security descriptor may be null.
    ///
    /// Returns 0; ORV_S_ALREADY_EXISTS when a mutex of that name existed, and `initialOwner` had no effect;
    /// ORV_E_INVALID_NAME for a name of more than 32,766 characters; otherwise as Create.
    ORV_API OrvResult InternalCreate(bool initialOwner, const wchar_t *name, void *securityDescriptor);
};

static_assert(sizeof(OrvBasMutex) == sizeof(OrvBasWaitable), "fixed layout");

// An unnamed kernel mutex: recursive, owned by the thread that acquired it, and given to the next one with a
// remark when that thread ends without releasing it.

#pragma once

#include "orv/sync/waitable.h"

/// A mutex of this process, unless it is handed on by its handle.
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

    /// Gives one acquisition up. Returns 0 or the converted status: 0xC0070120 (ERROR_NOT_OWNER) when the
    /// calling thread is not the owner, ORV_E_INVALID_HANDLE when there is no mutex here.
    ORV_API OrvResult Release();

    /// InternalWait. ORV_S_ABANDONED is a success: the mutex was acquired. SO IS A MUTEX THAT WAS NEVER
    /// CREATED, as every wait on an empty waitable succeeds at once: look at the result of Create, or hold
    /// the mutex by an OrvBasMutexHolder, which refuses that.
    ORV_API OrvResult Acquire(int timeoutMs);

protected:
    /// Creates a mutex by its full native name (terminated, null for none), or opens the one of that name,
    /// and lets it take the place of any resource held. The handle may be waited on, deleted and queried, no
    /// more. The native security descriptor may be null.
    ///
    /// Returns 0; ORV_S_ALREADY_EXISTS when a mutex of that name existed, and `initialOwner` had no effect;
    /// ORV_E_INVALID_NAME for a name of more than 32,766 characters; otherwise as Create.
    ORV_API OrvResult InternalCreate(bool initialOwner, const wchar_t *name, void *securityDescriptor);
};

static_assert(sizeof(OrvBasMutex) == sizeof(OrvBasWaitable), "fixed layout");

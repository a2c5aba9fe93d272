// A reader/writer lock that processes share through a file: byte-range locks over the whole of it. Whoever
// opens the file may lock it, and the lock ends with the process at the latest.
//
// One object holds the lock at most once, in one way. It has no lock of its own for its fields: one thread at
// a time may use it.

#pragma once

#include "orv/base.h"
#include "orv/fs/file.h"
#include "orv/runtime/heap_object.h"
#include "orv/security/security_context.h"

/// One party's hold on the lock: the file that it has open, and how it locked it.
class OrvBasWinLockFileResource : public OrvHeapObject
{
public:
    ORV_API OrvBasWinLockFileResource();
    OrvBasWinLockFileResource(const OrvBasWinLockFileResource &) = delete;
    OrvBasWinLockFileResource &operator=(const OrvBasWinLockFileResource &) = delete;

    /// Close.
    ORV_API virtual ~OrvBasWinLockFileResource();

    /// Closes the file that is open and opens the one at `path` (terminated), which is made when there is
    /// none, under the context's descriptor; the context may be null. Others may read and write it meanwhile.
    /// `write` asks for the right to write, too.
    ///
    /// Returns 0; ORV_E_INVALID_ARGUMENT for a null or empty path; ORV_E_NOT_PRODUCED when the platform
    /// cannot make a full path of it; a failure of the context; otherwise the converted status, such as
    /// ORV_E_ACCESS_DENIED, ORV_E_PATH_NOT_FOUND or ORV_E_SHARING_VIOLATION. After a failure no file is open.
    ORV_API OrvResult OpenOrCreate(const wchar_t *path, OrvSecurityCtx *context, bool write);

    /// The same for a file that exists, otherwise ORV_E_FILE_NOT_FOUND.
    ORV_API OrvResult Open(const wchar_t *path, bool write);

    /// Locks the file for this object alone, waiting for at most `timeoutMs` milliseconds; 0 does not wait,
    /// -1 waits for ever. What this object locks twice is locked against itself.
    ///
    /// Where the platform takes locks only at once, they are asked for again and again, with sleeps of up to
    /// 16 ms between.
    ///
    /// Returns 0; ORV_W_TIMEOUT; ORV_E_INVALID_HANDLE when no file is open; otherwise the converted status.
    /// On failure nothing changes.
    ORV_API OrvResult AcquireExclusive(int timeoutMs);

    /// The same, shared with all others that want it shared.
    ORV_API OrvResult AcquireShared(int timeoutMs);

    /// Gives the lock back; the object counts as not locked then, whatever the outcome.
    ///
    /// Returns 0; ORV_E_INVALID_HANDLE when no file is open; otherwise the converted status, a failure
    /// also when it was not locked.
    ORV_API OrvResult Release();

    /// Closes the file, and with it every lock of this object. Returns 0 or the converted status.
    ORV_API OrvResult Close();

    /// Whether a file is open.
    ORV_API bool IsInitialized() const;

private:
    enum LockState : uint32_t { kNotOpen = 0, kNotLocked = 1, kShared = 2, kExclusive = 3 };

    OrvResult OpenFile(const wchar_t *path, void *securityDescriptor, bool write, uint32_t disposition);
    OrvResult Acquire(bool exclusive, int timeoutMs);

    LockState lockState_ = kNotOpen;
    OrvWinFile file_;
};

static_assert(sizeof(OrvBasWinLockFileResource) == 16, "fixed layout");

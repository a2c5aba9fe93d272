// A reader/writer lock that processes share through a file, by byte-range locks over the whole file. Every
// process that opens the file may lock it, and the lock ends with the process at the latest.
//
// One object holds the lock at most once, either exclusive or shared. Its fields are not locked: one thread
// at a time may use an object.

#pragma once

#include "orv/base.h"
#include "orv/fs/file.h"
#include "orv/runtime/heap_object.h"
#include "orv/security/security_context.h"

/// One user's side of the lock: the open file, and how it is locked.
class OrvBasWinLockFileResource : public OrvHeapObject
{
public:
    ORV_API OrvBasWinLockFileResource();
    OrvBasWinLockFileResource(const OrvBasWinLockFileResource &) = delete;
    OrvBasWinLockFileResource &operator=(const OrvBasWinLockFileResource &) = delete;

    /// Close.
    ORV_API virtual ~OrvBasWinLockFileResource();

    /// Closes the file that is open and opens the one at `path` (terminated). A file that does not exist is
    /// created with the context's descriptor; the context may be null. Others may read and write the file
    /// meanwhile. `write` also requests the right to write.
    ///
    /// Returns 0; ORV_E_INVALID_ARGUMENT for a null or empty path; ORV_E_NOT_PRODUCED when the platform
    /// cannot make a full path of it; a failure of the context; otherwise the converted status, such as
    /// ORV_E_ACCESS_DENIED, ORV_E_PATH_NOT_FOUND or ORV_E_SHARING_VIOLATION. After a failure no file is open.
    ORV_API OrvResult OpenOrCreate(const wchar_t *path, OrvSecurityCtx *context, bool write);

    /// The same for a file that exists; otherwise returns ORV_E_FILE_NOT_FOUND.
    ORV_API OrvResult Open(const wchar_t *path, bool write);

    /// Locks the file for this object alone, waiting for at most `timeoutMs` milliseconds; 0 does not wait,
    /// -1 waits for ever. A second Acquire on the same object conflicts with its own first lock.
    ///
    /// Where the platform cannot wait for a lock, the lock is requested again and again, with sleeps of up to
    /// 16 ms in between.
    ///
    /// Returns 0; ORV_W_TIMEOUT; ORV_E_INVALID_HANDLE when no file is open; otherwise the converted status.
    /// On failure nothing changes.
    ORV_API OrvResult AcquireExclusive(int timeoutMs);

    /// The same, but shared with all others that acquire it shared.
    ORV_API OrvResult AcquireShared(int timeoutMs);

    /// Releases the lock; afterwards the object counts as not locked, whatever the result.
    ///
    /// Returns 0; ORV_E_INVALID_HANDLE when no file is open; otherwise the converted status, which is a
    /// failure also when the file was not locked.
    ORV_API OrvResult Release();

    /// Closes the file, which also releases every lock of this object. Returns 0 or the converted status.
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

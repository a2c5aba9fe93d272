// A mutex that belongs to a file: all users of the same file share one mutex, whatever path they use, and in
// whatever session, process or account they run. The file itself is neither locked nor changed. It must
// exist, because the name of the mutex is made from its identity.

#pragma once

#include "orv/sync/win_mutex.h"

/// The mutex of one file. The inherited operations acquire and release it.
class OrvBasWinLockFile : public OrvBasWinMutex
{
public:
    ORV_API OrvBasWinLockFile();
    ORV_API ~OrvBasWinLockFile() override;

    /// Creates the mutex of the file at `path` (terminated), or opens the one that exists. The mutex replaces
    /// any resource held. Everyone may wait on it, even anonymously; where the system has integrity levels,
    /// from medium integrity on.
    ///
    /// Returns 0; ORV_S_ALREADY_EXISTS when another object shares the mutex, which `initialOwner` does not
    /// acquire then; a failure of OrvFileIdUtils::GetId, ORV_E_FILE_NOT_FOUND above all; otherwise as
    /// OrvBasWinMutex::Create. On failure the object is unchanged.
    ORV_API OrvResult Create(const wchar_t *path, bool initialOwner);

    /// Calls Destroy when there is a mutex; otherwise returns 0. A mutex that a thread owns stays owned until
    /// that thread ends.
    ORV_API OrvResult Close();
};

static_assert(sizeof(OrvBasWinLockFile) == sizeof(OrvBasWaitable), "fixed layout");

/// Holds at most one lock file, until its scope ends. The lock file must outlive it.
class OrvBasWinLockFileHolder
{
public:
    /// Acquires the lock file, waiting for at most `timeoutMs` milliseconds, -1 for ever. Null acquires
    /// nothing. IsHeld tells whether it is held.
    ORV_API OrvBasWinLockFileHolder(OrvBasWinLockFile *lockFile, int timeoutMs);
    OrvBasWinLockFileHolder(const OrvBasWinLockFileHolder &) = delete;
    OrvBasWinLockFileHolder &operator=(const OrvBasWinLockFileHolder &) = delete;
    ORV_API ~OrvBasWinLockFileHolder();

    /// Acquires `lockFile`, then releases the one that was held before, even if the acquisition failed.
    ///
    /// Returns what the wait returns: 0, ORV_S_ABANDONED (held all the same), ORV_W_TIMEOUT, or the converted
    /// status; ORV_E_INVALID_ARGUMENT for null. On failure nothing is held.
    ORV_API OrvResult Lock(OrvBasWinLockFile *lockFile, int timeoutMs);

    /// Releases the lock file that is held, if any.
    ORV_API void Release();

    /// Whether a lock file is held.
    bool IsHeld() const { return held_; }

private:
    OrvBasWinLockFile *lockFile_;
    bool held_;
};

static_assert(sizeof(OrvBasWinLockFileHolder) == 8, "fixed layout");

// A mutex that belongs to a file: whoever names the same file, by whatever path and in whatever session,
// process or account, shares one mutex with all the others. The file itself is neither locked nor changed; it
// has to exist, since its identity gives the mutex its name.

#pragma once

#include "orv/sync/win_mutex.h"

/// The mutex of one file. What it inherits acquires and releases it.
class OrvBasWinLockFile : public OrvBasWinMutex
{
public:
    ORV_API OrvBasWinLockFile();
    ORV_API ~OrvBasWinLockFile() override;

    /// Creates the mutex of the file at `path` (terminated), or opens the one that exists, and lets it take
    /// the place of any resource held. Everyone may wait on it, even anonymously; from medium integrity on,
    /// where the system has levels.
    ///
    /// Returns 0; ORV_S_ALREADY_EXISTS when another object shares the mutex, which `initialOwner` does not
    /// acquire then; a failure of OrvFileIdUtils::GetId, ORV_E_FILE_NOT_FOUND above all; otherwise as
    /// OrvBasWinMutex::Create. On failure the object is unchanged.
    ORV_API OrvResult Create(const wchar_t *path, bool initialOwner);

    /// Destroy when there is a mutex, else 0. A mutex that is owned goes on being owned until its thread
    /// ends.
    ORV_API OrvResult Close();
};

static_assert(sizeof(OrvBasWinLockFile) == sizeof(OrvBasWaitable), "fixed layout");

/// Holds at most one lock file, until its scope ends. The lock file must outlive it.
class OrvBasWinLockFileHolder
{
public:
    /// Acquires the lock file, waiting for at most `timeoutMs` milliseconds, -1 for ever. Null acquires
    /// nothing. Whether it is held, IsHeld tells.
    ORV_API OrvBasWinLockFileHolder(OrvBasWinLockFile *lockFile, int timeoutMs);
    OrvBasWinLockFileHolder(const OrvBasWinLockFileHolder &) = delete;
    OrvBasWinLockFileHolder &operator=(const OrvBasWinLockFileHolder &) = delete;
    ORV_API ~OrvBasWinLockFileHolder();

    /// Acquires `lockFile`, then releases the one that was held, whether or not that worked.
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

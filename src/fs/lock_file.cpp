// A lock on a file among all processes: a global mutex that is named after the file's identity.

#include "orv/fs/lock_file.h"

#include "orv/fs/file_id.h"
#include "orv/runtime/result.h"
#include "orv/security/security_context.h"

namespace
{

/// The name of the file's mutex: its identity as text.
struct MutexName {
    wchar_t text[2 * sizeof(OrvFileId) + 1];

    OrvResult Make(const wchar_t *path)
    {
        OrvFileId id;
        const OrvResult result = OrvFileIdUtils::GetId(id, path);
        if (OrvFailed(result))
            return result;
        _ORV_UTF16CHAR_STR name = {0, sizeof text / sizeof *text, text};
        return OrvFileIdUtils::GetString(id, name);
    }
};

/// Rights granted to everyone: exactly those that creating asks for, so that a second creator can open it.
constexpr OrvWinMutexRights kSharedRights =
    OrvWinMutexSynchronize | OrvWinMutexDelete | OrvWinMutexQueryState;

OrvResult Describe(OrvSecurityCtx &context)
{
    OrvResult result = context.Allow(OrvGroupEveryone, kSharedRights);
    if (OrvSucceeded(result))
        result = context.Allow(OrvGroupAnonymous, kSharedRights);
    if (OrvSucceeded(result))
        result = context.SetMandatoryLevel(OrvMandatoryMedium);
    return result;
}

} // namespace

OrvBasWinLockFile::OrvBasWinLockFile() = default;

OrvBasWinLockFile::~OrvBasWinLockFile() = default;

OrvResult OrvBasWinLockFile::Create(const wchar_t *path, bool initialOwner)
{
    MutexName name;
    OrvResult result = name.Make(path);
    if (OrvFailed(result))
        return result;
    OrvSecurityCtx context;
    OrvWinSecurityDescriptor *descriptor = nullptr;
    result = Describe(context);
    if (OrvSucceeded(result))
        result = context.GetSecurityDescriptor(descriptor);
    if (OrvFailed(result))
        return result;
    result = OrvBasWinMutex::Create(initialOwner, name.text, OrvBasWinSyncGlobal, descriptor);
    if (result == ORV_E_ALREADY_EXISTS)
        result = Open(name.text, OrvBasWinSyncGlobal, OrvWinMutexAllAccess);
    return result;
}

OrvResult OrvBasWinLockFile::Close()
{
    return IsInitialized() ? Destroy() : ORV_S_OK;
}

OrvBasWinLockFileHolder::OrvBasWinLockFileHolder(OrvBasWinLockFile *lockFile, int timeoutMs)
    : lockFile_(nullptr), held_(false)
{
    static_assert(offsetof(OrvBasWinLockFileHolder, held_) == 4);
    Lock(lockFile, timeoutMs);
}

OrvBasWinLockFileHolder::~OrvBasWinLockFileHolder()
{
    Release();
}

OrvResult OrvBasWinLockFileHolder::Lock(OrvBasWinLockFile *lockFile, int timeoutMs)
{
    const OrvResult result = lockFile ? lockFile->InternalWait(timeoutMs) : ORV_E_INVALID_ARGUMENT;
    Release();
    lockFile_ = lockFile;
    held_ = OrvSucceeded(result);
    return result;
}

void OrvBasWinLockFileHolder::Release()
{
    if (held_)
        lockFile_->Release();
    lockFile_ = nullptr;
    held_ = false;
}

// Locks files through NtLockFile, which completes like any other operation on a file: at once, or later
// through an event. A platform without such a completion returns STATUS_NOT_IMPLEMENTED for a call with a
// status block. Without a status block it locks at once or refuses, and then the waiting is done here.

#include "orv/fs/lock_file_resource.h"

#include "fs/nt_path.h"
#include "orv/runtime/ntdll_entry_points.h"
#include "orv/runtime/result.h"
#include "orv/sync/event.h"
#include "runtime/status.h"

namespace
{

// The whole file, including all that it may grow to.
constexpr LONGLONG kFirstByte = 0;
constexpr LONGLONG kByteCount = 0x7FFFFFFFFFFFFFFF;

constexpr int kForever = -1;

/// Whether another lock prevents this one. Platforms, and even the file systems of one platform, return
/// different statuses for that.
bool IsRefused(NTSTATUS status)
{
    return status == STATUS_LOCK_NOT_GRANTED || status == STATUS_FILE_LOCK_CONFLICT;
}

OrvResult ResultOfLock(NTSTATUS status)
{
    return IsRefused(status) || status == STATUS_CANCELLED ? ORV_W_TIMEOUT : detail::ResultFromCall(status);
}

/// Tries to lock again and again until the time is over. No call waits.
NTSTATUS LockByAsking(HANDLE file, bool exclusive, int timeoutMs)
{
    constexpr LONGLONG kMillisecond = -10000; // negative: relative to now
    constexpr uint32_t kLongestSleepMs = 16;
    const uint32_t start = OrvGetTimestamp();
    for (uint32_t sleepMs = 1;; sleepMs = sleepMs < kLongestSleepMs ? sleepMs * 2 : kLongestSleepMs) {
        const NTSTATUS status = NtLockFile(file, nullptr, nullptr, nullptr, nullptr, &kFirstByte, &kByteCount,
                                           0, true, exclusive);
        if (!IsRefused(status))
            return status;
        if (timeoutMs != kForever) {
            const uint32_t elapsedMs = OrvGetTimestamp() - start;
            if (elapsedMs >= static_cast<uint32_t>(timeoutMs))
                return status;
            const uint32_t leftMs = static_cast<uint32_t>(timeoutMs) - elapsedMs;
            sleepMs = sleepMs < leftMs ? sleepMs : leftMs;
        }
        const LONGLONG interval = kMillisecond * sleepMs;
        ZwDelayExecution(false, &interval);
    }
}

/// Asks once for the lock and waits until it is granted. Cancels the request when the time is over.
NTSTATUS LockByWaiting(HANDLE file, OrvBasEvent &completed, bool exclusive, int timeoutMs)
{
    IO_STATUS_BLOCK answer = {};
    const NTSTATUS status = NtLockFile(file, completed.GetHandle(), nullptr, nullptr, &answer, &kFirstByte,
                                       &kByteCount, 0, timeoutMs == 0, exclusive);
    if (status != STATUS_PENDING)
        return status;
    if (completed.Wait(timeoutMs) != ORV_S_OK) {
        // The lock may be granted before the request is cancelled. The request's own status tells which.
        IO_STATUS_BLOCK cancelled = {};
        ZwCancelIoFile(file, &cancelled);
        completed.Wait(kForever);
    }
    return answer.Status;
}

} // namespace

// offsetof of a class with virtual functions is conditionally supported; all compilers of this interface do.
#pragma clang diagnostic ignored "-Winvalid-offsetof"

OrvBasWinLockFileResource::OrvBasWinLockFileResource()
{
    static_assert(offsetof(OrvBasWinLockFileResource, lockState_) == 4);
    static_assert(offsetof(OrvBasWinLockFileResource, file_) == 8);
}

OrvBasWinLockFileResource::~OrvBasWinLockFileResource()
{
    Close();
}

OrvResult OrvBasWinLockFileResource::OpenFile(const wchar_t *path, void *securityDescriptor, bool write,
                                              uint32_t disposition)
{
    OrvResult result = Close();
    if (OrvFailed(result))
        return result;
    detail::NtPath nativePath;
    result = nativePath.Build(path);
    if (OrvFailed(result))
        return result;
    const OBJECT_ATTRIBUTES attributes =
        nativePath.Attributes(OBJ_CASE_INSENSITIVE | OBJ_KERNEL_HANDLE, securityDescriptor);
    const ACCESS_MASK access = GENERIC_READ | SYNCHRONIZE | (write ? GENERIC_WRITE : 0);
    IO_STATUS_BLOCK status = {};
    HANDLE handle = nullptr;
    result = detail::ResultFromCall(ZwCreateFile(&handle, access, &attributes, &status, nullptr,
                                                 FILE_ATTRIBUTE_NORMAL, FILE_SHARE_READ | FILE_SHARE_WRITE,
                                                 disposition, 0, nullptr, 0));
    if (OrvFailed(result))
        return result;
    file_.Attach(handle, write ? OrvFileReadWrite : OrvFileReadOnly);
    lockState_ = kNotLocked;
    return ORV_S_OK;
}

OrvResult OrvBasWinLockFileResource::OpenOrCreate(const wchar_t *path, OrvSecurityCtx *context, bool write)
{
    OrvWinSecurityDescriptor *descriptor = nullptr;
    if (context) {
        const OrvResult result = context->GetSecurityDescriptor(descriptor);
        if (OrvFailed(result)) {
            Close();
            return result;
        }
    }
    return OpenFile(path, descriptor ? descriptor->GetNative() : nullptr, write, FILE_OPEN_IF);
}

OrvResult OrvBasWinLockFileResource::Open(const wchar_t *path, bool write)
{
    return OpenFile(path, nullptr, write, FILE_OPEN);
}

OrvResult OrvBasWinLockFileResource::Acquire(bool exclusive, int timeoutMs)
{
    OrvBasEvent completed;
    const OrvResult result = completed.Create(OrvBasEvent::ManualReset, false);
    if (OrvFailed(result))
        return result;
    NTSTATUS status = LockByWaiting(file_.GetHandle(), completed, exclusive, timeoutMs);
    if (status == STATUS_NOT_IMPLEMENTED)
        status = LockByAsking(file_.GetHandle(), exclusive, timeoutMs);
    if (NT_SUCCESS(status))
        lockState_ = exclusive ? kExclusive : kShared;
    return ResultOfLock(status);
}

OrvResult OrvBasWinLockFileResource::AcquireExclusive(int timeoutMs)
{
    return Acquire(true, timeoutMs);
}

OrvResult OrvBasWinLockFileResource::AcquireShared(int timeoutMs)
{
    return Acquire(false, timeoutMs);
}

OrvResult OrvBasWinLockFileResource::Release()
{
    if (!file_.IsOpen())
        return ORV_E_INVALID_HANDLE;
    IO_STATUS_BLOCK answer = {};
    NTSTATUS status = NtUnlockFile(file_.GetHandle(), &answer, &kFirstByte, &kByteCount, 0);
    if (status == STATUS_NOT_IMPLEMENTED)
        status = NtUnlockFile(file_.GetHandle(), nullptr, &kFirstByte, &kByteCount, 0);
    lockState_ = kNotLocked;
    return detail::ResultFromCall(status);
}

OrvResult OrvBasWinLockFileResource::Close()
{
    lockState_ = kNotOpen;
    return file_.Close();
}

bool OrvBasWinLockFileResource::IsInitialized() const
{
    return lockState_ != kNotOpen;
}

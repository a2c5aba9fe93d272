// Semaphores over the native interface.

#include "orv/sync/semaphore.h"

#include "nt/nt.h"
#include "orv/runtime/result.h"
#include "runtime/status.h"
#include "sync/native_object.h"

OrvBasSemaphore::OrvBasSemaphore() = default;

OrvBasSemaphore::~OrvBasSemaphore() = default;

OrvResult OrvBasSemaphore::Create(int initialCount, int maximumCount)
{
    if (IsInitialized())
        return ORV_E_ALREADY_EXISTS;
    return InternalCreate(initialCount, maximumCount, &detail::kUnnamedObject);
}

OrvResult OrvBasSemaphore::InternalCreate(int initialCount, int maximumCount,
                                          const OBJECT_ATTRIBUTES *attributes)
{
    HANDLE handle = nullptr;
    const NTSTATUS status =
        ZwCreateSemaphore(&handle, SEMAPHORE_ALL_ACCESS, attributes, initialCount, maximumCount);
    return detail::AttachCreated(*this, status, handle);
}

OrvResult OrvBasSemaphore::Release(int count)
{
    return detail::ResultFromCall(ZwReleaseSemaphore(GetHandle(), count, nullptr));
}

OrvResult OrvBasSemaphore::Wait(int timeoutMs)
{
    return InternalWait(timeoutMs);
}

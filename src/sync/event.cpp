// Events over the native interface.

#include "orv/sync/event.h"

#include "nt/nt.h"
#include "orv/runtime/result.h"
#include "runtime/status.h"
#include "sync/native_object.h"

OrvBasEvent::OrvBasEvent() = default;

OrvBasEvent::~OrvBasEvent() = default;

OrvResult OrvBasEvent::Create(ResetType resetType, bool initialState)
{
    if (IsInitialized())
        return ORV_E_ALREADY_EXISTS;
    return InternalCreate(resetType, initialState, &detail::kUnnamedObject);
}

OrvResult OrvBasEvent::InternalCreate(ResetType resetType, bool initialState,
                                      const OBJECT_ATTRIBUTES *attributes)
{
    const bool manualReset = resetType == ManualReset;
    HANDLE handle = nullptr;
    const NTSTATUS status =
        ZwCreateEvent(&handle, EVENT_ALL_ACCESS, attributes,
                      manualReset ? NotificationEvent : SynchronizationEvent, initialState);
    const OrvResult result = detail::AttachCreated(*this, status, handle);
    if (OrvSucceeded(result))
        manualReset_ = manualReset;
    return result;
}

OrvResult OrvBasEvent::Set()
{
    return detail::ResultFromCall(ZwSetEvent(GetHandle(), nullptr));
}

OrvResult OrvBasEvent::Reset()
{
    return detail::ResultFromCall(ZwResetEvent(GetHandle(), nullptr));
}

OrvResult OrvBasEvent::Wait(int timeoutMs)
{
    return InternalWait(timeoutMs);
}

// Named events over the native interface.

#include "orv/sync/win_event.h"

#include "nt/nt.h"
#include "orv/runtime/result.h"
#include "runtime/native_handle.h"
#include "runtime/status.h"
#include "sync/object_name.h"

OrvBasWinEvent::OrvBasWinEvent() = default;

OrvBasWinEvent::~OrvBasWinEvent() = default;

OrvResult OrvBasWinEvent::Create(ResetType resetType, bool initialState, const wchar_t *name,
                                 OrvBasWinSyncObjectNameSpace nameSpace,
                                 OrvWinSecurityDescriptor *securityDescriptor)
{
    detail::ObjectName fullName;
    const OrvResult result = fullName.Build(name, nameSpace);
    if (OrvFailed(result))
        return result;
    OBJECT_ATTRIBUTES attributes;
    return InternalCreate(resetType, initialState, fullName.ForCreation(attributes, securityDescriptor));
}

OrvResult OrvBasWinEvent::Open(const wchar_t *name, OrvBasWinSyncObjectNameSpace nameSpace,
                               OrvWinEventRights rights)
{
    detail::NativeHandle event;
    const OrvResult result = detail::OpenByName(ZwOpenEvent, name, nameSpace, rights, event);
    if (OrvFailed(result))
        return result;
    EVENT_BASIC_INFORMATION information;
    const NTSTATUS status =
        ZwQueryEvent(event.Get(), EventBasicInformation, &information, sizeof information, nullptr);
    if (!NT_SUCCESS(status))
        return detail::ResultFromStatus(status);
    AttachHandle(event.Detach());
    manualReset_ = information.EventType == NotificationEvent;
    return ORV_S_OK;
}

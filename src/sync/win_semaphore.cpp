// Named semaphores over the native interface.

#include "orv/sync/win_semaphore.h"

#include "nt/nt.h"
#include "runtime/native_handle.h"
#include "sync/object_name.h"

OrvBasWinSemaphore::OrvBasWinSemaphore() = default;

OrvBasWinSemaphore::~OrvBasWinSemaphore() = default;

OrvResult OrvBasWinSemaphore::Create(int initialCount, int maximumCount, const wchar_t *name,
                                     OrvBasWinSyncObjectNameSpace nameSpace,
                                     OrvWinSecurityDescriptor *securityDescriptor)
{
    detail::ObjectName fullName;
    const OrvResult result = fullName.Build(name, nameSpace);
    if (OrvFailed(result))
        return result;
    OBJECT_ATTRIBUTES attributes;
    return InternalCreate(initialCount, maximumCount, fullName.ForCreation(attributes, securityDescriptor));
}

OrvResult OrvBasWinSemaphore::Open(const wchar_t *name, OrvBasWinSyncObjectNameSpace nameSpace,
                                   OrvWinSemaphoreRights rights)
{
    detail::NativeHandle opened;
    const OrvResult result = detail::OpenByName(ZwOpenSemaphore, name, nameSpace, rights, opened);
    if (OrvSucceeded(result))
        AttachHandle(opened.Detach());
    return result;
}

// Named mutexes over the native interface.

#include "orv/sync/win_mutex.h"

#include "nt/nt.h"
#include "runtime/native_handle.h"
#include "sync/object_name.h"

OrvBasWinMutex::OrvBasWinMutex() = default;

OrvBasWinMutex::~OrvBasWinMutex() = default;

OrvResult OrvBasWinMutex::Create(bool initialOwner, const wchar_t *name,
                                 OrvBasWinSyncObjectNameSpace nameSpace,
                                 OrvWinSecurityDescriptor *securityDescriptor)
{
    detail::ObjectName fullName;
    const OrvResult result = fullName.Build(name, nameSpace);
    if (OrvFailed(result))
        return result;
    return InternalCreate(initialOwner, fullName.IsEmpty() ? nullptr : fullName.GetText(),
                          securityDescriptor ? securityDescriptor->GetNative() : nullptr);
}

OrvResult OrvBasWinMutex::Open(const wchar_t *name, OrvBasWinSyncObjectNameSpace nameSpace,
                               OrvWinMutexRights rights)
{
    detail::NativeHandle opened;
    const OrvResult result = detail::OpenByName(ZwOpenMutant, name, nameSpace, rights, opened);
    if (OrvSucceeded(result))
        AttachHandle(opened.Detach());
    return result;
}

// Counting names, and storing the handle of an object that was just created.

#include "sync/native_object.h"

#include "orv/runtime/result.h"
#include "runtime/status.h"

namespace detail
{

bool CountName(const WCHAR *name, UNICODE_STRING &counted)
{
    // The platform cuts what it cannot count, and then the end is no terminator.
    RtlInitUnicodeString(&counted, name);
    return name[counted.Length / sizeof(WCHAR)] == 0;
}

OrvResult AttachCreated(OrvBasWaitable &waitable, NTSTATUS status, HANDLE handle)
{
    if (!NT_SUCCESS(status))
        return ResultFromStatus(status);
    waitable.AttachHandle(handle);
    return status == STATUS_OBJECT_NAME_EXISTS ? ORV_S_ALREADY_EXISTS : ORV_S_OK;
}

} // namespace detail

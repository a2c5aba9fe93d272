// Stores the handle of an object that was just created.

#include "sync/native_object.h"

#include "orv/runtime/result.h"
#include "runtime/status.h"

namespace detail
{

OrvResult AttachCreated(OrvBasWaitable &waitable, NTSTATUS status, HANDLE handle)
{
    if (!NT_SUCCESS(status))
        return ResultFromStatus(status);
    waitable.AttachHandle(handle);
    return status == STATUS_OBJECT_NAME_EXISTS ? ORV_S_ALREADY_EXISTS : ORV_S_OK;
}

} // namespace detail

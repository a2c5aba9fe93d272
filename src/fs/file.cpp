// The class that owns the handle of a file.

#include "orv/fs/file.h"

#include "nt/nt.h"
#include "orv/runtime/result.h"
#include "runtime/status.h"

OrvWinFile::~OrvWinFile()
{
    Close();
}

void OrvWinFile::Attach(void *handle, OrvFileAccessMode accessMode)
{
    Close();
    handle_ = handle;
    accessMode_ = accessMode;
}

OrvResult OrvWinFile::Close()
{
    if (!IsOpen())
        return ORV_S_OK;
    const OrvResult result = detail::ResultFromCall(ZwClose(handle_));
    if (OrvFailed(result))
        return result;
    handle_ = INVALID_HANDLE_VALUE;
    accessMode_ = OrvFileNotOpen;
    return ORV_S_OK;
}

// Writes to the standard streams of a process.

#include "program/standard_stream.h"

#include "nt/programs.h"
#include "orv/runtime/kernel32_entry_points.h"
#include "orv/runtime/result.h"

namespace detail
{

bool IsConsole(HANDLE stream)
{
    IO_STATUS_BLOCK status;
    FILE_FS_DEVICE_INFORMATION device = {};
    return NT_SUCCESS(NtQueryVolumeInformationFile(stream, &status, &device, sizeof device,
                                                   FileFsDeviceInformation)) &&
           device.DeviceType == FILE_DEVICE_CONSOLE;
}

OrvResult WriteToStream(HANDLE stream, const char *bytes, uint32_t count)
{
    while (count) {
        ULONG written = 0;
        // Up to Windows 7 a console's handle is not a kernel handle: only Win32 functions accept it.
        if (OrvKernel32IsFnLoaded_WriteFile()) {
            const OrvResult result = OrvKernel32_WriteFile(stream, bytes, count, &written, nullptr);
            if (OrvFailed(result))
                return result;
        } else {
            IO_STATUS_BLOCK status = {};
            NTSTATUS outcome =
                NtWriteFile(stream, nullptr, nullptr, nullptr, &status, bytes, count, nullptr, nullptr);
            if (outcome == STATUS_PENDING && NT_SUCCESS(ZwWaitForSingleObject(stream, false, nullptr)))
                outcome = status.Status;
            if (!NT_SUCCESS(outcome))
                return OrvCreateErrorCodeFromNtStatus(outcome);
            written = status.Information;
        }
        if (written == 0 || written > count)
            return ORV_E_WRITE_FAULT;
        bytes += written;
        count -= written;
    }
    return ORV_S_OK;
}

} // namespace detail

// Result codes and their conversions.
//
// One table serves both directions. Its order matters, because the first match is used. Some rows near the
// end repeat an own code: they convert a missing module to a missing path, and an existing file to an
// existing object; the conversion back still finds the general Win32 number first. ERROR_NOT_ENOUGH_MEMORY
// (8) has no row: it is kept as a Win32 number, and ORV_E_OUT_OF_MEMORY means that the library's own heap
// refused.

#include "orv/runtime/result.h"

#include "nt/nt.h"
#include "runtime/status.h"

namespace
{

struct Win32Mapping {
    uint16_t win32Error;
    uint16_t ownCode;
};

constexpr Win32Mapping kWin32Mappings[] = {
    {ERROR_FILE_NOT_FOUND, 0x3D},   {ERROR_PATH_NOT_FOUND, 0x3E},
    {ERROR_INVALID_HANDLE, 0x3F},   {ERROR_EMPTY, 0x40},
    {ERROR_NOT_EMPTY, 0x41},        {ERROR_READ_FAULT, 0x42},
    {ERROR_WRITE_FAULT, 0x43},      {ERROR_INSUFFICIENT_BUFFER, 0x44},
    {ERROR_INVALID_DATA, 0x45},     {ERROR_NO_MORE_FILES, 0x46},
    {ERROR_DUP_NAME, 0x47},         {ERROR_UNSUPPORTED_TYPE, 0x48},
    {ERROR_BAD_LENGTH, 0x49},       {ERROR_CRC, 0x4A},
    {ERROR_INVALID_NAME, 0x4B},     {ERROR_OBJECT_NOT_FOUND, 0x4C},
    {ERROR_INVALID_ADDRESS, 0x4D},  {ERROR_INVALID_ACCESS, 0x4E},
    {ERROR_ALREADY_EXISTS, 0x4F},   {ERROR_INVALID_PARAMETER, 0x02},
    {ERROR_NEGATIVE_SEEK, 0x51},    {ERROR_NOACCESS, 0x52},
    {ERROR_OUTOFMEMORY, 0x01},      {ERROR_SHARING_VIOLATION, 0x53},
    {ERROR_NOT_SUPPORTED, 0x54},    {ERROR_INVALID_OPERATION, 0x55},
    {ERROR_INVALID_FUNCTION, 0x56}, {ERROR_OPERATION_ABORTED, 0x57},
    {ERROR_ACCESS_DENIED, 0x58},    {WSAECONNREFUSED, 0x190},
    {ERROR_MOD_NOT_FOUND, 0x3E},    {ERROR_FILE_EXISTS, 0x4F},
    {ERROR_DISK_FULL, 0x97},
};

constexpr uint32_t kOwnCodeFlag = 1u << 29;
constexpr uint32_t kFacilityMask = 0xFFF;
constexpr uint32_t kFacilityOwn = 1;
constexpr uint32_t kFacilityOwnSecond = 3; // accepted in the conversion back, never made
constexpr uint32_t kFacilityWin32 = 7;

constexpr OrvResult MakeResult(uint32_t severity, uint32_t ownFlag, uint32_t facility, uint32_t code)
{
    return static_cast<OrvResult>(severity << 30 | ownFlag | facility << 16 | code);
}

} // namespace

OrvResult OrvCreateErrorCodeFromWin32(_OrvErrorCodeSeverity severity, uint32_t win32Error)
{
    for (const Win32Mapping &mapping : kWin32Mappings) {
        if (mapping.win32Error == win32Error)
            return MakeResult(severity, kOwnCodeFlag, kFacilityOwn, mapping.ownCode);
    }
    return MakeResult(severity, 0, kFacilityWin32, win32Error & 0xFFFF);
}

OrvResult OrvCreateErrorCodeFromWin32(uint32_t win32Error)
{
    return win32Error == 0 ? ORV_S_OK : OrvCreateErrorCodeFromWin32(OrvSeverityError, win32Error);
}

uint32_t OrvNtdll_RtlNtStatusToDosError(int32_t status)
{
    return RtlNtStatusToDosError(status);
}

bool OrvCreateWin32CodeFromErrorCode(uint32_t &win32Error, OrvResult result)
{
    const auto bits = static_cast<uint32_t>(result);
    const uint32_t facility = bits >> 16 & kFacilityMask;
    const uint32_t code = bits & 0xFFFF;
    if (facility == kFacilityWin32) {
        win32Error = code;
        return true;
    }
    if ((bits & kOwnCodeFlag) == 0 || (facility != kFacilityOwn && facility != kFacilityOwnSecond))
        return false;
    for (const Win32Mapping &mapping : kWin32Mappings) {
        if (mapping.ownCode == code) {
            win32Error = mapping.win32Error;
            return true;
        }
    }
    return false;
}

OrvResult OrvCreateErrorCodeFromErrno()
{
    return ORV_E_NOT_SUPPORTED;
}

OrvResult OrvCreateErrorCodeFromErrno(_OrvErrorCodeSeverity)
{
    return ORV_E_INVALID_ARGUMENT;
}

OrvResult OrvCreateErrorCodeFromErrno(_OrvErrorCodeSeverity, int)
{
    return ORV_E_INVALID_ARGUMENT;
}

bool OrvGetErrnoFromErrorCode(int &, OrvResult)
{
    return false;
}

namespace detail
{

OrvResult ResultFromStatus(NTSTATUS status)
{
    return OrvCreateErrorCodeFromNtStatus(status);
}

} // namespace detail

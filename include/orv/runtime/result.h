// Result codes: one signed 32-bit value that every fallible operation returns.
//
//   bits 31-30  severity (_OrvErrorCodeSeverity)
//   bit  29     set on the codes that the library defines itself
//   bits 27-16  facility: 1 the library's own codes, 7 a Win32 error number carried in bits 15-0
//   bits 15-0   the code
//
// The same condition has the same code everywhere, but it may come with different severities: compare the
// whole value when a particular condition matters, and test the sign when only success does.

#pragma once

#include "orv/base.h"

/// Bits 31-30.
enum _OrvErrorCodeSeverity : uint32_t {
    OrvSeveritySuccess = 0,
    OrvSeverityInformational = 1,
    OrvSeverityWarning = 2,
    OrvSeverityError = 3,
};

/// The codes that have names. An enumeration, so that a debugger knows them: watch "(OrvResultCode)result".
enum OrvResultCode : OrvResult {
    /// Plain success.
    ORV_S_OK = 0,

    // Failures.

    /// The heap refused, or the length is more than 32 bits can count.
    ORV_E_OUT_OF_MEMORY = static_cast<OrvResult>(0xE0010001),
    /// A null pointer, a value outside its enumeration, flags that exclude each other, a zero size.
    ORV_E_INVALID_ARGUMENT = static_cast<OrvResult>(0xE0010002),
    /// A field of a calendar structure lies outside its range.
    ORV_E_FIELD_OUT_OF_RANGE = static_cast<OrvResult>(0xE001000D),
    /// The calling thread does not own the lock.
    ORV_E_NOT_OWNER = static_cast<OrvResult>(0xE0010010),
    /// The registry key or folder does not exist.
    ORV_E_KEY_NOT_FOUND = static_cast<OrvResult>(0xE0010013),
    /// The registry value exists but has another type.
    ORV_E_VALUE_TYPE = static_cast<OrvResult>(0xE0010014),
    /// A path, an environment value or a piece of a compressed stream could not be produced.
    ORV_E_NOT_PRODUCED = static_cast<OrvResult>(0xE0010020),
    /// The text is not a GUID.
    ORV_E_GUID_TEXT = static_cast<OrvResult>(0xE0010027),
    /// The registry view does not exist under this root.
    ORV_E_VIEW_ROOT = static_cast<OrvResult>(0xE0010039),
    /// The system has no separate 32-bit and 64-bit registry views.
    ORV_E_VIEW_NOT_SUPPORTED = static_cast<OrvResult>(0xE001003A),
    /// The operation, or this case of it, is not provided.
    ORV_E_NOT_PROVIDED = static_cast<OrvResult>(0xE001003C),
    /// The file, the named object, the registry key or value does not exist.
    ORV_E_FILE_NOT_FOUND = static_cast<OrvResult>(0xE001003D),
    /// A directory on the way to the name does not exist.
    ORV_E_PATH_NOT_FOUND = static_cast<OrvResult>(0xE001003E),
    /// There is no such handle, or it belongs to an object of another type.
    ORV_E_INVALID_HANDLE = static_cast<OrvResult>(0xE001003F),
    /// The object is empty.
    ORV_E_EMPTY = static_cast<OrvResult>(0xE0010040),
    /// The object is not empty.
    ORV_E_NOT_EMPTY = static_cast<OrvResult>(0xE0010041),
    /// Reading failed.
    ORV_E_READ_FAULT = static_cast<OrvResult>(0xE0010042),
    /// Writing failed.
    ORV_E_WRITE_FAULT = static_cast<OrvResult>(0xE0010043),
    /// The caller's buffer cannot hold the result and its terminator.
    ORV_E_BUFFER_TOO_SMALL = static_cast<OrvResult>(0xE0010044),
    /// The input breaks the format that the operation expects.
    ORV_E_INVALID_DATA = static_cast<OrvResult>(0xE0010045),
    /// The enumeration has come to its end.
    ORV_E_NO_MORE_FILES = static_cast<OrvResult>(0xE0010046),
    /// The name is in use already.
    ORV_E_DUPLICATE_NAME = static_cast<OrvResult>(0xE0010047),
    /// The operation does not support this type.
    ORV_E_UNSUPPORTED_TYPE = static_cast<OrvResult>(0xE0010048),
    /// A length is greater than the operation or the platform accepts.
    ORV_E_BAD_LENGTH = static_cast<OrvResult>(0xE0010049),
    /// The checksum is wrong.
    ORV_E_CHECKSUM = static_cast<OrvResult>(0xE001004A),
    /// The name is not valid, because of its characters or its length.
    ORV_E_INVALID_NAME = static_cast<OrvResult>(0xE001004B),
    /// The object of the operation does not exist.
    ORV_E_OBJECT_NOT_FOUND = static_cast<OrvResult>(0xE001004C),
    /// Memory at that address cannot be used.
    ORV_E_INVALID_ADDRESS = static_cast<OrvResult>(0xE001004D),
    /// The access asked for makes no sense here.
    ORV_E_INVALID_ACCESS = static_cast<OrvResult>(0xE001004E),
    /// There is one already, and it is kept.
    ORV_E_ALREADY_EXISTS = static_cast<OrvResult>(0xE001004F),
    /// A position before the start.
    ORV_E_NEGATIVE_SEEK = static_cast<OrvResult>(0xE0010051),
    /// The memory cannot be accessed that way.
    ORV_E_NO_ACCESS = static_cast<OrvResult>(0xE0010052),
    /// Another user has it open and does not share it that way.
    ORV_E_SHARING_VIOLATION = static_cast<OrvResult>(0xE0010053),
    /// The platform lacks the entry point or the feature.
    ORV_E_NOT_SUPPORTED = static_cast<OrvResult>(0xE0010054),
    /// The operation makes no sense now, such as a lock that would wait for itself.
    ORV_E_INVALID_OPERATION = static_cast<OrvResult>(0xE0010055),
    /// The platform has no such function for this kind of object.
    ORV_E_INVALID_FUNCTION = static_cast<OrvResult>(0xE0010056),
    /// The operation was cancelled.
    ORV_E_ABORTED = static_cast<OrvResult>(0xE0010057),
    /// The caller does not have the right.
    ORV_E_ACCESS_DENIED = static_cast<OrvResult>(0xE0010058),
    /// The target representation cannot hold the time.
    ORV_E_TIME_OUT_OF_RANGE = static_cast<OrvResult>(0xE0010064),
    /// The target representation cannot hold the duration.
    ORV_E_DURATION_OUT_OF_RANGE = static_cast<OrvResult>(0xE0010073),
    /// The object is not in a state that allows the operation.
    ORV_E_INVALID_STATE = static_cast<OrvResult>(0xE0010078),
    /// The thread is still running.
    ORV_E_THREAD_RUNNING = static_cast<OrvResult>(0xE001008C),
    /// There is no room on the volume.
    ORV_E_DISK_FULL = static_cast<OrvResult>(0xE0010097),
    /// The text to append to has no terminator within its capacity.
    ORV_E_NOT_TERMINATED = static_cast<OrvResult>(0xE0010101),
    /// The data ended before the expected amount was read.
    ORV_E_END_OF_DATA = static_cast<OrvResult>(0xE001018B),
    /// The other side does not accept the connection.
    ORV_E_CONNECTION_REFUSED = static_cast<OrvResult>(0xE0010190),

    // Warnings: failures too, since they are below zero.

    /// The wait interval elapsed, or the lock could not be taken at once and the caller did not want to wait.
    ORV_W_TIMEOUT = static_cast<OrvResult>(0xA0010004),
    /// The thread has not ended, so it has no exit code yet.
    ORV_W_STILL_ACTIVE = static_cast<OrvResult>(0xA001000A),
    /// The second instant precedes the first.
    ORV_W_NEGATIVE_DURATION = static_cast<OrvResult>(0xA001005B),

    // Successes with a remark.

    /// The mutex was acquired, but its owner had ended without releasing it.
    ORV_S_ABANDONED = 0x60010003,
    /// There was nothing to remove.
    ORV_S_OBJECT_NOT_FOUND = 0x6001004C,
    /// A named object was opened because it already existed.
    ORV_S_ALREADY_EXISTS = 0x6001004F,
    /// The feature is not available on this system, and the call did nothing.
    ORV_S_NOT_SUPPORTED = 0x60010054,
    /// The end marker was converted to or from its structure.
    ORV_S_END_OF_TIME = 0x60010064,
    /// The requested value is not set, and an empty or default value was returned.
    ORV_S_NOT_SET = 0x6001006A,
    /// Fewer bytes than asked for were available and were returned, or the stream is complete.
    ORV_S_END_OF_DATA = 0x6001018B,
};

/// Makes a result code from a Win32 error number. A number that has its own code gives that code with bit 29
/// and facility 1; any other is carried in facility 7, cut to its low 16 bits. Zero is not special here:
/// (OrvSeverityError, 0) gives 0xC0070000.
ORV_API OrvResult OrvCreateErrorCodeFromWin32(_OrvErrorCodeSeverity severity, uint32_t win32Error);

/// The same with severity error, except that 0 gives ORV_S_OK.
ORV_API OrvResult OrvCreateErrorCodeFromWin32(uint32_t win32Error);

/// The platform's RtlNtStatusToDosError, for programs that do not link ntdll.dll: the Win32 error number for
/// a native status, 317 where there is none.
ORV_API uint32_t OrvNtdll_RtlNtStatusToDosError(int32_t status);

/// Makes a result code from the status of a native call, for a caller that does not take this status as a
/// success. All operations of the library convert statuses this way. Test first for the success statuses that
/// matter: STATUS_TIMEOUT, for example, becomes 0x40070102, a success with a remark.
///
/// Returns ORV_S_OK for STATUS_SUCCESS; ORV_E_BUFFER_TOO_SMALL for STATUS_BUFFER_OVERFLOW, which is a warning
/// to the platform, but the caller did not get its data; otherwise what OrvCreateErrorCodeFromWin32 makes of
/// the status's severity, which is at least informational, and the platform's number for it.
inline OrvResult OrvCreateErrorCodeFromNtStatus(int32_t status)
{
    constexpr int32_t kBufferOverflow = static_cast<int32_t>(0x80000005);
    if (status == 0)
        return ORV_S_OK;
    if (status == kBufferOverflow)
        return ORV_E_BUFFER_TOO_SMALL;
    const uint32_t severity = static_cast<uint32_t>(status) >> 30;
    return OrvCreateErrorCodeFromWin32(severity ? static_cast<_OrvErrorCodeSeverity>(severity)
                                                : OrvSeverityInformational,
                                       OrvNtdll_RtlNtStatusToDosError(status));
}

/// Gives the Win32 error number of a result code, whatever its severity. Where several numbers share one
/// code, the most general number is given: 3 for path-not-found, 183 for already-exists.
///
/// Returns false, and leaves `win32Error` untouched, when there is no such number.
ORV_API bool OrvCreateWin32CodeFromErrorCode(uint32_t &win32Error, OrvResult result);

/// The errno family exists so that callers written for other platforms link; it carries no errno values.
/// Always ORV_E_NOT_SUPPORTED.
ORV_API OrvResult OrvCreateErrorCodeFromErrno();

/// Always ORV_E_INVALID_ARGUMENT.
ORV_API OrvResult OrvCreateErrorCodeFromErrno(_OrvErrorCodeSeverity severity);

/// Always ORV_E_INVALID_ARGUMENT.
ORV_API OrvResult OrvCreateErrorCodeFromErrno(_OrvErrorCodeSeverity severity, int errnoValue);

/// Always false; `errnoValue` is not written.
ORV_API bool OrvGetErrnoFromErrorCode(int &errnoValue, OrvResult result);

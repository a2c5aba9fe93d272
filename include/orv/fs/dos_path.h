// Converting DOS paths to native paths (those of the native interface), and expanding environment variables
// in texts.
//
// Operations that end in _T write to a buffer of the library, those that end in _U to a counted string of the
// platform. "EliminateDosDevice" means: in a path that starts at a root, a name such as "CON" is the name of
// a file, not of a device. The platform completes a relative path, and there "CON" is still a device.

#pragma once

#include "orv/base.h"
#include "orv/text/heap_buffer.h"

struct _UNICODE_STRING;

/// Whether a path is a native path: it starts with "\??\", "\Device\", "\DosDevices\" or "\GLOBAL??\", in any
/// letter case.
ORV_API bool OrvWinIsNtFilePath(const wchar_t *path, uint32_t length = OrvTerminated);

/// Makes the native path of a DOS path (terminated), which the platform completes by the current directory.
///
/// Returns 0; ORV_E_INVALID_ARGUMENT for a null or empty path; ORV_E_NOT_PRODUCED when the platform makes
/// none; ORV_E_OUT_OF_MEMORY. On failure the buffer is as it was.
ORV_API OrvResult OrvNtdll_RtlDosPathNameToNtPathName_T(const wchar_t *dosPath,
                                                        OrvUtf16CharHeapBuffer &ntPath);

/// The same, but in a path that starts at a root, as "\con" and "D:\con" do, no name means a device. A ".."
/// at the root of a drive leads to that root. After "\\?\D:\" and "\\?\UNC\", where the platform takes the
/// rest literally, a "/" or a doubled separator becomes one "\". A native path is not changed.
///
/// Returns the results of the other form and of OrvBasPath::WinEliminateDosDeviceAliasPath.
ORV_API OrvResult OrvNtdll_RtlDosPathNameToNtPathName_T_EliminateDosDevice(const wchar_t *dosPath,
                                                                           OrvUtf16CharHeapBuffer &ntPath);

/// The same into a counted string, whose buffer is allocated: RtlFreeUnicodeString frees it. The buffer that
/// the string had before is not freed.
ORV_API OrvResult OrvNtdll_RtlDosPathNameToNtPathName_U_EliminateDosDevice(const wchar_t *dosPath,
                                                                           _UNICODE_STRING *ntPath);

/// Replaces each "%NAME%" by the value of the process's variable of that name; the name of a variable that is
/// not set stays as it is. `source` is terminated and may lie in the buffer.
///
/// Returns 0; ORV_E_INVALID_ARGUMENT for a text of more than 32,766 characters; ORV_E_OUT_OF_MEMORY;
/// otherwise the converted status, ORV_E_BUFFER_TOO_SMALL when a value grew meanwhile or the result has more
/// than 32,766 characters. On failure the buffer is as it was.
ORV_API OrvResult OrvNtdll_RtlExpandEnvironmentStrings_T(const wchar_t *source, OrvUtf16CharHeapBuffer &out);

// Functions of kernel32.dll, reached through a table that is filled only when the process has that module.
//
// The library never loads kernel32.dll. In a process without it every predicate is false and no wrapper may
// be called; a component that loads it later calls OrvKernel32ForceInitialize.

#pragma once

#include "orv/base.h"

struct _EXCEPTION_POINTERS;
struct _MEMORYSTATUSEX;
struct _OVERLAPPED;
struct _PROCESS_INFORMATION;
struct _SECURITY_ATTRIBUTES;
struct _STARTUPINFOA;
struct _STARTUPINFOW;

/// The function that the platform calls for an exception that nobody handles.
typedef long(__stdcall *OrvExceptionFilter)(_EXCEPTION_POINTERS *exception);

/// Fills the table when the process has kernel32.dll.
///
/// Returns 0, also when entries are missing; when the module is not loaded, the converted status, and the
/// table is as it was.
ORV_API OrvResult OrvKernel32TableInitializeIfLoaded();

/// Whether the table is filled.
ORV_API bool OrvKernel32IsTableInitialized();

/// Fills the table when it is empty; fills the ntdll table first when that is empty, too.
ORV_API void OrvKernel32ForceInitialize();

/// The calling thread's last Win32 error number.
ORV_API unsigned long OrvWinGetLastError();

/// Sets the calling thread's last Win32 error number.
ORV_API void OrvWinSetLastError(unsigned long win32Error);

/// Whether the entry was found. Only then may the wrapper of that name be called.
ORV_API bool OrvKernel32IsFnLoaded_CopyFileW();
ORV_API bool OrvKernel32IsFnLoaded_CopyFileA();
ORV_API bool OrvKernel32IsFnLoaded_ReadFile();
ORV_API bool OrvKernel32IsFnLoaded_WriteFile();
ORV_API bool OrvKernel32IsFnLoaded_UnhandledExceptionFilter();
ORV_API bool OrvKernel32IsFnLoaded_SetUnhandledExceptionFilter();
ORV_API bool OrvKernel32IsFnLoaded_GlobalMemoryStatusEx();
ORV_API bool OrvKernel32IsFnLoaded_GetEnvironmentStringsA();
ORV_API bool OrvKernel32IsFnLoaded_GetEnvironmentStringsW();
ORV_API bool OrvKernel32IsFnLoaded_FreeEnvironmentStringsA();
ORV_API bool OrvKernel32IsFnLoaded_FreeEnvironmentStringsW();
ORV_API bool OrvKernel32IsFnLoaded_CreateProcessW();
ORV_API bool OrvKernel32IsFnLoaded_CreateProcessA();
ORV_API bool OrvKernel32IsFnLoaded_DefineDosDeviceW();
ORV_API bool OrvKernel32IsFnLoaded_DefineDosDeviceA();
ORV_API bool OrvKernel32IsFnLoaded_GetACP();
ORV_API bool OrvKernel32IsFnLoaded_FindResourceExA();
ORV_API bool OrvKernel32IsFnLoaded_FindResourceExW();

/// The platform's function of that name, in the order in which the table looks its entries up. For a function
/// that returns a success flag, the wrapper returns 0 when the flag is set, otherwise the thread's last error
/// as a result code; this is 0, too, when the function failed without setting an error. The others return
/// what the function returns.
ORV_API OrvResult OrvKernel32_CopyFileW(const wchar_t *from, const wchar_t *to, bool failIfExists);
ORV_API OrvResult OrvKernel32_CopyFileA(const char *from, const char *to, bool failIfExists);
ORV_API OrvResult OrvKernel32_ReadFile(void *file, void *buffer, unsigned long size, unsigned long *read,
                                       _OVERLAPPED *overlapped);
ORV_API OrvResult OrvKernel32_WriteFile(void *file, const void *buffer, unsigned long size,
                                        unsigned long *written, _OVERLAPPED *overlapped);
ORV_API long OrvKernel32_UnhandledExceptionFilter(_EXCEPTION_POINTERS *exception);
ORV_API OrvExceptionFilter OrvKernel32_SetUnhandledExceptionFilter(OrvExceptionFilter filter);
ORV_API OrvResult OrvKernel32_GlobalMemoryStatusEx(_MEMORYSTATUSEX *status);
ORV_API char *OrvKernel32_GetEnvironmentStringsA();
ORV_API wchar_t *OrvKernel32_GetEnvironmentStringsW();
ORV_API int OrvKernel32_FreeEnvironmentStringsA(char *strings);
ORV_API int OrvKernel32_FreeEnvironmentStringsW(wchar_t *strings);
ORV_API OrvResult OrvKernel32_CreateProcessW(const wchar_t *application, wchar_t *commandLine,
                                             _SECURITY_ATTRIBUTES *process, _SECURITY_ATTRIBUTES *thread,
                                             int inheritHandles, unsigned long flags, void *environment,
                                             const wchar_t *directory, _STARTUPINFOW *startup,
                                             _PROCESS_INFORMATION *information);
ORV_API OrvResult OrvKernel32_CreateProcessA(const char *application, char *commandLine,
                                             _SECURITY_ATTRIBUTES *process, _SECURITY_ATTRIBUTES *thread,
                                             int inheritHandles, unsigned long flags, void *environment,
                                             const char *directory, _STARTUPINFOA *startup,
                                             _PROCESS_INFORMATION *information);
ORV_API OrvResult OrvKernel32_DefineDosDeviceW(unsigned long flags, const wchar_t *device,
                                               const wchar_t *target);
ORV_API OrvResult OrvKernel32_DefineDosDeviceA(unsigned long flags, const char *device, const char *target);
ORV_API unsigned int OrvKernel32_GetACP();
ORV_API void *OrvKernel32_FindResourceExA(void *module, const char *type, const char *name,
                                          unsigned short language);
ORV_API void *OrvKernel32_FindResourceExW(void *module, const wchar_t *type, const wchar_t *name,
                                          unsigned short language);

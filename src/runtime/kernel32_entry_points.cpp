// The table of kernel32.dll entry points and its wrappers.

#include "orv/runtime/kernel32_entry_points.h"

#include "nt/counted_string.h"
#include "nt/nt.h"
#include "nt/teb.h"
#include "orv/runtime/ntdll_entry_points.h"
#include "orv/runtime/result.h"
#include "runtime/entry_table.h"
#include "runtime/status.h"

// clang-format off
#define ORV_KERNEL32_ENTRIES(entry) \
    entry(CopyFileW) \
    entry(CopyFileA) \
    entry(ReadFile) \
    entry(WriteFile) \
    entry(UnhandledExceptionFilter) \
    entry(SetUnhandledExceptionFilter) \
    entry(GlobalMemoryStatusEx) \
    entry(GetEnvironmentStringsA) \
    entry(GetEnvironmentStringsW) \
    entry(FreeEnvironmentStringsA) \
    entry(FreeEnvironmentStringsW) \
    entry(CreateProcessW) \
    entry(CreateProcessA) \
    entry(DefineDosDeviceW) \
    entry(DefineDosDeviceA) \
    entry(GetACP) \
    entry(FindResourceExA) \
    entry(FindResourceExW)
// clang-format on

namespace
{

struct Kernel32Table {
    PVOID module;
#define ORV_ENTRY_FIELD(name) decltype(&::name) name;
    ORV_KERNEL32_ENTRIES(ORV_ENTRY_FIELD)
#undef ORV_ENTRY_FIELD
};

constexpr ANSI_STRING kNames[] = {
#define ORV_ENTRY_NAME(name) detail::EntryName(#name),
    ORV_KERNEL32_ENTRIES(ORV_ENTRY_NAME)
#undef ORV_ENTRY_NAME
};

static_assert(sizeof(Kernel32Table) == sizeof(PVOID) * (1 + 18));

Kernel32Table table;

OrvResult ResultFromFlag(BOOL succeeded)
{
    return succeeded ? ORV_S_OK : OrvCreateErrorCodeFromWin32(OrvWinGetLastError());
}

} // namespace

OrvResult OrvKernel32TableInitializeIfLoaded()
{
    UNICODE_STRING name = detail::CountedLiteral(L"kernel32.dll");
    PVOID module = nullptr;
    const NTSTATUS status = LdrGetDllHandle(nullptr, nullptr, &name, &module);
    if (!NT_SUCCESS(status))
        return detail::ResultFromStatus(status);
    detail::FillEntryTable(table, module, kNames);
    return ORV_S_OK;
}

bool OrvKernel32IsTableInitialized()
{
    return table.module != nullptr;
}

void OrvKernel32ForceInitialize()
{
    if (OrvKernel32IsTableInitialized())
        return;
    if (!OrvNtdllIsTableInitialized())
        OrvNtdllTableInitialize();
    OrvKernel32TableInitializeIfLoaded();
}

unsigned long OrvWinGetLastError()
{
    return NtCurrentTeb()->LastErrorValue;
}

void OrvWinSetLastError(unsigned long win32Error)
{
    NtCurrentTeb()->LastErrorValue = win32Error;
}

// clang-format off
#define ORV_IS_LOADED(name) \
    bool OrvKernel32IsFnLoaded_##name() { return table.name != nullptr; }
ORV_IS_LOADED(CopyFileW)
ORV_IS_LOADED(CopyFileA)
ORV_IS_LOADED(ReadFile)
ORV_IS_LOADED(WriteFile)
ORV_IS_LOADED(UnhandledExceptionFilter)
ORV_IS_LOADED(SetUnhandledExceptionFilter)
ORV_IS_LOADED(GlobalMemoryStatusEx)
ORV_IS_LOADED(GetEnvironmentStringsA)
ORV_IS_LOADED(GetEnvironmentStringsW)
ORV_IS_LOADED(FreeEnvironmentStringsA)
ORV_IS_LOADED(FreeEnvironmentStringsW)
ORV_IS_LOADED(CreateProcessW)
ORV_IS_LOADED(CreateProcessA)
ORV_IS_LOADED(DefineDosDeviceW)
ORV_IS_LOADED(DefineDosDeviceA)
ORV_IS_LOADED(GetACP)
ORV_IS_LOADED(FindResourceExA)
ORV_IS_LOADED(FindResourceExW)
#undef ORV_IS_LOADED
// clang-format on

OrvResult OrvKernel32_CopyFileW(const wchar_t *from, const wchar_t *to, bool failIfExists)
{
    return ResultFromFlag(table.CopyFileW(from, to, failIfExists));
}

OrvResult OrvKernel32_CopyFileA(const char *from, const char *to, bool failIfExists)
{
    return ResultFromFlag(table.CopyFileA(from, to, failIfExists));
}

OrvResult OrvKernel32_ReadFile(void *file, void *buffer, unsigned long size, unsigned long *read,
                               _OVERLAPPED *overlapped)
{
    return ResultFromFlag(table.ReadFile(file, buffer, size, read, overlapped));
}

OrvResult OrvKernel32_WriteFile(void *file, const void *buffer, unsigned long size, unsigned long *written,
                                _OVERLAPPED *overlapped)
{
    return ResultFromFlag(table.WriteFile(file, buffer, size, written, overlapped));
}

long OrvKernel32_UnhandledExceptionFilter(_EXCEPTION_POINTERS *exception)
{
    return table.UnhandledExceptionFilter(exception);
}

OrvExceptionFilter OrvKernel32_SetUnhandledExceptionFilter(OrvExceptionFilter filter)
{
    return table.SetUnhandledExceptionFilter(filter);
}

OrvResult OrvKernel32_GlobalMemoryStatusEx(_MEMORYSTATUSEX *status)
{
    return ResultFromFlag(table.GlobalMemoryStatusEx(status));
}

char *OrvKernel32_GetEnvironmentStringsA()
{
    return table.GetEnvironmentStringsA();
}

wchar_t *OrvKernel32_GetEnvironmentStringsW()
{
    return table.GetEnvironmentStringsW();
}

int OrvKernel32_FreeEnvironmentStringsA(char *strings)
{
    return table.FreeEnvironmentStringsA(strings);
}

int OrvKernel32_FreeEnvironmentStringsW(wchar_t *strings)
{
    return table.FreeEnvironmentStringsW(strings);
}

OrvResult OrvKernel32_CreateProcessW(const wchar_t *application, wchar_t *commandLine,
                                     _SECURITY_ATTRIBUTES *process, _SECURITY_ATTRIBUTES *thread,
                                     int inheritHandles, unsigned long flags, void *environment,
                                     const wchar_t *directory, _STARTUPINFOW *startup,
                                     _PROCESS_INFORMATION *information)
{
    return ResultFromFlag(table.CreateProcessW(application, commandLine, process, thread, inheritHandles,
                                               flags, environment, directory, startup, information));
}

OrvResult OrvKernel32_CreateProcessA(const char *application, char *commandLine,
                                     _SECURITY_ATTRIBUTES *process, _SECURITY_ATTRIBUTES *thread,
                                     int inheritHandles, unsigned long flags, void *environment,
                                     const char *directory, _STARTUPINFOA *startup,
                                     _PROCESS_INFORMATION *information)
{
    return ResultFromFlag(table.CreateProcessA(application, commandLine, process, thread, inheritHandles,
                                               flags, environment, directory, startup, information));
}

OrvResult OrvKernel32_DefineDosDeviceW(unsigned long flags, const wchar_t *device, const wchar_t *target)
{
    return ResultFromFlag(table.DefineDosDeviceW(flags, device, target));
}

OrvResult OrvKernel32_DefineDosDeviceA(unsigned long flags, const char *device, const char *target)
{
    return ResultFromFlag(table.DefineDosDeviceA(flags, device, target));
}

unsigned int OrvKernel32_GetACP()
{
    return table.GetACP();
}

void *OrvKernel32_FindResourceExA(void *module, const char *type, const char *name, unsigned short language)
{
    return table.FindResourceExA(module, type, name, language);
}

void *OrvKernel32_FindResourceExW(void *module, const wchar_t *type, const wchar_t *name,
                                  unsigned short language)
{
    return table.FindResourceExW(module, type, name, language);
}

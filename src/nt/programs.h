// Further functions of ntdll.dll, for programs that stand on it (apps/ntdll_programs.def lists them). The
// library itself uses none of them.

#pragma once

#include "nt/nt.h"

struct EXCEPTION_RECORD {
    ULONG ExceptionCode;
    ULONG ExceptionFlags;
    EXCEPTION_RECORD *ExceptionRecord;
    PVOID ExceptionAddress;
    ULONG NumberParameters;
    ULONG ExceptionInformation[15];
};

struct _EXCEPTION_POINTERS {
    EXCEPTION_RECORD *ExceptionRecord;
    PVOID ContextRecord;
};
typedef _EXCEPTION_POINTERS EXCEPTION_POINTERS;

inline HANDLE NtCurrentProcess()
{
    return reinterpret_cast<HANDLE>(-1);
}

constexpr ULONG MEM_COMMIT = 0x1000;
constexpr ULONG MEM_RESERVE = 0x2000;
constexpr ULONG PAGE_NOACCESS = 0x01;
constexpr ULONG PAGE_READWRITE = 0x04;

extern "C" {

NTSYSAPI NTSTATUS NTAPI NtTerminateProcess(HANDLE process, NTSTATUS exitStatus);
NTSYSAPI NTSTATUS NTAPI NtWriteFile(HANDLE file, HANDLE event, PVOID routine, PVOID context,
                                    IO_STATUS_BLOCK *status, const void *buffer, ULONG size,
                                    const LONGLONG *offset, ULONG *key);
NTSYSAPI NTSTATUS NTAPI NtAllocateVirtualMemory(HANDLE process, PVOID *base, ULONG zeroBits, ULONG *size,
                                                ULONG type, ULONG protection);
NTSYSAPI NTSTATUS NTAPI NtProtectVirtualMemory(HANDLE process, PVOID *base, ULONG *size, ULONG protection,
                                               ULONG *oldProtection);
NTSYSAPI NTSTATUS NTAPI NtQueryPerformanceCounter(LONGLONG *counter, LONGLONG *frequency);
NTSYSAPI PVOID NTAPI RtlAddVectoredExceptionHandler(ULONG first, LONG(NTAPI *handler)(EXCEPTION_POINTERS *));
NTSYSAPI HANDLE NTAPI RtlCreateHeap(ULONG flags, PVOID base, size_t reserve, size_t commit, PVOID lock,
                                    PVOID parameters);
NTSYSAPI HANDLE NTAPI RtlDestroyHeap(HANDLE heap);

// C functions to measure ours against.

NTSYSAPI int __cdecl _wcsicmp(const WCHAR *a, const WCHAR *b);
NTSYSAPI int __cdecl memcmp(const void *a, const void *b, size_t size);
NTSYSAPI void *__cdecl memmove(void *destination, const void *source, size_t size);
NTSYSAPI char *__cdecl strchr(const char *text, int character);
NTSYSAPI int __cdecl strcmp(const char *a, const char *b);
NTSYSAPI char *__cdecl strcpy(char *destination, const char *source);
NTSYSAPI size_t __cdecl strlen(const char *text);
NTSYSAPI char *__cdecl strstr(const char *text, const char *needle);
NTSYSAPI WCHAR *__cdecl wcschr(const WCHAR *text, WCHAR character);
NTSYSAPI int __cdecl wcscmp(const WCHAR *a, const WCHAR *b);
NTSYSAPI WCHAR *__cdecl wcscpy(WCHAR *destination, const WCHAR *source);
NTSYSAPI size_t __cdecl wcslen(const WCHAR *text);
NTSYSAPI WCHAR *__cdecl wcsrchr(const WCHAR *text, WCHAR character);
NTSYSAPI WCHAR *__cdecl wcsstr(const WCHAR *text, const WCHAR *needle);

} // extern "C"

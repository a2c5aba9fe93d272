// Further declarations of ntdll.dll, for programs that import only ntdll.dll (apps/ntdll_programs.def lists
// the functions). The library itself uses none of them.

#pragma once

#include "nt/nt.h"

struct FILE_FS_DEVICE_INFORMATION {
    ULONG DeviceType;
    ULONG Characteristics;
};

constexpr ULONG FileFsDeviceInformation = 4;
constexpr ULONG FILE_DEVICE_DISK = 0x7;
constexpr ULONG FILE_DEVICE_DISK_FILE_SYSTEM = 0x8;
constexpr ULONG FILE_DEVICE_NAMED_PIPE = 0x11;
constexpr ULONG FILE_DEVICE_NETWORK_FILE_SYSTEM = 0x14;
constexpr ULONG FILE_DEVICE_VIRTUAL_DISK = 0x24;
constexpr ULONG FILE_DEVICE_CONSOLE = 0x50;

struct FILE_STANDARD_INFORMATION {
    LONGLONG AllocationSize;
    LONGLONG EndOfFile;
    ULONG NumberOfLinks;
    BOOLEAN DeletePending;
    BOOLEAN Directory;
};
static_assert(sizeof(FILE_STANDARD_INFORMATION) == 24);

constexpr ULONG FileStandardInformation = 5;

constexpr ACCESS_MASK FILE_GENERIC_READ = 0x120089;
constexpr ACCESS_MASK FILE_WRITE_DATA = 0x0002;
constexpr ACCESS_MASK FILE_WRITE_ATTRIBUTES = 0x0100;
constexpr ACCESS_MASK READ_CONTROL = 0x20000;
constexpr ACCESS_MASK WRITE_DAC = 0x40000;
constexpr ULONG FILE_NON_DIRECTORY_FILE = 0x40;
constexpr ULONG FILE_CREATED = 2; ///< in IO_STATUS_BLOCK::Information

constexpr NTSTATUS STATUS_OBJECT_NAME_COLLISION = static_cast<NTSTATUS>(0xC0000035);

struct FILE_BASIC_INFORMATION {
    LONGLONG CreationTime; ///< when setting, 0 leaves a time unchanged
    LONGLONG LastAccessTime;
    LONGLONG LastWriteTime;
    LONGLONG ChangeTime;
    ULONG FileAttributes;
};
static_assert(sizeof(FILE_BASIC_INFORMATION) == 40);

constexpr ULONG FileBasicInformation = 4;

constexpr ULONG FILE_ATTRIBUTE_READONLY = 0x1;
constexpr ULONG FILE_ATTRIBUTE_HIDDEN = 0x2;
constexpr ULONG FILE_ATTRIBUTE_SYSTEM = 0x4;
constexpr ULONG FILE_ATTRIBUTE_ARCHIVE = 0x20;
constexpr ULONG FILE_ATTRIBUTE_NOT_CONTENT_INDEXED = 0x2000;

struct FILE_RENAME_INFORMATION {
    BOOLEAN ReplaceIfExists;
    HANDLE RootDirectory;
    ULONG FileNameLength; ///< in bytes
    WCHAR FileName[1];
};

constexpr ULONG FileRenameInformation = 10;

struct FILE_DISPOSITION_INFORMATION {
    BOOLEAN DeleteFile; ///< when the last handle is closed
};

constexpr ULONG FileDispositionInformation = 13;

constexpr ULONG DACL_SECURITY_INFORMATION = 0x4;

constexpr ULONG ProcessBasicInformation = 0;
constexpr ULONG ProcessHandleCount = 20;

struct PROCESS_BASIC_INFORMATION {
    NTSTATUS ExitStatus;
    PEB *PebBaseAddress;
    ULONG AffinityMask;
    LONG BasePriority;
    ULONG UniqueProcessId;
    ULONG InheritedFromUniqueProcessId;
};

struct _STARTUPINFOW {
    ULONG cb;
    PVOID Reserved[16]; ///< all zeros: the new process gets the standard streams of this one
};
static_assert(sizeof(_STARTUPINFOW) == 68);

struct _PROCESS_INFORMATION {
    HANDLE hProcess;
    HANDLE hThread;
    ULONG dwProcessId;
    ULONG dwThreadId;
};

struct MEMORY_BASIC_INFORMATION {
    PVOID BaseAddress;
    PVOID AllocationBase;
    ULONG AllocationProtect;
    ULONG RegionSize;
    ULONG State;
    ULONG Protect;
    ULONG Type;
};

constexpr ULONG MEM_COMMIT = 0x1000;
constexpr ULONG MEM_RESERVE = 0x2000;
constexpr ULONG PAGE_NOACCESS = 0x01;
constexpr ULONG PAGE_EXECUTE_READWRITE = 0x40;

struct OBJECT_BASIC_INFORMATION {
    ULONG Attributes;
    ACCESS_MASK GrantedAccess;
    ULONG HandleCount;
    ULONG PointerCount;
    ULONG Reserved[10];
};
static_assert(sizeof(OBJECT_BASIC_INFORMATION) == 56);

constexpr ULONG ObjectBasicInformation = 0;

struct OBJECT_NAME_INFORMATION {
    UNICODE_STRING Name; ///< its characters follow
};

constexpr ULONG ObjectNameInformation = 1;

struct SYSTEM_HANDLE_TABLE_ENTRY_INFO {
    USHORT UniqueProcessId;
    USHORT CreatorBackTraceIndex;
    UCHAR ObjectTypeIndex;
    UCHAR HandleAttributes;
    USHORT HandleValue;
    PVOID Object;
    ACCESS_MASK GrantedAccess;
};
static_assert(sizeof(SYSTEM_HANDLE_TABLE_ENTRY_INFO) == 16);

constexpr ULONG SystemHandleInformation = 16;

/// A lock of all zeros is free.
struct RTL_SRWLOCK {
    PVOID Ptr;
};

// The digests of ntdll.dll.

struct MD4_CTX {
    ULONG state[4];
    ULONG count[2];
    UCHAR buffer[64];
    UCHAR digest[16];
};

struct MD5_CTX {
    ULONG count[2];
    ULONG state[4];
    UCHAR buffer[64];
    UCHAR digest[16];
};

struct SHA_CTX {
    ULONG state[6 + 5 + 2 + 16]; // larger than the structure of any version
};

extern "C" {

NTSYSAPI void NTAPI MD4Init(MD4_CTX *context);
NTSYSAPI void NTAPI MD4Update(MD4_CTX *context, const void *data, ULONG size);
NTSYSAPI void NTAPI MD4Final(MD4_CTX *context);
NTSYSAPI void NTAPI MD5Init(MD5_CTX *context);
NTSYSAPI void NTAPI MD5Update(MD5_CTX *context, const void *data, ULONG size);
NTSYSAPI void NTAPI MD5Final(MD5_CTX *context);
NTSYSAPI void NTAPI A_SHAInit(SHA_CTX *context);
NTSYSAPI void NTAPI A_SHAUpdate(SHA_CTX *context, const void *data, ULONG size);
NTSYSAPI void NTAPI A_SHAFinal(SHA_CTX *context, ULONG *digest);

NTSYSAPI NTSTATUS NTAPI NtTerminateProcess(HANDLE process, NTSTATUS exitStatus);
/// Notifies every DLL that the process ends. Only the calling thread may still be running.
NTSYSAPI void NTAPI LdrShutdownProcess();
/// The parameters of a native process contain offsets in place of pointers; this replaces them with pointers,
/// once.
NTSYSAPI RTL_USER_PROCESS_PARAMETERS *NTAPI
RtlNormalizeProcessParams(RTL_USER_PROCESS_PARAMETERS *parameters);
NTSYSAPI RTL_USER_PROCESS_PARAMETERS *NTAPI
RtlDeNormalizeProcessParams(RTL_USER_PROCESS_PARAMETERS *parameters);
NTSYSAPI NTSTATUS NTAPI NtWriteFile(HANDLE file, HANDLE event, PVOID routine, PVOID context,
                                    IO_STATUS_BLOCK *status, const void *buffer, ULONG size,
                                    const LONGLONG *offset, ULONG *key);
NTSYSAPI NTSTATUS NTAPI NtReadFile(HANDLE file, HANDLE event, PVOID routine, PVOID context,
                                   IO_STATUS_BLOCK *status, void *buffer, ULONG size, const LONGLONG *offset,
                                   ULONG *key);
NTSYSAPI NTSTATUS NTAPI NtCreateFile(HANDLE *handle, ACCESS_MASK access, const OBJECT_ATTRIBUTES *attributes,
                                     IO_STATUS_BLOCK *status, const LONGLONG *allocationSize,
                                     ULONG fileAttributes, ULONG share, ULONG disposition, ULONG options,
                                     PVOID extended, ULONG extendedSize);
NTSYSAPI NTSTATUS NTAPI RtlSetCurrentDirectory_U(const UNICODE_STRING *directory);
NTSYSAPI NTSTATUS NTAPI RtlSetEnvironmentVariable(WCHAR **environment, const UNICODE_STRING *name,
                                                  const UNICODE_STRING *value);
NTSYSAPI NTSTATUS NTAPI NtDeleteFile(const OBJECT_ATTRIBUTES *attributes);
NTSYSAPI NTSTATUS NTAPI NtFlushBuffersFile(HANDLE file, IO_STATUS_BLOCK *status);
NTSYSAPI NTSTATUS NTAPI NtSetInformationFile(HANDLE file, IO_STATUS_BLOCK *status, const void *information,
                                             ULONG size, ULONG informationClass);
NTSYSAPI NTSTATUS NTAPI NtQueryInformationProcess(HANDLE process, ULONG informationClass, PVOID information,
                                                  ULONG size, ULONG *returnedSize);
NTSYSAPI NTSTATUS NTAPI NtQueryVirtualMemory(HANDLE process, const void *address, ULONG informationClass,
                                             PVOID information, ULONG size, ULONG *returnedSize);
NTSYSAPI BOOLEAN NTAPI RtlValidateHeap(HANDLE heap, ULONG flags, const void *block);
NTSYSAPI NTSTATUS NTAPI NtQuerySystemInformation(ULONG informationClass, PVOID information, ULONG size,
                                                 ULONG *returnedSize);
NTSYSAPI NTSTATUS NTAPI NtQuerySystemTime(LONGLONG *time);
NTSYSAPI NTSTATUS NTAPI NtAllocateVirtualMemory(HANDLE process, PVOID *base, ULONG zeroBits, ULONG *size,
                                                ULONG type, ULONG protection);
NTSYSAPI NTSTATUS NTAPI NtProtectVirtualMemory(HANDLE process, PVOID *base, ULONG *size, ULONG protection,
                                               ULONG *oldProtection);
NTSYSAPI NTSTATUS NTAPI NtQueryPerformanceCounter(LONGLONG *counter, LONGLONG *frequency);
NTSYSAPI PVOID NTAPI RtlAddVectoredExceptionHandler(ULONG first, LONG(NTAPI *handler)(EXCEPTION_POINTERS *));
NTSYSAPI HANDLE NTAPI RtlCreateHeap(ULONG flags, PVOID base, size_t reserve, size_t commit, PVOID lock,
                                    PVOID parameters);
NTSYSAPI HANDLE NTAPI RtlDestroyHeap(HANDLE heap);
NTSYSAPI size_t NTAPI RtlSizeHeap(HANDLE heap, ULONG flags, const void *block);
NTSYSAPI NTSTATUS NTAPI NtQueryObject(HANDLE handle, ULONG informationClass, PVOID information, ULONG size,
                                      ULONG *returnedSize);
NTSYSAPI NTSTATUS NTAPI NtOpenProcessToken(HANDLE process, ACCESS_MASK access, HANDLE *token);
NTSYSAPI NTSTATUS NTAPI NtSetInformationThread(HANDLE thread, ULONG informationClass, const void *information,
                                               ULONG size);
NTSYSAPI NTSTATUS NTAPI RtlImpersonateSelf(ULONG level);
NTSYSAPI ULONG NTAPI RtlLengthSid(PVOID sid);
NTSYSAPI NTSTATUS NTAPI NtQuerySecurityObject(HANDLE handle, ULONG parts, PVOID descriptor, ULONG size,
                                              ULONG *needed);
NTSYSAPI NTSTATUS NTAPI NtSetSecurityObject(HANDLE handle, ULONG parts, const void *descriptor);
NTSYSAPI NTSTATUS NTAPI ZwCreateDirectoryObject(HANDLE *handle, ACCESS_MASK access,
                                                const OBJECT_ATTRIBUTES *attributes);

NTSYSAPI NTSTATUS NTAPI RtlMultiByteToUnicodeN(WCHAR *target, ULONG capacity, ULONG *written,
                                               const char *source, ULONG size);
NTSYSAPI NTSTATUS NTAPI RtlOemToUnicodeN(WCHAR *target, ULONG capacity, ULONG *written, const char *source,
                                         ULONG size);
NTSYSAPI NTSTATUS NTAPI RtlUTF8ToUnicodeN(WCHAR *target, ULONG capacity, ULONG *written, const char *source,
                                          ULONG size);
NTSYSAPI NTSTATUS NTAPI RtlUnicodeToMultiByteN(char *target, ULONG capacity, ULONG *written,
                                               const WCHAR *source, ULONG size);
NTSYSAPI NTSTATUS NTAPI RtlUnicodeToUTF8N(char *target, ULONG capacity, ULONG *written, const WCHAR *source,
                                          ULONG size);
NTSYSAPI NTSTATUS NTAPI RtlUnicodeToOemN(char *target, ULONG capacity, ULONG *written, const WCHAR *source,
                                         ULONG size);

// Locks that ours are measured against.

NTSYSAPI void NTAPI RtlAcquireSRWLockExclusive(RTL_SRWLOCK *lock);
NTSYSAPI void NTAPI RtlReleaseSRWLockExclusive(RTL_SRWLOCK *lock);
NTSYSAPI void NTAPI RtlAcquireSRWLockShared(RTL_SRWLOCK *lock);
NTSYSAPI void NTAPI RtlReleaseSRWLockShared(RTL_SRWLOCK *lock);

// C functions that ours are measured against.

NTSYSAPI WCHAR *__cdecl _i64tow(int64_t value, WCHAR *target, int radix);
NTSYSAPI int __cdecl _snwprintf(WCHAR *target, size_t capacity, const WCHAR *format, ...);
NTSYSAPI int __cdecl _wcsicmp(const WCHAR *a, const WCHAR *b);
NTSYSAPI int64_t __cdecl _wtoi64(const WCHAR *text);
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

// Declarations of the platform: the types, structures and functions of the 32-bit NT native interface that
// this library uses.
//
// Only what is used is declared. Names and tags are the platform's own, so that the public headers, which
// refer to the structures by tag alone, agree with a caller's SDK. Layouts are checked below, because no
// other code checks them. A function declared here can be called only if ntdll.def lists it; the optional
// functions are reached through the entry-point tables, which take their types from these declarations.

#pragma once

#include <stddef.h>
#include <stdint.h>

typedef void *HANDLE;
typedef void *PVOID;
typedef uint8_t UCHAR, BOOLEAN;
typedef uint16_t USHORT;
typedef wchar_t WCHAR;
typedef int BOOL;
typedef long LONG, NTSTATUS;
typedef unsigned long ULONG, ACCESS_MASK;
typedef int64_t LONGLONG;
typedef uint64_t ULONGLONG;

#define NTAPI __stdcall
#if defined(ORV_HOST)
#define NTSYSAPI
#else
#define NTSYSAPI __declspec(dllimport)
#endif

#define INVALID_HANDLE_VALUE (reinterpret_cast<HANDLE>(-1))

constexpr ULONG HEAP_ZERO_MEMORY = 0x8;

inline HANDLE NtCurrentProcess()
{
    return reinterpret_cast<HANDLE>(-1);
}

inline HANDLE NtCurrentThread()
{
    return reinterpret_cast<HANDLE>(-2);
}

constexpr bool NT_SUCCESS(NTSTATUS status)
{
    return status >= 0;
}

/// Whether the severity is that of an error. A test for values below zero would also accept warnings.
constexpr bool NT_ERROR(NTSTATUS status)
{
    return static_cast<ULONG>(status) >> 30 == 3;
}

// Statuses.

constexpr NTSTATUS STATUS_SUCCESS = 0;
constexpr NTSTATUS STATUS_WAIT_0 = 0;       // plus the index, up to 63, of the object that ended the wait
constexpr NTSTATUS STATUS_ABANDONED = 0x80; // likewise
constexpr NTSTATUS STATUS_TIMEOUT = 0x102;
constexpr NTSTATUS STATUS_NOT_ALL_ASSIGNED = 0x106;
constexpr NTSTATUS STATUS_PENDING = 0x103;
constexpr NTSTATUS STATUS_OBJECT_NAME_EXISTS = 0x40000000;
constexpr NTSTATUS STATUS_BUFFER_OVERFLOW = static_cast<NTSTATUS>(0x80000005);
constexpr NTSTATUS STATUS_NO_MORE_FILES = static_cast<NTSTATUS>(0x80000006);
constexpr NTSTATUS STATUS_UNSUCCESSFUL = static_cast<NTSTATUS>(0xC0000001);
constexpr NTSTATUS STATUS_NO_MORE_ENTRIES = static_cast<NTSTATUS>(0x8000001A);
constexpr NTSTATUS STATUS_NOT_IMPLEMENTED = static_cast<NTSTATUS>(0xC0000002);
constexpr NTSTATUS STATUS_INVALID_HANDLE = static_cast<NTSTATUS>(0xC0000008);
constexpr NTSTATUS STATUS_INVALID_PARAMETER = static_cast<NTSTATUS>(0xC000000D);
constexpr NTSTATUS STATUS_END_OF_FILE = static_cast<NTSTATUS>(0xC0000011);
constexpr NTSTATUS STATUS_NO_MEMORY = static_cast<NTSTATUS>(0xC0000017);
constexpr NTSTATUS STATUS_ACCESS_DENIED = static_cast<NTSTATUS>(0xC0000022);
constexpr NTSTATUS STATUS_BUFFER_TOO_SMALL = static_cast<NTSTATUS>(0xC0000023);
constexpr NTSTATUS STATUS_OBJECT_NAME_INVALID = static_cast<NTSTATUS>(0xC0000033);
constexpr NTSTATUS STATUS_OBJECT_NAME_NOT_FOUND = static_cast<NTSTATUS>(0xC0000034);
constexpr NTSTATUS STATUS_OBJECT_PATH_NOT_FOUND = static_cast<NTSTATUS>(0xC000003A);
constexpr NTSTATUS STATUS_FILE_LOCK_CONFLICT = static_cast<NTSTATUS>(0xC0000054);
constexpr NTSTATUS STATUS_LOCK_NOT_GRANTED = static_cast<NTSTATUS>(0xC0000055);
constexpr NTSTATUS STATUS_VARIABLE_NOT_FOUND = static_cast<NTSTATUS>(0xC0000100);
constexpr NTSTATUS STATUS_CANCELLED = static_cast<NTSTATUS>(0xC0000120);
constexpr NTSTATUS STATUS_NO_TOKEN = static_cast<NTSTATUS>(0xC000007C);
constexpr NTSTATUS STATUS_THREAD_IS_TERMINATING = static_cast<NTSTATUS>(0xC000004B);
constexpr NTSTATUS STATUS_INSUFFICIENT_RESOURCES = static_cast<NTSTATUS>(0xC000009A);
constexpr NTSTATUS STATUS_PIPE_BROKEN = static_cast<NTSTATUS>(0xC000014B);
constexpr NTSTATUS STATUS_RETRY = static_cast<NTSTATUS>(0xC000022D);
constexpr NTSTATUS STATUS_KEY_DELETED = static_cast<NTSTATUS>(0xC000017C);

// Win32 error numbers.

enum : uint16_t {
    ERROR_INVALID_FUNCTION = 1,
    ERROR_FILE_NOT_FOUND = 2,
    ERROR_PATH_NOT_FOUND = 3,
    ERROR_ACCESS_DENIED = 5,
    ERROR_INVALID_HANDLE = 6,
    ERROR_NOT_ENOUGH_MEMORY = 8,
    ERROR_INVALID_ACCESS = 12,
    ERROR_INVALID_DATA = 13,
    ERROR_OUTOFMEMORY = 14,
    ERROR_NO_MORE_FILES = 18,
    ERROR_CRC = 23,
    ERROR_BAD_LENGTH = 24,
    ERROR_WRITE_FAULT = 29,
    ERROR_READ_FAULT = 30,
    ERROR_SHARING_VIOLATION = 32,
    ERROR_NOT_SUPPORTED = 50,
    ERROR_DUP_NAME = 52,
    ERROR_FILE_EXISTS = 80,
    ERROR_INVALID_PARAMETER = 87,
    ERROR_DISK_FULL = 112,
    ERROR_INSUFFICIENT_BUFFER = 122,
    ERROR_INVALID_NAME = 123,
    ERROR_MOD_NOT_FOUND = 126,
    ERROR_NEGATIVE_SEEK = 131,
    ERROR_ALREADY_EXISTS = 183,
    ERROR_INVALID_ADDRESS = 487,
    ERROR_OPERATION_ABORTED = 995,
    ERROR_NOACCESS = 998,
    ERROR_UNSUPPORTED_TYPE = 1630,
    ERROR_EMPTY = 4306,
    ERROR_NOT_EMPTY = 4307,
    ERROR_OBJECT_NOT_FOUND = 4312,
    ERROR_INVALID_OPERATION = 4317,
    WSAECONNREFUSED = 10061,
};

// Counted strings and object attributes.

/// Lengths are in bytes; the text need not be terminated.
struct _UNICODE_STRING {
    USHORT Length;
    USHORT MaximumLength;
    WCHAR *Buffer;
};
typedef _UNICODE_STRING UNICODE_STRING;

struct _STRING {
    USHORT Length;
    USHORT MaximumLength;
    char *Buffer;
};
typedef _STRING ANSI_STRING;

struct _OBJECT_ATTRIBUTES {
    ULONG Length;
    HANDLE RootDirectory;
    UNICODE_STRING *ObjectName;
    ULONG Attributes;
    PVOID SecurityDescriptor;
    PVOID SecurityQualityOfService;
};
typedef _OBJECT_ATTRIBUTES OBJECT_ATTRIBUTES;

enum : ULONG {
    OBJ_CASE_INSENSITIVE = 0x40,
    OBJ_OPENIF = 0x80,
    OBJ_OPENLINK = 0x100,
    OBJ_KERNEL_HANDLE = 0x200,
};

struct _IO_STATUS_BLOCK {
    union {
        NTSTATUS Status;
        PVOID Pointer;
    };
    ULONG Information;
};
typedef _IO_STATUS_BLOCK IO_STATUS_BLOCK;

struct _CLIENT_ID {
    HANDLE UniqueProcess;
    HANDLE UniqueThread;
};
typedef _CLIENT_ID CLIENT_ID;

// Devices and files.

constexpr ACCESS_MASK FILE_READ_DATA = 0x0001;
constexpr ACCESS_MASK FILE_LIST_DIRECTORY = 0x0001;
constexpr ACCESS_MASK FILE_READ_ATTRIBUTES = 0x0080;
constexpr ACCESS_MASK GENERIC_READ = 0x80000000;
constexpr ACCESS_MASK GENERIC_WRITE = 0x40000000;
constexpr ULONG FILE_SHARE_READ = 0x1;
constexpr ULONG FILE_SHARE_WRITE = 0x2;
constexpr ULONG FILE_SHARE_ALL = 0x7; ///< read, write and delete
constexpr ULONG FILE_OPEN = 1;
constexpr ULONG FILE_CREATE = 2;
constexpr ULONG FILE_OPEN_IF = 3;
constexpr ULONG FILE_DIRECTORY_FILE = 0x1;
constexpr ULONG FILE_SYNCHRONOUS_IO_NONALERT = 0x20;
constexpr ULONG FILE_OPEN_FOR_BACKUP_INTENT = 0x4000;
constexpr ULONG FILE_ATTRIBUTE_NORMAL = 0x80;

constexpr ULONG FileBothDirectoryInformation = 3;
constexpr ULONG FileInternalInformation = 6;
constexpr ULONG FileIdInformation = 59;
constexpr ULONG FileFsVolumeInformation = 1;

struct FILE_BOTH_DIR_INFORMATION {
    ULONG NextEntryOffset;
    ULONG FileIndex;
    LONGLONG CreationTime;
    LONGLONG LastAccessTime;
    LONGLONG LastWriteTime;
    LONGLONG ChangeTime;
    LONGLONG EndOfFile;
    LONGLONG AllocationSize;
    ULONG FileAttributes;
    ULONG FileNameLength; ///< in bytes, like the other lengths
    ULONG EaSize;
    char ShortNameLength;
    WCHAR ShortName[12];
    WCHAR FileName[1];
};
static_assert(offsetof(FILE_BOTH_DIR_INFORMATION, FileName) == 94);

struct FILE_INTERNAL_INFORMATION {
    ULONGLONG IndexNumber;
};

struct FILE_ID_INFORMATION {
    ULONGLONG VolumeSerialNumber;
    ULONGLONG FileId[2];
};

struct FILE_FS_VOLUME_INFORMATION {
    LONGLONG VolumeCreationTime;
    ULONG VolumeSerialNumber;
    ULONG VolumeLabelLength;
    BOOLEAN SupportsObjects;
    WCHAR VolumeLabel[1];
};
static_assert(offsetof(FILE_FS_VOLUME_INFORMATION, VolumeLabel) == 18);

/// Fills the output buffer from the kernel's generator of random numbers.
constexpr ULONG IOCTL_KSEC_RNG = 0x390004;

// Structures that only the optional functions take; the library passes them on by address.

struct _ACL;
struct _GUID;
struct _EVENT_DESCRIPTOR;
struct _EVENT_DATA_DESCRIPTOR;
struct _MEMORYSTATUSEX;
struct _OVERLAPPED;
struct _PROCESS_INFORMATION;
struct _SECURITY_ATTRIBUTES;
struct _STARTUPINFOA;
struct _STARTUPINFOW;

struct _OSVERSIONINFOW {
    ULONG dwOSVersionInfoSize;
    ULONG dwMajorVersion;
    ULONG dwMinorVersion;
    ULONG dwBuildNumber;
    ULONG dwPlatformId;
    WCHAR szCSDVersion[128];
};
typedef _OSVERSIONINFOW OSVERSIONINFOW;

// Exceptions.

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

enum EXCEPTION_DISPOSITION : int { ExceptionContinueExecution, ExceptionContinueSearch };

/// A handler in the chain that starts in the thread's environment block. It must be on the stack.
struct EXCEPTION_REGISTRATION_RECORD {
    EXCEPTION_REGISTRATION_RECORD *Next;
    EXCEPTION_DISPOSITION(__cdecl *Handler)
    (EXCEPTION_RECORD *record, EXCEPTION_REGISTRATION_RECORD *frame, PVOID context, PVOID dispatcher);
};

constexpr ULONG EXCEPTION_UNWIND = 0x6; ///< either unwinding flag: handlers are called only to clean up

// The results of an exception filter.
constexpr LONG EXCEPTION_EXECUTE_HANDLER = 1;
constexpr LONG EXCEPTION_CONTINUE_SEARCH = 0;
constexpr LONG EXCEPTION_CONTINUE_EXECUTION = -1;

// Lists. The head of an empty list points to itself.

struct LIST_ENTRY {
    LIST_ENTRY *Flink;
    LIST_ENTRY *Blink;
};

/// A bitmap. The caller owns its words.
struct RTL_BITMAP {
    ULONG SizeOfBitMap; ///< in bits
    ULONG *Buffer;
};

// The environment blocks of the process and of the thread; only the fields that are used are named.

struct RTL_USER_PROCESS_PARAMETERS {
    uint8_t Reserved1[0x18];
    HANDLE StandardInput;
    HANDLE StandardOutput;
    HANDLE StandardError;
    UNICODE_STRING CurrentDirectory;
    HANDLE CurrentDirectoryHandle;
    UNICODE_STRING DllPath;
    UNICODE_STRING ImagePathName;
    UNICODE_STRING CommandLine;
    WCHAR *Environment;
};

struct PEB {
    uint8_t Reserved1[8];
    PVOID ImageBaseAddress;
    PVOID Ldr;
    RTL_USER_PROCESS_PARAMETERS *ProcessParameters;
    PVOID SubSystemData;
    HANDLE ProcessHeap;
    uint8_t Reserved2[0x24];
    RTL_BITMAP *TlsBitmap;
    uint8_t Reserved5[0x20];
    ULONG NumberOfProcessors;
    uint8_t Reserved3[0x3C];
    ULONG OSMajorVersion;
    ULONG OSMinorVersion;
    USHORT OSBuildNumber;
    USHORT OSCSDVersion;
    ULONG OSPlatformId;
    uint8_t Reserved4[0x9C];
    RTL_BITMAP *TlsExpansionBitmap;
    uint8_t Reserved6[0x80];
    ULONG SessionId;
};

/// The numbers of thread-local slots: those that every thread has, and the expansion slots after them, which
/// a thread gets when it first needs one.
constexpr ULONG TLS_MINIMUM_AVAILABLE = 64;
constexpr ULONG TLS_EXPANSION_SLOTS = 1024;

struct TEB {
    EXCEPTION_REGISTRATION_RECORD *ExceptionList;
    PVOID StackBase;  ///< the stack's highest address
    PVOID StackLimit; ///< the lowest address that is committed
    uint8_t Reserved1[0xC];
    TEB *Self;
    PVOID EnvironmentPointer;
    CLIENT_ID ClientId;
    PVOID ActiveRpcHandle;
    PVOID ThreadLocalStoragePointer;
    PEB *ProcessEnvironmentBlock;
    ULONG LastErrorValue;
    uint8_t Reserved2[0x88];
    PVOID WOW32Reserved; ///< on 64-bit systems: the entry into the 64-bit system
    uint8_t Reserved3[0xD48];
    PVOID DeallocationStack; ///< the lowest address that is reserved for the stack
    PVOID TlsSlots[TLS_MINIMUM_AVAILABLE];
    uint8_t Reserved4[0x65];
    BOOLEAN FreeStackOnTermination; ///< before 6.0: whether the stack is freed when the thread ends itself
    uint8_t Reserved5[0x1E];
    PVOID *TlsExpansionSlots; ///< a block of the process heap; null until the thread needs one of the slots
};

/// A 64-bit count that the system updates while we read: High2Time is written first and High1Time last.
struct KSYSTEM_TIME {
    ULONG LowPart;
    LONG High1Time;
    LONG High2Time;
};

/// The page that the system maps read-only into every process.
struct KUSER_SHARED_DATA {
    ULONG TickCountLow;
    ULONG TickCountMultiplier;
    KSYSTEM_TIME InterruptTime;
    KSYSTEM_TIME SystemTime;
    KSYSTEM_TIME TimeZoneBias;
    USHORT ImageNumberLow;
    USHORT ImageNumberHigh;
    WCHAR NtSystemRoot[260];
    uint8_t Reserved1[0x2C];
    ULONG NtProductType;
    ULONG ProductTypeIsValid;
    ULONG NtMajorVersion;
    ULONG NtMinorVersion;
    uint8_t ProcessorFeatures[64];
    uint8_t Reserved2[0x1C];
    ULONG SuiteMask;
    uint8_t Reserved3[0x4C];
    KSYSTEM_TIME TickCount;
};

// Calendar.

struct TIME_FIELDS {
    USHORT Year;
    USHORT Month;
    USHORT Day;
    USHORT Hour;
    USHORT Minute;
    USHORT Second;
    USHORT Milliseconds;
    USHORT Weekday;
};

struct _SYSTEMTIME {
    USHORT wYear;
    USHORT wMonth;
    USHORT wDayOfWeek;
    USHORT wDay;
    USHORT wHour;
    USHORT wMinute;
    USHORT wSecond;
    USHORT wMilliseconds;
};

static_assert(sizeof(void *) == 4, "the layouts below are those of a 32-bit process");
static_assert(sizeof(OBJECT_ATTRIBUTES) == 24);
static_assert(offsetof(RTL_USER_PROCESS_PARAMETERS, CommandLine) == 0x40);
static_assert(offsetof(PEB, ProcessHeap) == 0x18);
static_assert(offsetof(PEB, TlsBitmap) == 0x40);
static_assert(offsetof(PEB, NumberOfProcessors) == 0x64);
static_assert(offsetof(PEB, OSBuildNumber) == 0xAC);
static_assert(offsetof(PEB, TlsExpansionBitmap) == 0x150);
static_assert(offsetof(PEB, SessionId) == 0x1D4);
static_assert(offsetof(TEB, Self) == 0x18);
static_assert(offsetof(TEB, ClientId) == 0x20);
static_assert(offsetof(TEB, LastErrorValue) == 0x34);
static_assert(offsetof(TEB, WOW32Reserved) == 0xC0);
static_assert(offsetof(TEB, DeallocationStack) == 0xE0C);
static_assert(offsetof(TEB, TlsSlots) == 0xE10);
static_assert(offsetof(TEB, FreeStackOnTermination) == 0xF75);
static_assert(offsetof(TEB, TlsExpansionSlots) == 0xF94);
static_assert(offsetof(KUSER_SHARED_DATA, NtProductType) == 0x264);
static_assert(offsetof(KUSER_SHARED_DATA, SystemTime) == 0x14);
static_assert(offsetof(KUSER_SHARED_DATA, NtMajorVersion) == 0x26C);
static_assert(offsetof(KUSER_SHARED_DATA, SuiteMask) == 0x2D0);
static_assert(offsetof(KUSER_SHARED_DATA, TickCount) == 0x320);

// Synchronization objects.

enum EVENT_TYPE : ULONG { NotificationEvent, SynchronizationEvent };

constexpr ACCESS_MASK EVENT_ALL_ACCESS = 0x1F0003;
constexpr ACCESS_MASK SEMAPHORE_ALL_ACCESS = 0x1F0003;
constexpr ACCESS_MASK MUTANT_QUERY_STATE = 0x0001;
constexpr ACCESS_MASK DELETE = 0x10000;
constexpr ACCESS_MASK SYNCHRONIZE = 0x100000;

struct EVENT_BASIC_INFORMATION {
    ULONG EventType;
    LONG EventState;
};
static_assert(sizeof(EVENT_BASIC_INFORMATION) == 8);

constexpr ULONG EventBasicInformation = 0;

// Sections.

constexpr ACCESS_MASK SECTION_MAP_WRITE = 0x0002;
constexpr ACCESS_MASK SECTION_MAP_READ = 0x0004;
constexpr ACCESS_MASK SECTION_SHARED_ACCESS = 0xF0007; ///< all rights except execute and extend
constexpr ULONG SEC_COMMIT = 0x8000000;
constexpr ULONG PAGE_READONLY = 0x02;
constexpr ULONG PAGE_READWRITE = 0x04;
constexpr ULONG ViewUnmap = 2; ///< child processes do not inherit the view

struct RTL_CRITICAL_SECTION {
    PVOID DebugInfo;
    LONG LockCount;
    LONG RecursionCount;
    HANDLE OwningThread;
    HANDLE LockSemaphore;
    ULONG SpinCount;
};
static_assert(sizeof(RTL_CRITICAL_SECTION) == 24);

// Threads.

struct THREAD_BASIC_INFORMATION {
    NTSTATUS ExitStatus; ///< STATUS_PENDING while the thread runs
    TEB *TebBaseAddress;
    CLIENT_ID ClientId;
    ULONG AffinityMask;
    LONG Priority;
    LONG BasePriority;
};
static_assert(sizeof(THREAD_BASIC_INFORMATION) == 28);

/// The registers of a thread. The flags select a part of them; the registers themselves are not used here.
struct CONTEXT {
    ULONG ContextFlags;
    uint8_t Registers[0x2C8];
};
static_assert(sizeof(CONTEXT) == 0x2CC);

constexpr ULONG CONTEXT_CONTROL = 0x10001;

enum THREADINFOCLASS : ULONG {
    ThreadBasicInformation = 0,
    ThreadBasePriority = 3,
    ThreadImpersonationToken = 5,
    ThreadZeroTlsCell = 10,
    ThreadIoPriority = 22,
};

enum IO_PRIORITY_HINT : ULONG { IoPriorityVeryLow, IoPriorityLow };

constexpr ACCESS_MASK THREAD_TERMINATE = 0x0001;
constexpr ACCESS_MASK THREAD_SUSPEND_RESUME = 0x0002;
constexpr ACCESS_MASK THREAD_GET_CONTEXT = 0x0008;
constexpr ACCESS_MASK THREAD_QUERY_INFORMATION = 0x0040;

// Thread priorities relative to the process's priority. The first and the last are the ends of the native
// scale, and saturate.
constexpr LONG THREAD_PRIORITY_TIME_CRITICAL = 16;
constexpr LONG THREAD_PRIORITY_HIGHEST = 2;
constexpr LONG THREAD_PRIORITY_NORMAL = 0;
constexpr LONG THREAD_PRIORITY_LOWEST = -2;
constexpr LONG THREAD_PRIORITY_IDLE = -16;

constexpr ULONG MEM_RELEASE = 0x8000;

/// The exception by which a thread tells a debugger its name.
constexpr ULONG MS_VC_EXCEPTION = 0x406D1388;

// The system.

struct SYSTEM_BASIC_INFORMATION {
    ULONG Reserved;
    ULONG TimerResolution;
    ULONG PageSize;
    ULONG NumberOfPhysicalPages;
    ULONG LowestPhysicalPageNumber;
    ULONG HighestPhysicalPageNumber;
    ULONG AllocationGranularity;
    uintptr_t MinimumUserModeAddress;
    uintptr_t MaximumUserModeAddress;
    uintptr_t ActiveProcessorsAffinityMask;
    UCHAR NumberOfProcessors;
};
static_assert(sizeof(SYSTEM_BASIC_INFORMATION) == 44);

struct SYSTEM_PROCESSOR_INFORMATION {
    USHORT ProcessorArchitecture;
    USHORT ProcessorLevel;
    USHORT ProcessorRevision;
    USHORT MaximumProcessors;
    ULONG ProcessorFeatureBits;
};
static_assert(sizeof(SYSTEM_PROCESSOR_INFORMATION) == 12);

enum SYSTEM_INFORMATION_CLASS : ULONG { SystemBasicInformation = 0, SystemProcessorInformation = 1 };

constexpr USHORT PROCESSOR_ARCHITECTURE_IA64 = 6;
constexpr USHORT PROCESSOR_ARCHITECTURE_AMD64 = 9;

// Registry. Lengths are in bytes; names are not terminated.

constexpr ACCESS_MASK MAXIMUM_ALLOWED = 0x02000000;
constexpr ACCESS_MASK KEY_QUERY_VALUE = 0x0001;
constexpr ACCESS_MASK KEY_SET_VALUE = 0x0002;
constexpr ACCESS_MASK KEY_CREATE_SUB_KEY = 0x0004;
constexpr ACCESS_MASK KEY_ENUMERATE_SUB_KEYS = 0x0008;
constexpr ACCESS_MASK KEY_NOTIFY = 0x0010;
constexpr ACCESS_MASK KEY_WOW64_64KEY = 0x0100;
constexpr ACCESS_MASK KEY_WOW64_32KEY = 0x0200;
constexpr ULONG REG_OPENED_EXISTING_KEY = 2;
constexpr ULONG REG_NOTIFY_CHANGE_NAME = 0x1;
constexpr ULONG REG_NOTIFY_CHANGE_ATTRIBUTES = 0x2;
constexpr ULONG REG_NOTIFY_CHANGE_LAST_SET = 0x4; ///< changes of values
constexpr ULONG REG_NOTIFY_CHANGE_SECURITY = 0x8;
constexpr ULONG REG_NOTIFY_THREAD_AGNOSTIC = 0x10000000; ///< since 6.2
constexpr ULONG KeyBasicInformation = 0;
constexpr ULONG KeyFullInformation = 2;
constexpr ULONG KeyNameInformation = 3;
constexpr ULONG KeyValueBasicInformation = 0;
constexpr ULONG KeyValuePartialInformation = 2;

struct KEY_BASIC_INFORMATION {
    LONGLONG LastWriteTime;
    ULONG TitleIndex;
    ULONG NameLength;
    WCHAR Name[1];
};

struct KEY_FULL_INFORMATION {
    LONGLONG LastWriteTime;
    ULONG TitleIndex;
    ULONG ClassOffset;
    ULONG ClassLength;
    ULONG SubKeys;
    ULONG MaxNameLen;
    ULONG MaxClassLen;
    ULONG Values;
    ULONG MaxValueNameLen;
    ULONG MaxValueDataLen;
    WCHAR Class[1];
};
static_assert(offsetof(KEY_FULL_INFORMATION, Class) == 44);

struct KEY_NAME_INFORMATION {
    ULONG NameLength;
    WCHAR Name[1];
};

struct KEY_VALUE_BASIC_INFORMATION {
    ULONG TitleIndex;
    ULONG Type;
    ULONG NameLength;
    WCHAR Name[1];
};

struct KEY_VALUE_PARTIAL_INFORMATION {
    ULONG TitleIndex;
    ULONG Type;
    ULONG DataLength;
    UCHAR Data[1];
};

/// With room for one privilege.
struct TOKEN_PRIVILEGES {
    ULONG PrivilegeCount;
    ULONG Luid[2];
    ULONG Attributes;
};

constexpr ACCESS_MASK TOKEN_QUERY = 0x0008;
constexpr ACCESS_MASK TOKEN_QUERY_SOURCE = 0x0010;
constexpr ACCESS_MASK TOKEN_ADJUST_PRIVILEGES = 0x0020;
constexpr ULONG SE_BACKUP_PRIVILEGE = 17;
constexpr ULONG SE_RESTORE_PRIVILEGE = 18;
constexpr ULONG SE_PRIVILEGE_ENABLED = 2;

// Transactions.

constexpr ACCESS_MASK TRANSACTION_ALL_ACCESS = 0x1F003F;

// Security.

struct TOKEN_USER {
    PVOID Sid;
    ULONG Attributes;
};

enum TOKEN_INFORMATION_CLASS : ULONG { TokenUser = 1 };

constexpr ULONG ACL_REVISION = 2;
constexpr ULONG SECURITY_DESCRIPTOR_REVISION = 1;
constexpr ULONG SECURITY_MAX_SID_SIZE = 68;
constexpr UCHAR SYSTEM_MANDATORY_LABEL_ACE_TYPE = 0x11;
constexpr ACCESS_MASK SYSTEM_MANDATORY_LABEL_NO_WRITE_UP = 1;

// The last parts of well-known security identifiers.
constexpr ULONG SECURITY_WORLD_RID = 0;
constexpr ULONG SECURITY_ANONYMOUS_LOGON_RID = 7;
constexpr ULONG SECURITY_AUTHENTICATED_USER_RID = 11;
constexpr ULONG SECURITY_LOCAL_SYSTEM_RID = 18;
constexpr ULONG SECURITY_BUILTIN_DOMAIN_RID = 32;
constexpr ULONG DOMAIN_ALIAS_RID_ADMINS = 544;

/// The absolute form: with pointers, not with offsets.
struct SECURITY_DESCRIPTOR {
    UCHAR Revision;
    UCHAR Sbz1;
    USHORT Control;
    PVOID Owner;
    PVOID Group;
    _ACL *Sacl;
    _ACL *Dacl;
};

extern "C" {

// Modules.

NTSYSAPI NTSTATUS NTAPI LdrLoadDll(const WCHAR *path, ULONG *flags, const UNICODE_STRING *name,
                                   PVOID *module);
NTSYSAPI NTSTATUS NTAPI LdrGetDllHandle(const WCHAR *path, ULONG *flags, const UNICODE_STRING *name,
                                        PVOID *module);
NTSYSAPI NTSTATUS NTAPI LdrGetProcedureAddress(PVOID module, const ANSI_STRING *name, ULONG ordinal,
                                               PVOID *address);
NTSYSAPI NTSTATUS NTAPI LdrUnloadDll(PVOID module);

// Statuses and memory.

NTSYSAPI ULONG NTAPI RtlNtStatusToDosError(NTSTATUS status);
NTSYSAPI PVOID NTAPI RtlAllocateHeap(HANDLE heap, ULONG flags, size_t size);
NTSYSAPI PVOID NTAPI RtlReAllocateHeap(HANDLE heap, ULONG flags, PVOID block, size_t size);
NTSYSAPI BOOLEAN NTAPI RtlFreeHeap(HANDLE heap, ULONG flags, PVOID block);

// Counted strings.

NTSYSAPI void NTAPI RtlInitUnicodeString(UNICODE_STRING *counted, const WCHAR *terminated);

// Case mapping. When `allocate` is false, the caller of a string form provides the destination.

NTSYSAPI WCHAR NTAPI RtlUpcaseUnicodeChar(WCHAR character);
NTSYSAPI NTSTATUS NTAPI RtlUpcaseUnicodeString(UNICODE_STRING *destination, const UNICODE_STRING *source,
                                               BOOLEAN allocate);
NTSYSAPI NTSTATUS NTAPI RtlDowncaseUnicodeString(UNICODE_STRING *destination, const UNICODE_STRING *source,
                                                 BOOLEAN allocate);

// Calendar and time zone.

NTSYSAPI void NTAPI RtlTimeToTimeFields(const LONGLONG *time, TIME_FIELDS *fields);
NTSYSAPI BOOLEAN NTAPI RtlTimeFieldsToTime(TIME_FIELDS *fields, LONGLONG *time);
NTSYSAPI NTSTATUS NTAPI RtlSystemTimeToLocalTime(const LONGLONG *systemTime, LONGLONG *localTime);
NTSYSAPI NTSTATUS NTAPI RtlLocalTimeToSystemTime(const LONGLONG *localTime, LONGLONG *systemTime);

// The ANSI and OEM pages. The string forms write a terminator, for which the destination must have room. When
// `allocate` is false, the caller provides the destination. Sizes are in bytes and count the terminator.

NTSYSAPI NTSTATUS NTAPI RtlAnsiStringToUnicodeString(UNICODE_STRING *destination, const ANSI_STRING *source,
                                                     BOOLEAN allocate);
NTSYSAPI NTSTATUS NTAPI RtlOemStringToUnicodeString(UNICODE_STRING *destination, const ANSI_STRING *source,
                                                    BOOLEAN allocate);
NTSYSAPI NTSTATUS NTAPI RtlUnicodeStringToAnsiString(ANSI_STRING *destination, const UNICODE_STRING *source,
                                                     BOOLEAN allocate);
NTSYSAPI NTSTATUS NTAPI RtlUnicodeStringToOemString(ANSI_STRING *destination, const UNICODE_STRING *source,
                                                    BOOLEAN allocate);
NTSYSAPI ULONG NTAPI RtlxAnsiStringToUnicodeSize(const ANSI_STRING *source);
NTSYSAPI ULONG NTAPI RtlxOemStringToUnicodeSize(const ANSI_STRING *source);
NTSYSAPI ULONG NTAPI RtlxUnicodeStringToAnsiSize(const UNICODE_STRING *source);
NTSYSAPI ULONG NTAPI RtlxUnicodeStringToOemSize(const UNICODE_STRING *source);

// Objects and waits.

NTSYSAPI NTSTATUS NTAPI ZwClose(HANDLE handle);
NTSYSAPI NTSTATUS NTAPI ZwWaitForSingleObject(HANDLE handle, BOOLEAN alertable, const LONGLONG *timeout);
constexpr ULONG MAXIMUM_WAIT_OBJECTS = 64;
enum WAIT_TYPE : ULONG { WaitAll, WaitAny };
NTSYSAPI NTSTATUS NTAPI ZwWaitForMultipleObjects(ULONG count, const HANDLE *handles, WAIT_TYPE type,
                                                 BOOLEAN alertable, const LONGLONG *timeout);
NTSYSAPI NTSTATUS NTAPI ZwCreateEvent(HANDLE *handle, ACCESS_MASK access, const OBJECT_ATTRIBUTES *attributes,
                                      ULONG type, BOOLEAN initialState);
NTSYSAPI NTSTATUS NTAPI ZwOpenEvent(HANDLE *handle, ACCESS_MASK access, const OBJECT_ATTRIBUTES *attributes);
NTSYSAPI NTSTATUS NTAPI ZwQueryEvent(HANDLE handle, ULONG informationClass, PVOID information, ULONG size,
                                     ULONG *returnedSize);
NTSYSAPI NTSTATUS NTAPI ZwSetEvent(HANDLE handle, LONG *previousState);
NTSYSAPI NTSTATUS NTAPI ZwResetEvent(HANDLE handle, LONG *previousState);
NTSYSAPI NTSTATUS NTAPI ZwOpenMutant(HANDLE *handle, ACCESS_MASK access, const OBJECT_ATTRIBUTES *attributes);
NTSYSAPI NTSTATUS NTAPI ZwReleaseMutant(HANDLE handle, LONG *previousCount);
NTSYSAPI NTSTATUS NTAPI ZwCreateSemaphore(HANDLE *handle, ACCESS_MASK access,
                                          const OBJECT_ATTRIBUTES *attributes, LONG initialCount,
                                          LONG maximumCount);
NTSYSAPI NTSTATUS NTAPI ZwOpenSemaphore(HANDLE *handle, ACCESS_MASK access,
                                        const OBJECT_ATTRIBUTES *attributes);
NTSYSAPI NTSTATUS NTAPI ZwReleaseSemaphore(HANDLE handle, LONG count, LONG *previousCount);

// Critical sections.

NTSYSAPI NTSTATUS NTAPI RtlInitializeCriticalSection(RTL_CRITICAL_SECTION *section);
NTSYSAPI NTSTATUS NTAPI RtlDeleteCriticalSection(RTL_CRITICAL_SECTION *section);
NTSYSAPI NTSTATUS NTAPI RtlEnterCriticalSection(RTL_CRITICAL_SECTION *section);
NTSYSAPI NTSTATUS NTAPI RtlLeaveCriticalSection(RTL_CRITICAL_SECTION *section);

// Threads and the process. Stack sizes are in bytes.

NTSYSAPI NTSTATUS NTAPI RtlCreateUserThread(HANDLE process, PVOID securityDescriptor, BOOLEAN suspended,
                                            ULONG zeroBits, size_t maximumStack, size_t committedStack,
                                            ULONG(NTAPI *start)(PVOID), PVOID argument, HANDLE *thread,
                                            CLIENT_ID *clientId);
NTSYSAPI NTSTATUS NTAPI ZwOpenThread(HANDLE *handle, ACCESS_MASK access, const OBJECT_ATTRIBUTES *attributes,
                                     const CLIENT_ID *clientId);
NTSYSAPI NTSTATUS NTAPI ZwSuspendThread(HANDLE thread, ULONG *previousCount);
NTSYSAPI NTSTATUS NTAPI ZwResumeThread(HANDLE thread, ULONG *previousCount);
NTSYSAPI NTSTATUS NTAPI ZwGetContextThread(HANDLE thread, CONTEXT *context);
NTSYSAPI NTSTATUS NTAPI ZwTerminateThread(HANDLE thread, NTSTATUS exitStatus);
NTSYSAPI NTSTATUS NTAPI ZwQueryInformationThread(HANDLE thread, ULONG informationClass, PVOID information,
                                                 ULONG size, ULONG *returnedSize);
NTSYSAPI NTSTATUS NTAPI ZwSetInformationThread(HANDLE thread, ULONG informationClass, const void *information,
                                               ULONG size);
NTSYSAPI void NTAPI LdrShutdownThread();
NTSYSAPI NTSTATUS NTAPI ZwTerminateProcess(HANDLE process, NTSTATUS exitStatus);
NTSYSAPI void NTAPI RtlRaiseException(EXCEPTION_RECORD *record);
NTSYSAPI NTSTATUS NTAPI ZwFreeVirtualMemory(HANDLE process, PVOID *base, ULONG *size, ULONG type);

/// Acquires the lock of the process's environment block. It also protects the bitmaps of the thread-local
/// slots.
NTSYSAPI void NTAPI RtlAcquirePebLock();
NTSYSAPI void NTAPI RtlReleasePebLock();
NTSYSAPI ULONG NTAPI RtlFindClearBitsAndSet(RTL_BITMAP *bitmap, ULONG count, ULONG hint);
NTSYSAPI void NTAPI RtlClearBits(RTL_BITMAP *bitmap, ULONG first, ULONG count);

// The system.

NTSYSAPI NTSTATUS NTAPI ZwQuerySystemInformation(ULONG informationClass, PVOID information, ULONG size,
                                                 ULONG *returnedSize);

// Time.

NTSYSAPI NTSTATUS NTAPI ZwDelayExecution(BOOLEAN alertable, const LONGLONG *interval);
NTSYSAPI NTSTATUS NTAPI ZwQueryPerformanceCounter(LONGLONG *counter, LONGLONG *frequency);
/// Allocates a range of times, in 100 ns; `node` receives six bytes.
NTSYSAPI NTSTATUS NTAPI ZwAllocateUuids(ULONGLONG *time, ULONG *range, ULONG *sequence, UCHAR *node);

// Security. The caller owns the lists and the descriptor; sizes are in bytes.

NTSYSAPI NTSTATUS NTAPI RtlCreateAcl(_ACL *list, ULONG size, ULONG revision);
NTSYSAPI NTSTATUS NTAPI ZwOpenThreadToken(HANDLE thread, ACCESS_MASK access, BOOLEAN openAsSelf,
                                          HANDLE *token);
NTSYSAPI NTSTATUS NTAPI ZwQueryInformationToken(HANDLE token, TOKEN_INFORMATION_CLASS informationClass,
                                                PVOID information, ULONG size, ULONG *needed);
NTSYSAPI NTSTATUS NTAPI RtlAddAccessAllowedAce(_ACL *list, ULONG revision, ACCESS_MASK access, PVOID sid);
NTSYSAPI NTSTATUS NTAPI RtlAddAce(_ACL *list, ULONG revision, ULONG index, const void *entries, ULONG size);
NTSYSAPI NTSTATUS NTAPI RtlCreateSecurityDescriptor(PVOID descriptor, ULONG revision);
NTSYSAPI NTSTATUS NTAPI RtlSetDaclSecurityDescriptor(PVOID descriptor, BOOLEAN present, _ACL *list,
                                                     BOOLEAN defaulted);
NTSYSAPI NTSTATUS NTAPI RtlSetSaclSecurityDescriptor(PVOID descriptor, BOOLEAN present, _ACL *list,
                                                     BOOLEAN defaulted);

// Devices and files.

NTSYSAPI NTSTATUS NTAPI ZwOpenFile(HANDLE *handle, ACCESS_MASK access, const OBJECT_ATTRIBUTES *attributes,
                                   IO_STATUS_BLOCK *status, ULONG share, ULONG options);
NTSYSAPI NTSTATUS NTAPI ZwDeviceIoControlFile(HANDLE device, HANDLE event, PVOID routine, PVOID context,
                                              IO_STATUS_BLOCK *status, ULONG code, const void *input,
                                              ULONG inputSize, void *output, ULONG outputSize);
NTSYSAPI NTSTATUS NTAPI ZwCreateFile(HANDLE *handle, ACCESS_MASK access, const OBJECT_ATTRIBUTES *attributes,
                                     IO_STATUS_BLOCK *status, const LONGLONG *allocationSize,
                                     ULONG fileAttributes, ULONG share, ULONG disposition, ULONG options,
                                     PVOID extended, ULONG extendedSize);
NTSYSAPI NTSTATUS NTAPI ZwCancelIoFile(HANDLE file, IO_STATUS_BLOCK *status);
NTSYSAPI NTSTATUS NTAPI NtLockFile(HANDLE file, HANDLE event, PVOID routine, PVOID context,
                                   IO_STATUS_BLOCK *status, const LONGLONG *offset, const LONGLONG *count,
                                   ULONG key, BOOLEAN failAtOnce, BOOLEAN exclusive);
NTSYSAPI NTSTATUS NTAPI NtUnlockFile(HANDLE file, IO_STATUS_BLOCK *status, const LONGLONG *offset,
                                     const LONGLONG *count, ULONG key);
NTSYSAPI NTSTATUS NTAPI NtQueryVolumeInformationFile(HANDLE file, IO_STATUS_BLOCK *status, PVOID information,
                                                     ULONG size, ULONG informationClass);
NTSYSAPI NTSTATUS NTAPI NtQueryInformationFile(HANDLE file, IO_STATUS_BLOCK *status, PVOID information,
                                               ULONG size, ULONG informationClass);

NTSYSAPI NTSTATUS NTAPI ZwQueryDirectoryFile(HANDLE file, HANDLE event, PVOID routine, PVOID context,
                                             IO_STATUS_BLOCK *status, PVOID information, ULONG size,
                                             ULONG informationClass, BOOLEAN singleEntry,
                                             const UNICODE_STRING *pattern, BOOLEAN restart);

// Paths and the environment. The caller frees strings that the platform allocates with RtlFreeUnicodeString;
// sizes are in bytes. A null environment means that of the process.

NTSYSAPI ULONG NTAPI RtlGetFullPathName_U(const WCHAR *path, ULONG size, WCHAR *fullPath, WCHAR **filePart);
NTSYSAPI ULONG NTAPI RtlGetCurrentDirectory_U(ULONG size, WCHAR *directory);
NTSYSAPI BOOLEAN NTAPI RtlCreateUnicodeString(UNICODE_STRING *copy, const WCHAR *source);
NTSYSAPI NTSTATUS NTAPI RtlQueryEnvironmentVariable_U(const WCHAR *environment, const UNICODE_STRING *name,
                                                      UNICODE_STRING *value);
NTSYSAPI NTSTATUS NTAPI RtlExpandEnvironmentStrings_U(const WCHAR *environment, const UNICODE_STRING *source,
                                                      UNICODE_STRING *target, ULONG *needed);

NTSYSAPI BOOLEAN NTAPI RtlDosPathNameToNtPathName_U(const WCHAR *path, UNICODE_STRING *nativePath,
                                                    WCHAR **filePart, PVOID relative);
NTSYSAPI void NTAPI RtlFreeUnicodeString(UNICODE_STRING *counted);

// Registry.

NTSYSAPI NTSTATUS NTAPI ZwOpenKey(HANDLE *key, ACCESS_MASK access, const OBJECT_ATTRIBUTES *attributes);
NTSYSAPI NTSTATUS NTAPI ZwCreateKey(HANDLE *key, ACCESS_MASK access, const OBJECT_ATTRIBUTES *attributes,
                                    ULONG titleIndex, const UNICODE_STRING *className, ULONG options,
                                    ULONG *disposition);
NTSYSAPI NTSTATUS NTAPI ZwDeleteKey(HANDLE key);
NTSYSAPI NTSTATUS NTAPI ZwQueryKey(HANDLE key, ULONG informationClass, PVOID information, ULONG size,
                                   ULONG *needed);
NTSYSAPI NTSTATUS NTAPI ZwEnumerateKey(HANDLE key, ULONG index, ULONG informationClass, PVOID information,
                                       ULONG size, ULONG *needed);
NTSYSAPI NTSTATUS NTAPI ZwEnumerateValueKey(HANDLE key, ULONG index, ULONG informationClass,
                                            PVOID information, ULONG size, ULONG *needed);
NTSYSAPI NTSTATUS NTAPI ZwQueryValueKey(HANDLE key, const UNICODE_STRING *name, ULONG informationClass,
                                        PVOID information, ULONG size, ULONG *needed);
NTSYSAPI NTSTATUS NTAPI ZwSetValueKey(HANDLE key, const UNICODE_STRING *name, ULONG titleIndex, ULONG type,
                                      const void *data, ULONG size);
NTSYSAPI NTSTATUS NTAPI ZwDeleteValueKey(HANDLE key, const UNICODE_STRING *name);
NTSYSAPI NTSTATUS NTAPI ZwLoadKey(const OBJECT_ATTRIBUTES *key, const OBJECT_ATTRIBUTES *file);
NTSYSAPI NTSTATUS NTAPI ZwUnloadKey(const OBJECT_ATTRIBUTES *key);
NTSYSAPI NTSTATUS NTAPI ZwSaveKey(HANDLE key, HANDLE file);
NTSYSAPI NTSTATUS NTAPI ZwRestoreKey(HANDLE key, HANDLE file, ULONG flags);
NTSYSAPI NTSTATUS NTAPI ZwNotifyChangeKey(HANDLE key, HANDLE event, PVOID routine, PVOID context,
                                          IO_STATUS_BLOCK *status, ULONG filter, BOOLEAN subtree,
                                          PVOID changes, ULONG size, BOOLEAN asynchronous);
NTSYSAPI NTSTATUS NTAPI RtlOpenCurrentUser(ACCESS_MASK access, HANDLE *key);
/// The caller frees the path with RtlFreeUnicodeString.
NTSYSAPI NTSTATUS NTAPI RtlFormatCurrentUserKeyPath(UNICODE_STRING *path);
NTSYSAPI NTSTATUS NTAPI ZwAdjustPrivilegesToken(HANDLE token, BOOLEAN disableAll,
                                                const TOKEN_PRIVILEGES *privileges, ULONG size,
                                                TOKEN_PRIVILEGES *previous, ULONG *needed);
NTSYSAPI NTSTATUS NTAPI ZwDeleteFile(const OBJECT_ATTRIBUTES *attributes);

// Sections.

NTSYSAPI NTSTATUS NTAPI ZwCreateSection(HANDLE *handle, ACCESS_MASK access,
                                        const OBJECT_ATTRIBUTES *attributes, const LONGLONG *maximumSize,
                                        ULONG protection, ULONG allocation, HANDLE file);
NTSYSAPI NTSTATUS NTAPI ZwOpenSection(HANDLE *handle, ACCESS_MASK access,
                                      const OBJECT_ATTRIBUTES *attributes);
NTSYSAPI NTSTATUS NTAPI ZwMapViewOfSection(HANDLE section, HANDLE process, PVOID *base, ULONG zeroBits,
                                           ULONG commit, LONGLONG *offset, ULONG *size, ULONG inherit,
                                           ULONG allocation, ULONG protection);
NTSYSAPI NTSTATUS NTAPI ZwUnmapViewOfSection(HANDLE process, PVOID base);
NTSYSAPI NTSTATUS NTAPI ZwDuplicateObject(HANDLE sourceProcess, HANDLE source, HANDLE targetProcess,
                                          HANDLE *target, ACCESS_MASK access, ULONG attributes,
                                          ULONG options);

// Character classes of the default locale.

NTSYSAPI int __cdecl iswdigit(uint16_t character);
NTSYSAPI int __cdecl iswxdigit(uint16_t character);
NTSYSAPI int __cdecl iswspace(uint16_t character);
NTSYSAPI int __cdecl islower(int character);

// Optional: reached only through the ntdll table, in the order in which the table looks them up.

NTSTATUS NTAPI RtlGetVersion(_OSVERSIONINFOW *version);
BOOLEAN NTAPI RtlGetProductInfo(ULONG osMajor, ULONG osMinor, ULONG servicePackMajor, ULONG servicePackMinor,
                                ULONG *productType);
NTSTATUS NTAPI ZwCreateMutant(HANDLE *handle, ACCESS_MASK access, const _OBJECT_ATTRIBUTES *attributes,
                              BOOLEAN initialOwner);
NTSTATUS NTAPI RtlAddMandatoryAce(_ACL *acl, ULONG revision, ULONG aceFlags, PVOID sid, UCHAR aceType,
                                  ACCESS_MASK access);
NTSTATUS NTAPI ZwQueryDirectoryObject(HANDLE directory, PVOID buffer, ULONG size, BOOLEAN singleEntry,
                                      BOOLEAN restart, ULONG *context, ULONG *returnedSize);
NTSTATUS NTAPI ZwOpenProcessToken(HANDLE process, ACCESS_MASK access, HANDLE *token);
void NTAPI RtlExitUserThread(NTSTATUS exitStatus);
HANDLE NTAPI CsrGetProcessId();
NTSTATUS NTAPI RtlGetNativeSystemInformation(ULONG informationClass, PVOID information, ULONG size,
                                             ULONG *returnedSize);
PVOID NTAPI RtlGetUnloadEventTrace();
ULONG NTAPI NtGetTickCount();
WCHAR NTAPI RtlDowncaseUnicodeChar(WCHAR character);
void NTAPI RtlGetUnloadEventTraceEx(ULONG **elementSize, ULONG **elementCount, PVOID *trace);
NTSTATUS NTAPI ZwCreateTransaction(HANDLE *handle, ACCESS_MASK access, const _OBJECT_ATTRIBUTES *attributes,
                                   _GUID *unitOfWork, HANDLE manager, ULONG createOptions,
                                   ULONG isolationLevel, ULONG isolationFlags, const LONGLONG *timeout,
                                   const _UNICODE_STRING *description);
HANDLE NTAPI RtlGetCurrentTransaction();
BOOLEAN NTAPI RtlSetCurrentTransaction(HANDLE transaction);
NTSTATUS NTAPI ZwCommitTransaction(HANDLE transaction, BOOLEAN wait);
NTSTATUS NTAPI ZwRollbackTransaction(HANDLE transaction, BOOLEAN wait);
NTSTATUS NTAPI RtlWow64EnableFsRedirectionEx(PVOID disable, PVOID *previous);
NTSTATUS NTAPI ZwOpenKeyTransacted(HANDLE *key, ACCESS_MASK access, const _OBJECT_ATTRIBUTES *attributes,
                                   HANDLE transaction);
NTSTATUS NTAPI ZwCreateKeyTransacted(HANDLE *key, ACCESS_MASK access, const _OBJECT_ATTRIBUTES *attributes,
                                     ULONG titleIndex, const _UNICODE_STRING *className, ULONG createOptions,
                                     HANDLE transaction, ULONG *disposition);
ULONG NTAPI EtwEventRegister(const _GUID *provider, PVOID callback, PVOID context, ULONGLONG *registration);
ULONG NTAPI EtwEventUnregister(ULONGLONG registration);
ULONG NTAPI EtwEventWrite(ULONGLONG registration, const _EVENT_DESCRIPTOR *descriptor, ULONG dataCount,
                          _EVENT_DATA_DESCRIPTOR *data);
ULONG NTAPI EtwEventWriteEx(ULONGLONG registration, const _EVENT_DESCRIPTOR *descriptor, ULONGLONG filter,
                            ULONG flags, const _GUID *activity, const _GUID *relatedActivity, ULONG dataCount,
                            _EVENT_DATA_DESCRIPTOR *data);
NTSTATUS NTAPI ZwCancelIoFileEx(HANDLE file, _IO_STATUS_BLOCK *request, _IO_STATUS_BLOCK *status);
PVOID NTAPI RtlEncodePointer(PVOID pointer);
PVOID NTAPI RtlDecodePointer(PVOID pointer);

// Optional: reached only through the internal table of optional functions.

/// `message` starts with the header that the server's transport fills in.
NTSTATUS NTAPI CsrClientCallServer(PVOID message, PVOID capture, ULONG api, ULONG argumentSize);

// Optional: reached only through the kernel32 table, in the order in which the table looks them up.

typedef LONG(NTAPI *PTOP_LEVEL_EXCEPTION_FILTER)(_EXCEPTION_POINTERS *exception);

BOOL NTAPI CopyFileW(const WCHAR *from, const WCHAR *to, BOOL failIfExists);
BOOL NTAPI CopyFileA(const char *from, const char *to, BOOL failIfExists);
BOOL NTAPI ReadFile(HANDLE file, PVOID buffer, ULONG size, ULONG *read, _OVERLAPPED *overlapped);
BOOL NTAPI WriteFile(HANDLE file, const void *buffer, ULONG size, ULONG *written, _OVERLAPPED *overlapped);
LONG NTAPI UnhandledExceptionFilter(_EXCEPTION_POINTERS *exception);
PTOP_LEVEL_EXCEPTION_FILTER NTAPI SetUnhandledExceptionFilter(PTOP_LEVEL_EXCEPTION_FILTER filter);
BOOL NTAPI GlobalMemoryStatusEx(_MEMORYSTATUSEX *status);
char *NTAPI GetEnvironmentStringsA();
WCHAR *NTAPI GetEnvironmentStringsW();
BOOL NTAPI FreeEnvironmentStringsA(char *strings);
BOOL NTAPI FreeEnvironmentStringsW(WCHAR *strings);
BOOL NTAPI CreateProcessW(const WCHAR *application, WCHAR *commandLine, _SECURITY_ATTRIBUTES *process,
                          _SECURITY_ATTRIBUTES *thread, BOOL inheritHandles, ULONG flags, PVOID environment,
                          const WCHAR *directory, _STARTUPINFOW *startup, _PROCESS_INFORMATION *information);
BOOL NTAPI CreateProcessA(const char *application, char *commandLine, _SECURITY_ATTRIBUTES *process,
                          _SECURITY_ATTRIBUTES *thread, BOOL inheritHandles, ULONG flags, PVOID environment,
                          const char *directory, _STARTUPINFOA *startup, _PROCESS_INFORMATION *information);
BOOL NTAPI DefineDosDeviceW(ULONG flags, const WCHAR *device, const WCHAR *target);
BOOL NTAPI DefineDosDeviceA(ULONG flags, const char *device, const char *target);
unsigned int NTAPI GetACP();
PVOID NTAPI FindResourceExA(PVOID module, const char *type, const char *name, USHORT language);
PVOID NTAPI FindResourceExW(PVOID module, const WCHAR *type, const WCHAR *name, USHORT language);

} // extern "C"

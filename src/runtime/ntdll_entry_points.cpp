// The table of optional ntdll.dll entry points and its wrappers.
//
// The table's field types come from the declarations in nt.h, so a wrapper does not compile if its arguments
// do not fit the platform's function. The table is written only while it is filled or emptied, and is read
// without locks.

#include "orv/runtime/ntdll_entry_points.h"

#include "nt/counted_string.h"
#include "nt/nt.h"
#include "nt/teb.h"
#include "orv/runtime/result.h"
#include "runtime/entry_table.h"
#include "runtime/status.h"

// clang-format off
#define ORV_NTDLL_ENTRIES(entry) \
    entry(RtlGetVersion) \
    entry(RtlGetProductInfo) \
    entry(ZwCreateMutant) \
    entry(RtlAddMandatoryAce) \
    entry(ZwQueryDirectoryObject) \
    entry(ZwOpenProcessToken) \
    entry(RtlExitUserThread) \
    entry(CsrGetProcessId) \
    entry(RtlGetNativeSystemInformation) \
    entry(RtlGetUnloadEventTrace) \
    entry(NtGetTickCount) \
    entry(RtlDowncaseUnicodeChar) \
    entry(RtlGetUnloadEventTraceEx) \
    entry(ZwCreateTransaction) \
    entry(RtlGetCurrentTransaction) \
    entry(RtlSetCurrentTransaction) \
    entry(ZwCommitTransaction) \
    entry(ZwRollbackTransaction) \
    entry(RtlWow64EnableFsRedirectionEx) \
    entry(ZwOpenKeyTransacted) \
    entry(ZwCreateKeyTransacted) \
    entry(EtwEventRegister) \
    entry(EtwEventUnregister) \
    entry(EtwEventWrite) \
    entry(EtwEventWriteEx) \
    entry(ZwCancelIoFileEx) \
    entry(RtlEncodePointer) \
    entry(RtlDecodePointer)
// clang-format on

namespace
{

struct NtdllTable {
    PVOID module;
#define ORV_ENTRY_FIELD(name) decltype(&::name) name;
    ORV_NTDLL_ENTRIES(ORV_ENTRY_FIELD)
#undef ORV_ENTRY_FIELD
};

constexpr ANSI_STRING kNames[] = {
#define ORV_ENTRY_NAME(name) detail::EntryName(#name),
    ORV_NTDLL_ENTRIES(ORV_ENTRY_NAME)
#undef ORV_ENTRY_NAME
};

static_assert(sizeof(NtdllTable) == sizeof(PVOID) * (1 + 28));

NtdllTable table;

} // namespace

OrvResult OrvNtdllTableInitialize()
{
    UNICODE_STRING name = detail::CountedLiteral(L"ntdll.dll");
    PVOID module = nullptr;
    const NTSTATUS status = LdrLoadDll(nullptr, nullptr, &name, &module);
    if (!NT_SUCCESS(status))
        return detail::ResultFromStatus(status);
    OrvNtdllTableDestroy();
    detail::FillEntryTable(table, module, kNames);
    return ORV_S_OK;
}

bool OrvNtdllIsTableInitialized()
{
    return table.module && table.ZwCreateMutant;
}

int OrvNtdllForceInitialize()
{
    return OrvNtdllIsTableInitialized() ? 1 : 0;
}

void OrvNtdllTableDestroy()
{
    if (!table.module)
        return;
    LdrUnloadDll(table.module);
    table = {};
}

void *OrvGetNtdllModuleHandle()
{
    return table.module;
}

bool OrvNtdll_FunctionExists(const char *name)
{
    if (!name)
        return false;
    PVOID address = nullptr;
    const ANSI_STRING counted = detail::CountedAnsi(name);
    return !NT_ERROR(LdrGetProcedureAddress(table.module, &counted, 0, &address));
}

bool OrvIsWOW64Process()
{
    return OrvNtdll_FunctionExists("NtWow64CsrGetProcessId");
}

// clang-format off
#define ORV_IS_LOADED(name) \
    bool OrvNtdllIsFnLoaded_##name() { return table.name != nullptr; }
ORV_IS_LOADED(RtlGetProductInfo)
ORV_IS_LOADED(RtlGetUnloadEventTraceEx)
ORV_IS_LOADED(RtlAddMandatoryAce)
ORV_IS_LOADED(NtGetTickCount)
ORV_IS_LOADED(RtlGetUnloadEventTrace)
ORV_IS_LOADED(RtlExitUserThread)
ORV_IS_LOADED(CsrGetProcessId)
ORV_IS_LOADED(RtlGetNativeSystemInformation)
ORV_IS_LOADED(RtlWow64EnableFsRedirectionEx)
ORV_IS_LOADED(EtwEventRegister)
ORV_IS_LOADED(EtwEventUnregister)
ORV_IS_LOADED(EtwEventWrite)
ORV_IS_LOADED(EtwEventWriteEx)
#undef ORV_IS_LOADED
// clang-format on

long OrvNtdll_RtlGetVersion(_OSVERSIONINFOW *version)
{
    return table.RtlGetVersion(version);
}

unsigned char OrvNtdll_RtlGetProductInfo(unsigned long osMajor, unsigned long osMinor,
                                         unsigned long servicePackMajor, unsigned long servicePackMinor,
                                         unsigned long *productType)
{
    return table.RtlGetProductInfo(osMajor, osMinor, servicePackMajor, servicePackMinor, productType);
}

long OrvNtdll_ZwCreateMutant(void **handle, unsigned long access, const _OBJECT_ATTRIBUTES *attributes,
                             unsigned char initialOwner)
{
    return table.ZwCreateMutant(handle, access, attributes, initialOwner);
}

long OrvNtdll_RtlAddMandatoryAce(_ACL *acl, unsigned long revision, unsigned long aceFlags, void *sid,
                                 unsigned char aceType, unsigned long access)
{
    return table.RtlAddMandatoryAce(acl, revision, aceFlags, sid, aceType, access);
}

long OrvNtdll_ZwQueryDirectoryObject(void *directory, void *buffer, unsigned long size,
                                     unsigned char singleEntry, unsigned char restart, unsigned long *context,
                                     unsigned long *returnedSize)
{
    return table.ZwQueryDirectoryObject(directory, buffer, size, singleEntry, restart, context, returnedSize);
}

long OrvNtdll_ZwOpenProcessToken(void *process, unsigned long access, void **token)
{
    return table.ZwOpenProcessToken(process, access, token);
}

void OrvNtdll_RtlExitUserThread(long exitStatus)
{
    table.RtlExitUserThread(exitStatus);
}

void *OrvNtdll_CsrGetProcessId()
{
    return table.CsrGetProcessId();
}

long OrvNtdll_RtlGetNativeSystemInformation(unsigned long informationClass, void *information,
                                            unsigned long size, unsigned long *returnedSize)
{
    return table.RtlGetNativeSystemInformation(informationClass, information, size, returnedSize);
}

void *OrvNtdll_RtlGetUnloadEventTrace()
{
    return table.RtlGetUnloadEventTrace();
}

unsigned long OrvNtdll_NtGetTickCount()
{
    if (table.NtGetTickCount)
        return table.NtGetTickCount();
    // Systems without the function keep the low half of the count up to date in the shared page.
    const volatile KUSER_SHARED_DATA &shared = SharedUserData();
    return static_cast<ULONG>(static_cast<ULONGLONG>(shared.TickCountLow) * shared.TickCountMultiplier >> 24);
}

unsigned long OrvGetTimestamp()
{
    return OrvNtdll_NtGetTickCount();
}

wchar_t OrvNtdll_RtlDowncaseUnicodeChar(wchar_t character)
{
    if (table.RtlDowncaseUnicodeChar)
        return table.RtlDowncaseUnicodeChar(character);
    wchar_t lower = character;
    const UNICODE_STRING source = {sizeof character, sizeof character, &character};
    UNICODE_STRING destination = {0, sizeof lower, &lower};
    RtlDowncaseUnicodeString(&destination, &source, false);
    return lower;
}

void OrvNtdll_RtlGetUnloadEventTraceEx(unsigned long **elementSize, unsigned long **elementCount,
                                       void **trace)
{
    table.RtlGetUnloadEventTraceEx(elementSize, elementCount, trace);
}

long OrvNtdll_ZwCreateTransaction(void **handle, unsigned long access, const _OBJECT_ATTRIBUTES *attributes,
                                  _GUID *unitOfWork, void *manager, unsigned long createOptions,
                                  unsigned long isolationLevel, unsigned long isolationFlags,
                                  const int64_t *timeout, const _UNICODE_STRING *description)
{
    return table.ZwCreateTransaction(handle, access, attributes, unitOfWork, manager, createOptions,
                                     isolationLevel, isolationFlags, timeout, description);
}

void *OrvNtdll_RtlGetCurrentTransaction()
{
    return table.RtlGetCurrentTransaction();
}

unsigned char OrvNtdll_RtlSetCurrentTransaction(void *transaction)
{
    return table.RtlSetCurrentTransaction(transaction);
}

long OrvNtdll_ZwCommitTransaction(void *transaction, unsigned char wait)
{
    return table.ZwCommitTransaction(transaction, wait);
}

long OrvNtdll_ZwRollbackTransaction(void *transaction, unsigned char wait)
{
    return table.ZwRollbackTransaction(transaction, wait);
}

long OrvNtdll_RtlWow64EnableFsRedirectionEx(void *disable, void **previous)
{
    return table.RtlWow64EnableFsRedirectionEx(disable, previous);
}

long OrvNtdll_ZwOpenKeyTransacted(void **key, unsigned long access, const _OBJECT_ATTRIBUTES *attributes,
                                  void *transaction)
{
    return table.ZwOpenKeyTransacted(key, access, attributes, transaction);
}

long OrvNtdll_ZwCreateKeyTransacted(void **key, unsigned long access, const _OBJECT_ATTRIBUTES *attributes,
                                    unsigned long titleIndex, const _UNICODE_STRING *className,
                                    unsigned long createOptions, void *transaction,
                                    unsigned long *disposition)
{
    return table.ZwCreateKeyTransacted(key, access, attributes, titleIndex, className, createOptions,
                                       transaction, disposition);
}

unsigned long OrvNtdll_EtwEventRegister(const _GUID *provider, void *callback, void *context,
                                        uint64_t *registration)
{
    return table.EtwEventRegister(provider, callback, context, registration);
}

unsigned long OrvNtdll_EtwEventUnregister(uint64_t registration)
{
    return table.EtwEventUnregister(registration);
}

unsigned long OrvNtdll_EtwEventWrite(uint64_t registration, const _EVENT_DESCRIPTOR *descriptor,
                                     unsigned long dataCount, _EVENT_DATA_DESCRIPTOR *data)
{
    return table.EtwEventWrite(registration, descriptor, dataCount, data);
}

unsigned long OrvNtdll_EtwEventWriteEx(uint64_t registration, const _EVENT_DESCRIPTOR *descriptor,
                                       uint64_t filter, unsigned long flags, const _GUID *activity,
                                       const _GUID *relatedActivity, unsigned long dataCount,
                                       _EVENT_DATA_DESCRIPTOR *data)
{
    return table.EtwEventWriteEx(registration, descriptor, filter, flags, activity, relatedActivity,
                                 dataCount, data);
}

long OrvNtdll_ZwCancelIoFileEx(void *file, _IO_STATUS_BLOCK *request, _IO_STATUS_BLOCK *status)
{
    return table.ZwCancelIoFileEx(file, request, status);
}

void *OrvNtdll_RtlEncodePointer(void *pointer)
{
    return table.RtlEncodePointer(pointer);
}

void *OrvNtdll_RtlDecodePointer(void *pointer)
{
    return table.RtlDecodePointer(pointer);
}

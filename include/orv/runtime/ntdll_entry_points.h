// Entry points of ntdll.dll that older systems lack, reached through a table that is filled at run time.
//
// A missing entry is not an error: it stays null in the table. A wrapper passes its arguments to the platform
// function and returns its result. It does not test its entry, so ask the predicate first where there is one.
// OrvNtdll_RtlDowncaseUnicodeChar and OrvNtdll_NtGetTickCount may always be called: they have a fallback.

#pragma once

#include "orv/base.h"

struct _ACL;
struct _EVENT_DATA_DESCRIPTOR;
struct _EVENT_DESCRIPTOR;
struct _GUID;
struct _IO_STATUS_BLOCK;
struct _OBJECT_ATTRIBUTES;
struct _OSVERSIONINFOW;
struct _UNICODE_STRING;

/// Fills the table: takes a reference on ntdll.dll and looks every entry up once. When the table is already
/// filled it is emptied and filled again. Loading the library does this, so a caller seldom has to.
///
/// Returns 0, also when entries are missing, or the converted status when ntdll.dll cannot be referenced; the
/// table is then as it was.
///
/// It must not race with any use of the table.
ORV_API OrvResult OrvNtdllTableInitialize();

/// Whether the table is filled.
ORV_API bool OrvNtdllIsTableInitialized();

/// 1 when the table is filled, else 0. It fills nothing, despite its name.
ORV_API int OrvNtdllForceInitialize();

/// Releases the reference on ntdll.dll and empties the table. Does nothing when the table is empty.
ORV_API void OrvNtdllTableDestroy();

/// The module handle of ntdll.dll, or null while the table is empty.
ORV_API void *OrvGetNtdllModuleHandle();

/// Whether ntdll.dll exports `name` (terminated). False for null, and while the table is empty.
ORV_API bool OrvNtdll_FunctionExists(const char *name);

/// Whether this 32-bit process runs on a 64-bit system. False while the table is empty.
ORV_API bool OrvIsWOW64Process();

/// Milliseconds since the system started; wraps after 49.7 days. The same operation as
/// OrvNtdll_NtGetTickCount.
ORV_API unsigned long OrvGetTimestamp();

/// Whether the entry was found. Only then may the wrapper of that name be called.
ORV_API bool OrvNtdllIsFnLoaded_RtlGetProductInfo();
ORV_API bool OrvNtdllIsFnLoaded_RtlGetUnloadEventTraceEx();
ORV_API bool OrvNtdllIsFnLoaded_RtlAddMandatoryAce();
ORV_API bool OrvNtdllIsFnLoaded_NtGetTickCount();
ORV_API bool OrvNtdllIsFnLoaded_RtlGetUnloadEventTrace();
ORV_API bool OrvNtdllIsFnLoaded_RtlExitUserThread();
ORV_API bool OrvNtdllIsFnLoaded_CsrGetProcessId();
ORV_API bool OrvNtdllIsFnLoaded_RtlGetNativeSystemInformation();
ORV_API bool OrvNtdllIsFnLoaded_RtlWow64EnableFsRedirectionEx();
ORV_API bool OrvNtdllIsFnLoaded_EtwEventRegister();
ORV_API bool OrvNtdllIsFnLoaded_EtwEventUnregister();
ORV_API bool OrvNtdllIsFnLoaded_EtwEventWrite();
ORV_API bool OrvNtdllIsFnLoaded_EtwEventWriteEx();

/// The platform's function of that name, in the order in which the table looks its entries up.
ORV_API long OrvNtdll_RtlGetVersion(_OSVERSIONINFOW *version);
ORV_API unsigned char OrvNtdll_RtlGetProductInfo(unsigned long osMajor, unsigned long osMinor,
                                                 unsigned long servicePackMajor,
                                                 unsigned long servicePackMinor, unsigned long *productType);
ORV_API long OrvNtdll_ZwCreateMutant(void **handle, unsigned long access,
                                     const _OBJECT_ATTRIBUTES *attributes, unsigned char initialOwner);
ORV_API long OrvNtdll_RtlAddMandatoryAce(_ACL *acl, unsigned long revision, unsigned long aceFlags, void *sid,
                                         unsigned char aceType, unsigned long access);
ORV_API long OrvNtdll_ZwQueryDirectoryObject(void *directory, void *buffer, unsigned long size,
                                             unsigned char singleEntry, unsigned char restart,
                                             unsigned long *context, unsigned long *returnedSize);
ORV_API long OrvNtdll_ZwOpenProcessToken(void *process, unsigned long access, void **token);
ORV_API void OrvNtdll_RtlExitUserThread(long exitStatus);
ORV_API void *OrvNtdll_CsrGetProcessId();
ORV_API long OrvNtdll_RtlGetNativeSystemInformation(unsigned long informationClass, void *information,
                                                    unsigned long size, unsigned long *returnedSize);
ORV_API void *OrvNtdll_RtlGetUnloadEventTrace();
ORV_API unsigned long OrvNtdll_NtGetTickCount();
ORV_API wchar_t OrvNtdll_RtlDowncaseUnicodeChar(wchar_t character);
ORV_API void OrvNtdll_RtlGetUnloadEventTraceEx(unsigned long **elementSize, unsigned long **elementCount,
                                               void **trace);
ORV_API long OrvNtdll_ZwCreateTransaction(void **handle, unsigned long access,
                                          const _OBJECT_ATTRIBUTES *attributes, _GUID *unitOfWork,
                                          void *manager, unsigned long createOptions,
                                          unsigned long isolationLevel, unsigned long isolationFlags,
                                          const int64_t *timeout, const _UNICODE_STRING *description);
ORV_API void *OrvNtdll_RtlGetCurrentTransaction();
ORV_API unsigned char OrvNtdll_RtlSetCurrentTransaction(void *transaction);
ORV_API long OrvNtdll_ZwCommitTransaction(void *transaction, unsigned char wait);
ORV_API long OrvNtdll_ZwRollbackTransaction(void *transaction, unsigned char wait);
ORV_API long OrvNtdll_RtlWow64EnableFsRedirectionEx(void *disable, void **previous);
ORV_API long OrvNtdll_ZwOpenKeyTransacted(void **key, unsigned long access,
                                          const _OBJECT_ATTRIBUTES *attributes, void *transaction);
ORV_API long OrvNtdll_ZwCreateKeyTransacted(void **key, unsigned long access,
                                            const _OBJECT_ATTRIBUTES *attributes, unsigned long titleIndex,
                                            const _UNICODE_STRING *className, unsigned long createOptions,
                                            void *transaction, unsigned long *disposition);
ORV_API unsigned long OrvNtdll_EtwEventRegister(const _GUID *provider, void *callback, void *context,
                                                uint64_t *registration);
ORV_API unsigned long OrvNtdll_EtwEventUnregister(uint64_t registration);
ORV_API unsigned long OrvNtdll_EtwEventWrite(uint64_t registration, const _EVENT_DESCRIPTOR *descriptor,
                                             unsigned long dataCount, _EVENT_DATA_DESCRIPTOR *data);
ORV_API unsigned long OrvNtdll_EtwEventWriteEx(uint64_t registration, const _EVENT_DESCRIPTOR *descriptor,
                                               uint64_t filter, unsigned long flags, const _GUID *activity,
                                               const _GUID *relatedActivity, unsigned long dataCount,
                                               _EVENT_DATA_DESCRIPTOR *data);
ORV_API long OrvNtdll_ZwCancelIoFileEx(void *file, _IO_STATUS_BLOCK *request, _IO_STATUS_BLOCK *status);
ORV_API void *OrvNtdll_RtlEncodePointer(void *pointer);
ORV_API void *OrvNtdll_RtlDecodePointer(void *pointer);

// Counts handles and heap blocks on the native interface.
//
// Blocks are counted where they are allocated and freed: at the imports of the library and of the program. A
// walk over the heap would also count the blocks that the platform's heap makes for itself once many blocks
// of one size exist.

#include "harness/usage.h"

#include "harness/replace.h"
#include "nt/programs.h"
#include "nt/teb.h"

namespace
{

struct {
    ULONG count;
    SYSTEM_HANDLE_TABLE_ENTRY_INFO entries[0x20000];
} handles; // of all processes

HANDLE processHeap;   ///< its own, also while a test puts another in its place
volatile long blocks; ///< allocated and not freed since counting started; may be below zero

struct {
    decltype(&RtlAllocateHeap) allocate;
    decltype(&RtlFreeHeap) free;
    decltype(&RtlCreateUnicodeString) createString;
    decltype(&RtlDosPathNameToNtPathName_U) makeNativePath;
    decltype(&RtlFormatCurrentUserKeyPath) formatKeyPath;
    decltype(&RtlFreeUnicodeString) freeString;
} platform;

PVOID NTAPI Allocate(HANDLE heap, ULONG flags, size_t size)
{
    const PVOID block = platform.allocate(heap, flags, size);
    if (block && heap == processHeap)
        _InterlockedIncrement(&blocks);
    return block;
}

BOOLEAN NTAPI Free(HANDLE heap, ULONG flags, PVOID block)
{
    if (block && heap == processHeap)
        _InterlockedDecrement(&blocks);
    return platform.free(heap, flags, block);
}

BOOLEAN NTAPI CreateString(UNICODE_STRING *copy, const WCHAR *source)
{
    const BOOLEAN isCreated = platform.createString(copy, source);
    if (isCreated)
        _InterlockedIncrement(&blocks);
    return isCreated;
}

BOOLEAN NTAPI MakeNativePath(const WCHAR *path, UNICODE_STRING *native, WCHAR **file, PVOID relative)
{
    const BOOLEAN isMade = platform.makeNativePath(path, native, file, relative);
    if (isMade)
        _InterlockedIncrement(&blocks);
    return isMade;
}

NTSTATUS NTAPI FormatKeyPath(UNICODE_STRING *path)
{
    const NTSTATUS status = platform.formatKeyPath(path);
    if (NT_SUCCESS(status))
        _InterlockedIncrement(&blocks);
    return status;
}

void NTAPI FreeString(UNICODE_STRING *string)
{
    if (string->Buffer)
        _InterlockedDecrement(&blocks);
    platform.freeString(string);
}

template <typename Function>
void Redirect(PVOID *slot, PVOID *end, const char *name, Function *&original, Function *counting)
{
    original = reinterpret_cast<Function *>(test::FindFunction(L"ntdll.dll", name));
    for (; slot < end; slot++) {
        if (*slot == reinterpret_cast<PVOID>(original))
            *const_cast<PVOID volatile *>(slot) = reinterpret_cast<PVOID>(counting);
    }
}

/// Redirects what the module imports. Such a slot may already be redirected by a test, which then is not
/// counted.
void CountImportsOf(PVOID module)
{
    auto *const base = static_cast<uint8_t *>(module);
    constexpr uint32_t kHeadersField = 0x3C;
    constexpr uint32_t kImportTableField =
        0x18 + 0x60 + 12 * 8; // the twelfth data directory: address and size
    const auto *const headers = base + *reinterpret_cast<const uint32_t *>(base + kHeadersField);
    const auto *const directory = reinterpret_cast<const uint32_t *>(headers + kImportTableField);
    auto *const slots = reinterpret_cast<PVOID *>(base + directory[0]);
    PVOID *const end = slots + directory[1] / sizeof(PVOID);
    PVOID page = slots;
    ULONG size = directory[1];
    ULONG protection = 0;
    if (NtProtectVirtualMemory(NtCurrentProcess(), &page, &size, PAGE_READWRITE, &protection) < 0)
        __builtin_trap();
    Redirect(slots, end, "RtlAllocateHeap", platform.allocate, Allocate);
    Redirect(slots, end, "RtlFreeHeap", platform.free, Free);
    Redirect(slots, end, "RtlCreateUnicodeString", platform.createString, CreateString);
    Redirect(slots, end, "RtlDosPathNameToNtPathName_U", platform.makeNativePath, MakeNativePath);
    Redirect(slots, end, "RtlFormatCurrentUserKeyPath", platform.formatKeyPath, FormatKeyPath);
    Redirect(slots, end, "RtlFreeUnicodeString", platform.freeString, FreeString);
}

void StartCounting()
{
    processHeap = NtCurrentPeb()->ProcessHeap;
    CountImportsOf(NtCurrentPeb()->ImageBaseAddress);
    UNICODE_STRING name;
    RtlInitUnicodeString(&name, L"orvsys.dll");
    PVOID library = nullptr;
    if (LdrGetDllHandle(nullptr, nullptr, &name, &library) >= 0) // internal tests have the library inside
        CountImportsOf(library);
}

} // namespace

namespace test
{

Usage CountUsage()
{
    if (!platform.allocate)
        StartCounting();
    Usage usage = {};
    if (NtQuerySystemInformation(SystemHandleInformation, &handles, sizeof handles, nullptr) < 0)
        __builtin_trap();
    const auto self = reinterpret_cast<uintptr_t>(NtCurrentTeb()->ClientId.UniqueProcess);
    for (ULONG i = 0; i < handles.count; i++)
        usage.handles += handles.entries[i].UniqueProcessId == (self & 0xFFFF);
    usage.blocks = static_cast<uint32_t>(blocks);
    return usage;
}

} // namespace test

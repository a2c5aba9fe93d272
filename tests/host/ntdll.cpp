// The few functions of ntdll.dll that the computations call, over the host's C library. Only as much as the
// tests that are built here need: case mapping knows Latin-1, Greek and Cyrillic, and statuses have no Win32
// numbers.

#include "nt/teb.h"

#include "orv/runtime/ntdll_entry_points.h"

#include <stdlib.h>

PEB hostPeb;
bool hostHeapRefuses;

namespace
{

constexpr unsigned kCaseDistance = 32;

bool IsLowerCase(unsigned c)
{
    return (c >= 'a' && c <= 'z') || (c >= 0xE0 && c <= 0xFE && c != 0xF7) ||
           (c >= 0x3B1 && c <= 0x3C9 && c != 0x3C2) || (c >= 0x430 && c <= 0x44F);
}

template <typename Map>
NTSTATUS MapString(UNICODE_STRING &destination, const UNICODE_STRING &source, Map map)
{
    if (source.Length > destination.MaximumLength)
        return STATUS_BUFFER_OVERFLOW;
    destination.Length = source.Length;
    for (unsigned i = 0; i < source.Length / sizeof(WCHAR); i++)
        destination.Buffer[i] = map(source.Buffer[i]);
    return STATUS_SUCCESS;
}

} // namespace

// The table of entry points needs a loader, which is not here.
wchar_t OrvNtdll_RtlDowncaseUnicodeChar(wchar_t character)
{
    return IsLowerCase(character + kCaseDistance) ? static_cast<wchar_t>(character + kCaseDistance)
                                                  : character;
}

extern "C" {

PVOID NTAPI RtlAllocateHeap(HANDLE, ULONG, size_t size)
{
    constexpr size_t kLargestBlock =
        0x40000000; // about what a 32-bit process of the real platform finds in one piece
    return hostHeapRefuses || size > kLargestBlock ? nullptr : malloc(size);
}

BOOLEAN NTAPI RtlFreeHeap(HANDLE, ULONG, PVOID block)
{
    free(block);
    return true;
}

ULONG NTAPI RtlNtStatusToDosError(NTSTATUS)
{
    return 317; // ERROR_MR_MID_NOT_FOUND, what the platform answers where it knows no number
}

WCHAR NTAPI RtlUpcaseUnicodeChar(WCHAR character)
{
    const unsigned c = character;
    if (c == 0xFF)
        return 0x178;
    return IsLowerCase(c) ? static_cast<WCHAR>(c - kCaseDistance) : character;
}

NTSTATUS NTAPI RtlUpcaseUnicodeString(UNICODE_STRING *destination, const UNICODE_STRING *source, BOOLEAN)
{
    return MapString(*destination, *source, RtlUpcaseUnicodeChar);
}

NTSTATUS NTAPI RtlDowncaseUnicodeString(UNICODE_STRING *destination, const UNICODE_STRING *source, BOOLEAN)
{
    return MapString(*destination, *source, OrvNtdll_RtlDowncaseUnicodeChar);
}

} // extern "C"

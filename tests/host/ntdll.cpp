// The few functions of ntdll.dll that the computations call, over the host's C library. Only as much as the
// tests that are built here need: case mapping knows Latin-1, Greek and Cyrillic, and statuses have no Win32
// numbers.

#include "nt/teb.h"

#include <stdlib.h>

PEB hostPeb;
bool hostHeapRefuses;

extern "C" {

PVOID NTAPI RtlAllocateHeap(HANDLE, ULONG, size_t size)
{
    return hostHeapRefuses ? nullptr : malloc(size);
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
    if ((c >= 'a' && c <= 'z') || (c >= 0xE0 && c <= 0xFE && c != 0xF7) ||
        (c >= 0x3B1 && c <= 0x3C9 && c != 0x3C2) || (c >= 0x430 && c <= 0x44F))
        return static_cast<WCHAR>(c - 32);
    return c == 0xFF ? static_cast<WCHAR>(0x178) : character;
}

} // extern "C"

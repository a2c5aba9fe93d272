// The few functions of ntdll.dll that the computations call, over the host's C library. Only as much as the
// tests that are built here need: case mapping knows Latin-1, Greek and Cyrillic, few statuses have Win32
// numbers, and the ANSI page, which is the OEM page too, is one that the test chooses. Nothing here differs
// from run to run, entropy included.

#define _FILE_OFFSET_BITS 64
#define _TIME_BITS 64

#include "host_page.h"
#include "nt/teb.h"

#include "orv/runtime/ntdll_entry_points.h"
#include "runtime/entropy.h"

#include <stdlib.h>
#include <string.h>
#include <time.h>

PEB hostPeb;
bool hostHeapRefuses;
HostPage hostPage = HostPage::kLatin1;

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

/// Takes the first character off a byte string; what is none counts as one bad character up to where it
/// breaks.
unsigned TakeCharacter(const char *&text, unsigned &left)
{
    const auto byte = [&](unsigned at) { return static_cast<unsigned char>(text[at]); };
    unsigned length = 1;
    unsigned character = byte(0);
    if (hostPage == HostPage::kDoubleByte && character >= 0x81 && left >= 2) {
        length = 2;
        character = 0x4E00 + ((character - 0x81) << 8 | byte(1));
    } else if (hostPage == HostPage::kUtf8 && character >= 0xC0) {
        const unsigned whole = character < 0xE0 ? 2 : character < 0xF0 ? 3 : 4;
        character &= 0x7F >> whole;
        for (; length < whole && length < left && (byte(length) & 0xC0) == 0x80; length++)
            character = character << 6 | (byte(length) & 0x3F);
        if (length < whole || character > 0x10FFFF || character >> 11 == 0x1B)
            character = 0xFFFD;
    } else if (hostPage == HostPage::kUtf8 && character >= 0x80) {
        character = 0xFFFD;
    }
    text += length;
    left -= length;
    return character;
}

/// Writes one character as bytes, a question mark for one that the page lacks; gives their number.
unsigned EncodeCharacter(unsigned character, char *bytes)
{
    if (hostPage == HostPage::kDoubleByte && character >= 0x4E00 && character < 0x4E00 + 0x7E00) {
        bytes[0] = static_cast<char>(0x81 + ((character - 0x4E00) >> 8));
        bytes[1] = static_cast<char>(character - 0x4E00);
        return 2;
    }
    if (hostPage == HostPage::kUtf8 && character >= 0x80) {
        const unsigned length = character < 0x800 ? 2 : character < 0x10000 ? 3 : 4;
        for (unsigned i = length - 1; i > 0; i--, character >>= 6)
            bytes[i] = static_cast<char>(0x80 | (character & 0x3F));
        bytes[0] = static_cast<char>(0xF00 >> length | character);
        return length;
    }
    bytes[0] = static_cast<char>(character < 0x100 ? character : '?');
    return 1;
}

unsigned Decode(const ANSI_STRING &source, WCHAR *target)
{
    unsigned count = 0;
    const char *text = source.Buffer;
    for (unsigned left = source.Length; left;) {
        const unsigned character = TakeCharacter(text, left);
        const bool pair = character >= 0x10000;
        if (target) {
            target[count] = static_cast<WCHAR>(pair ? 0xD7C0 + (character >> 10) : character);
            if (pair)
                target[count + 1] = static_cast<WCHAR>(0xDC00 | (character & 0x3FF));
        }
        count += pair ? 2 : 1;
    }
    return count;
}

unsigned Encode(const UNICODE_STRING &source, char *target)
{
    unsigned count = 0;
    const unsigned length = source.Length / sizeof(WCHAR);
    for (unsigned i = 0; i < length; i++) {
        unsigned character = source.Buffer[i];
        if (hostPage == HostPage::kUtf8 && character >> 10 == 0x36 && i + 1 < length)
            character = 0x10000 + ((character & 0x3FF) << 10 | (source.Buffer[++i] & 0x3FF));
        else if (hostPage == HostPage::kUtf8 && character >> 11 == 0x1B)
            character = 0xFFFD;
        char bytes[4];
        const unsigned size = EncodeCharacter(character, bytes);
        for (unsigned at = 0; target && at < size; at++)
            target[count + at] = bytes[at];
        count += size;
    }
    return count;
}

static_assert(sizeof(time_t) == sizeof(LONGLONG), "years before 1902 and behind 2037");
constexpr LONGLONG kTicksPerMillisecond = 10000;
constexpr LONGLONG kSecondsTo1970 = 11644473600;

} // namespace

void detail::FillWithEntropy(void *bytes, uint32_t count)
{
    memset(bytes, 0x5A, count);
}

/// As src/crt/c_library.cpp has it, which has a malloc, too.
extern "C" void bz_internal_error(int)
{
    __builtin_trap();
}

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

PVOID NTAPI RtlReAllocateHeap(HANDLE, ULONG, PVOID block, size_t size)
{
    return hostHeapRefuses ? nullptr : realloc(block, size);
}

BOOLEAN NTAPI RtlFreeHeap(HANDLE, ULONG, PVOID block)
{
    free(block);
    return true;
}

void NTAPI RtlTimeToTimeFields(const LONGLONG *time, TIME_FIELDS *fields)
{
    const auto milliseconds = static_cast<LONGLONG>(static_cast<ULONGLONG>(*time) / kTicksPerMillisecond);
    const time_t seconds = milliseconds / 1000 - kSecondsTo1970;
    tm parts;
    gmtime_r(&seconds, &parts);
    *fields = {static_cast<USHORT>(parts.tm_year + 1900), static_cast<USHORT>(parts.tm_mon + 1),
               static_cast<USHORT>(parts.tm_mday),        static_cast<USHORT>(parts.tm_hour),
               static_cast<USHORT>(parts.tm_min),         static_cast<USHORT>(parts.tm_sec),
               static_cast<USHORT>(milliseconds % 1000),  static_cast<USHORT>(parts.tm_wday)};
}

BOOLEAN NTAPI RtlTimeFieldsToTime(TIME_FIELDS *fields, LONGLONG *time)
{
    const TIME_FIELDS &f = *fields;
    constexpr int kFirstYear = 1601;
    constexpr int kLastYear = 30827;
    if (f.Year < kFirstYear || f.Year > kLastYear)
        return false;
    tm parts = {f.Second, f.Minute, f.Hour, f.Day, f.Month - 1, f.Year - 1900, 0, 0, 0, 0, nullptr};
    const LONGLONG seconds = timegm(&parts) + kSecondsTo1970;
    *time = (seconds * 1000 + f.Milliseconds) * kTicksPerMillisecond;
    // What is out of its range was carried into the next field.
    TIME_FIELDS same;
    RtlTimeToTimeFields(time, &same);
    same.Weekday = f.Weekday;
    return memcmp(&same, &f, sizeof f) == 0;
}

NTSTATUS NTAPI RtlFormatCurrentUserKeyPath(UNICODE_STRING *path)
{
    static constexpr WCHAR kPath[] = L"\\REGISTRY\\USER\\S-1-5-21-1-2-3-1000";
    *path = {sizeof kPath - sizeof(WCHAR), sizeof kPath, static_cast<WCHAR *>(malloc(sizeof kPath))};
    memcpy(path->Buffer, kPath, sizeof kPath);
    return STATUS_SUCCESS;
}

void NTAPI RtlFreeUnicodeString(UNICODE_STRING *counted)
{
    free(counted->Buffer);
}

ULONG NTAPI RtlNtStatusToDosError(NTSTATUS status)
{
    static constexpr struct {
        NTSTATUS status;
        ULONG number;
    } kNumbers[] = {
        {STATUS_PENDING, 997},
        {STATUS_NO_MORE_FILES, ERROR_NO_MORE_FILES},
        {STATUS_INVALID_HANDLE, ERROR_INVALID_HANDLE},
        {STATUS_INVALID_PARAMETER, ERROR_INVALID_PARAMETER},
        {static_cast<NTSTATUS>(0xC0000017), ERROR_NOT_ENOUGH_MEMORY},
        {STATUS_ACCESS_DENIED, ERROR_ACCESS_DENIED},
        {STATUS_OBJECT_NAME_NOT_FOUND, ERROR_FILE_NOT_FOUND},
        {static_cast<NTSTATUS>(0xC0000035), ERROR_ALREADY_EXISTS},
    };
    for (const auto &known : kNumbers) {
        if (known.status == status)
            return known.number;
    }
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

ULONG NTAPI RtlxAnsiStringToUnicodeSize(const ANSI_STRING *source)
{
    return (Decode(*source, nullptr) + 1) * sizeof(WCHAR);
}

ULONG NTAPI RtlxUnicodeStringToAnsiSize(const UNICODE_STRING *source)
{
    return Encode(*source, nullptr) + 1;
}

NTSTATUS NTAPI RtlAnsiStringToUnicodeString(UNICODE_STRING *destination, const ANSI_STRING *source, BOOLEAN)
{
    const ULONG size = RtlxAnsiStringToUnicodeSize(source);
    if (size > 0xFFFF)
        return STATUS_INVALID_PARAMETER;
    if (size > destination->MaximumLength)
        return STATUS_BUFFER_OVERFLOW;
    destination->Length = static_cast<USHORT>(size - sizeof(WCHAR));
    destination->Buffer[Decode(*source, destination->Buffer)] = 0;
    return STATUS_SUCCESS;
}

NTSTATUS NTAPI RtlUnicodeStringToAnsiString(ANSI_STRING *destination, const UNICODE_STRING *source, BOOLEAN)
{
    const ULONG size = RtlxUnicodeStringToAnsiSize(source);
    if (size > 0xFFFF)
        return STATUS_INVALID_PARAMETER;
    if (size > destination->MaximumLength)
        return STATUS_BUFFER_OVERFLOW;
    destination->Length = static_cast<USHORT>(size - 1);
    destination->Buffer[Encode(*source, destination->Buffer)] = 0;
    return STATUS_SUCCESS;
}

// The OEM page is the ANSI page.
#define OEM(name, ansiName) decltype(ansiName) name __attribute__((alias(#ansiName)))
OEM(RtlxOemStringToUnicodeSize, RtlxAnsiStringToUnicodeSize);
OEM(RtlxUnicodeStringToOemSize, RtlxUnicodeStringToAnsiSize);
OEM(RtlOemStringToUnicodeString, RtlAnsiStringToUnicodeString);
OEM(RtlUnicodeStringToOemString, RtlUnicodeStringToAnsiString);

} // extern "C"

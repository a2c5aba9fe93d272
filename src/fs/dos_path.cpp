#include "orv/fs/dos_path.h"

#include "fs/platform_text.h"
#include "orv/text/character.h"
#include "runtime/status.h"

namespace
{

using detail::PathPieces;
using detail::PathText;
using detail::WritePath;

/// Whether the text starts with an upper-case prefix, in any letter case.
bool StartsWith(const PathText &text, const wchar_t *prefix)
{
    uint32_t i = 0;
    while (prefix[i] && i < text.length && OrvToASCIIUpper(text[i]) == prefix[i])
        i++;
    return !prefix[i];
}

/// Owns a counted string that the platform allocated.
struct PlatformString {
    UNICODE_STRING counted = {};

    PlatformString() = default;
    PlatformString(const PlatformString &) = delete;
    PlatformString &operator=(const PlatformString &) = delete;
    ~PlatformString()
    {
        if (counted.Buffer)
            RtlFreeUnicodeString(&counted);
    }

    PathPieces Pieces() const { return PathPieces(PathText(counted.Buffer, counted.Length / sizeof(WCHAR))); }
};

OrvResult MakeNtPath(const wchar_t *dosPath, UNICODE_STRING &ntPath)
{
    if (!dosPath || !*dosPath)
        return ORV_E_INVALID_ARGUMENT;
    return RtlDosPathNameToNtPathName_U(dosPath, &ntPath, nullptr, nullptr) ? ORV_S_OK : ORV_E_NOT_PRODUCED;
}

} // namespace

bool OrvWinIsNtFilePath(const wchar_t *path, uint32_t length)
{
    const PathText text(path, length);
    return StartsWith(text, L"\\??\\") || StartsWith(text, L"\\DEVICE\\") ||
           StartsWith(text, L"\\DOSDEVICES\\") || StartsWith(text, L"\\GLOBAL??\\");
}

OrvResult OrvNtdll_RtlDosPathNameToNtPathName_T(const wchar_t *dosPath, OrvUtf16CharHeapBuffer &ntPath)
{
    PlatformString made;
    const OrvResult result = MakeNtPath(dosPath, made.counted);
    return OrvSucceeded(result) ? WritePath(ntPath, made.Pieces()) : result;
}

OrvResult OrvNtdll_RtlDosPathNameToNtPathName_T_EliminateDosDevice(const wchar_t *dosPath,
                                                                   OrvUtf16CharHeapBuffer &ntPath)
{
    PlatformString made;
    const OrvResult result = OrvNtdll_RtlDosPathNameToNtPathName_U_EliminateDosDevice(dosPath, &made.counted);
    return OrvSucceeded(result) ? WritePath(ntPath, made.Pieces()) : result;
}

OrvResult OrvNtdll_RtlDosPathNameToNtPathName_U_EliminateDosDevice(const wchar_t *dosPath,
                                                                   _UNICODE_STRING *ntPath)
{
    if (OrvWinIsNtFilePath(dosPath)) {
        if (OrvGetStringSizeInElements(dosPath, detail::kLongestCounted + 1) > detail::kLongestCounted)
            return ORV_E_NOT_PRODUCED;
        return RtlCreateUnicodeString(ntPath, dosPath) ? ORV_S_OK : ORV_E_OUT_OF_MEMORY;
    }
    OrvUtf16CharHeapBuffer buffer;
    const OrvResult result = OrvBasPath::WinEliminateDosDeviceAliasPath(dosPath, buffer);
    return OrvSucceeded(result) ? MakeNtPath(dosPath, *ntPath) : result;
}

OrvResult OrvNtdll_RtlExpandEnvironmentStrings_T(const wchar_t *source, OrvUtf16CharHeapBuffer &out)
{
    const PathText text(source, OrvTerminated);
    UNICODE_STRING counted;
    if (!detail::CountText(text.characters, text.length, counted))
        return ORV_E_INVALID_ARGUMENT;
    detail::TextArray array;
    for (bool isFirst = true;; isFirst = false) {
        const uint32_t room = array.Capacity() * sizeof(WCHAR);
        UNICODE_STRING target = {0, static_cast<USHORT>(room < 0xFFFE ? room : 0xFFFE), array.Get()};
        ULONG needed = 0; // bytes, the terminator included
        const NTSTATUS status = RtlExpandEnvironmentStrings_U(nullptr, &counted, &target, &needed);
        if (NT_SUCCESS(status))
            return WritePath(out, PathPieces(PathText(array.Get(), target.Length / sizeof(WCHAR))));
        if (status != STATUS_BUFFER_TOO_SMALL || !isFirst || needed > 0xFFFE)
            return status == STATUS_BUFFER_TOO_SMALL ? ORV_E_BUFFER_TOO_SMALL
                                                     : detail::ResultFromStatus(status);
        if (!array.Reserve(needed / sizeof(WCHAR) + 1))
            return ORV_E_OUT_OF_MEMORY;
    }
}

// Converts DOS paths to native paths, and expands environment variables in a text.

#include "orv/fs/dos_path.h"

#include "fs/platform_text.h"
#include "runtime/status.h"

namespace
{

using detail::IsSeparator;
using detail::PathPieces;
using detail::PathText;
using detail::StartsWith;
using detail::WritePath;

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

bool StartsWithTwoSeparators(const PathText &path)
{
    return path.length >= 2 && IsSeparator(path[0]) && IsSeparator(path[1]);
}

constexpr uint32_t kPrefixLength = 4;

/// Whether the path is "\\?\D:\..." or "\\?\UNC\...". The platform takes such a path literally.
bool IsLiteral(const PathText &path)
{
    const bool isOnDrive = path.length > kPrefixLength + 2 && path[kPrefixLength + 1] == L':' &&
                           IsSeparator(path[kPrefixLength + 2]);
    return StartsWith(path, detail::kLiteralServers) || (isOnDrive && StartsWith(path, L"\\\\?\\"));
}

/// Whether a literal path contains a "/" or two adjacent "\" between its names.
bool HasOtherSeparators(const PathText &path)
{
    for (uint32_t i = kPrefixLength; i < path.length; i++) {
        if (path[i] == L'/' || (path[i] == L'\\' && path[i - 1] == L'\\'))
            return true;
    }
    return false;
}

/// Copies a literal path with one "\" for each run of separators, because the name of a file contains none of
/// them. Returns 0 or ORV_E_OUT_OF_MEMORY.
OrvResult CollapseSeparators(const PathText &path, OrvUtf16CharHeapBuffer &buffer)
{
    const OrvResult result = buffer.Assign(path.characters, path.length);
    if (OrvFailed(result))
        return result;
    uint32_t length = kPrefixLength;
    for (uint32_t i = kPrefixLength; i < path.length; i++) {
        if (!IsSeparator(path[i]))
            buffer[length++] = path[i];
        else if (buffer[length - 1] != L'\\')
            buffer[length++] = L'\\';
    }
    return buffer.Resize(length);
}

/// The position after the last ".." that would lead above the root; without such a step, the position after
/// the root itself.
uint32_t FindWayFromRoot(const PathText &path, uint32_t rootLength)
{
    uint32_t way = rootLength;
    uint32_t depth = 0;
    for (uint32_t start = rootLength; start < path.length;) {
        uint32_t end = start;
        while (end < path.length && !IsSeparator(path[end]))
            end++;
        const PathText name = path.UpTo(end).From(start);
        while (end < path.length && IsSeparator(path[end]))
            end++;
        start = end;
        const bool isDot = !name.IsEmpty() && name[0] == L'.';
        if (isDot && name.length == 2 && name[1] == L'.') {
            if (depth == 0)
                way = end;
            else
                depth--;
        } else if (!name.IsEmpty() && !(isDot && name.length == 1)) {
            depth++;
        }
    }
    return way;
}

/// Rewrites into the buffer a path that the elimination of device names, or the platform, would misread. The
/// elimination puts a prefix before the path, and after a prefix a ".." above the root would remove the
/// drive. Two adjacent separators after a prefix are an empty name to the platform. For all other paths the
/// buffer stays empty.
///
/// Returns 0 or ORV_E_OUT_OF_MEMORY.
OrvResult MakeReadable(const PathText &path, OrvUtf16CharHeapBuffer &buffer)
{
    if (IsLiteral(path))
        return HasOtherSeparators(path) ? CollapseSeparators(path, buffer) : ORV_S_OK;
    const uint32_t rootLength = OrvBasPath::GetPathRootLength(path.characters, path.length);
    if (rootLength == 0 || !IsSeparator(path[rootLength - 1]) || StartsWithTwoSeparators(path))
        return ORV_S_OK;
    const uint32_t way = FindWayFromRoot(path, rootLength);
    if (way == rootLength)
        return ORV_S_OK;
    PathPieces pieces(path.UpTo(rootLength));
    pieces.Add(path.From(way));
    return WritePath(buffer, pieces);
}

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
    const PathText path(dosPath, OrvTerminated);
    if (OrvWinIsNtFilePath(dosPath, path.length)) {
        if (path.length > detail::kLongestCounted)
            return ORV_E_NOT_PRODUCED;
        return RtlCreateUnicodeString(ntPath, dosPath) ? ORV_S_OK : ORV_E_OUT_OF_MEMORY;
    }
    OrvUtf16CharHeapBuffer readable;
    OrvResult result = MakeReadable(path, readable);
    if (!readable.IsEmpty())
        dosPath = readable.GetValue();
    // No name on a server is a device's name, and the elimination would mistake a path with "//" for a path
    // on a drive.
    OrvUtf16CharHeapBuffer eliminated;
    if (OrvSucceeded(result) && !StartsWithTwoSeparators(path))
        result = OrvBasPath::WinEliminateDosDeviceAliasPath(dosPath, eliminated);
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
        UNICODE_STRING target = {0, detail::CountedRoom(room), array.Get()};
        ULONG needed = 0; // bytes, including the terminator
        const NTSTATUS status = RtlExpandEnvironmentStrings_U(nullptr, &counted, &target, &needed);
        if (NT_SUCCESS(status))
            return WritePath(out, PathPieces(PathText(array.Get(), target.Length / sizeof(WCHAR))));
        if (status != STATUS_BUFFER_TOO_SMALL || !isFirst || needed > detail::kMostCountedRoom)
            return status == STATUS_BUFFER_TOO_SMALL ? ORV_E_BUFFER_TOO_SMALL
                                                     : detail::ResultFromStatus(status);
        if (!array.Reserve(needed / sizeof(WCHAR) + 1))
            return ORV_E_OUT_OF_MEMORY;
    }
}

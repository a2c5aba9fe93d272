// The path operations that ask the platform: full paths, the current directory, the directory for temporary
// files, paths without device names.

#include "fs/platform_text.h"
#include "orv/runtime/result.h"
#include "runtime/status.h"

namespace
{

using detail::IsAbsolute;
using detail::IsSeparator;
using detail::PathPieces;
using detail::PathText;
using detail::TerminatedText;
using detail::TextArray;
using detail::WritePath;

constexpr wchar_t kPrefix[] = L"\\\\?\\";
constexpr uint32_t kPrefixLength = 4;

/// Asks for the full path. `count` is its length if it fits; otherwise `count` is the capacity that it needs,
/// which is not below `capacity`. Returns 0 or ORV_E_NOT_PRODUCED.
OrvResult AskFullPath(const wchar_t *path, wchar_t *target, uint32_t capacity, uint32_t &count)
{
    constexpr uint32_t kLargest = 0x8000; // characters; the platform never writes more
    const uint32_t size = (capacity < kLargest ? capacity : kLargest) * sizeof(wchar_t);
    const uint32_t written = RtlGetFullPathName_U(path, size, target, nullptr);
    count = written / sizeof(wchar_t);
    return written < sizeof(wchar_t) ? ORV_E_NOT_PRODUCED : ORV_S_OK;
}

/// Writes the full path into the array, which grows if needed.
OrvResult AskFullPath(const wchar_t *path, TextArray &array, uint32_t &length)
{
    OrvResult result = AskFullPath(path, array.Get(), array.Capacity(), length);
    if (OrvFailed(result) || length < array.Capacity())
        return result;
    if (!array.Reserve(length))
        return ORV_E_OUT_OF_MEMORY;
    result = AskFullPath(path, array.Get(), array.Capacity(), length);
    if (OrvSucceeded(result) && length >= array.Capacity())
        return ORV_E_BUFFER_TOO_SMALL; // another thread changed the current directory
    return result;
}

OrvResult WriteFullPath(_ORV_UTF16CHAR_STR &out, const wchar_t *path, unsigned int *required)
{
    if (!out.characters && out.capacity)
        return ORV_E_INVALID_ARGUMENT;
    uint32_t count = 0;
    const OrvResult result = AskFullPath(path, out.characters, out.capacity, count);
    if (OrvFailed(result))
        return result;
    if (count >= out.capacity) {
        if (required)
            *required = count;
        return ORV_E_BUFFER_TOO_SMALL;
    }
    out.length = count;
    return ORV_S_OK;
}

template <typename Out>
OrvResult WriteFullPath(Out &out, const wchar_t *path)
{
    TextArray array;
    uint32_t length = 0;
    const OrvResult result = AskFullPath(path, array, length);
    return OrvSucceeded(result) ? WritePath(out, PathPieces(PathText(array.Get(), length))) : result;
}

template <typename Out, typename... Required>
OrvResult FullPath(Out &out, const wchar_t *path, uint32_t length, Required... required)
{
    TerminatedText text;
    const OrvResult result = text.Set(path, length);
    return OrvSucceeded(result) ? WriteFullPath(out, text.Get(), required...) : result;
}

/// Reads an environment variable of the process, terminated. Returns 0, ORV_E_OUT_OF_MEMORY or the converted
/// status.
OrvResult QueryVariable(const wchar_t *name, TextArray &value)
{
    UNICODE_STRING counted;
    RtlInitUnicodeString(&counted, name);
    for (;;) {
        const uint32_t room = (value.Capacity() - 1) * sizeof(wchar_t);
        UNICODE_STRING target = {0, detail::CountedRoom(room), value.Get()};
        const NTSTATUS status = RtlQueryEnvironmentVariable_U(nullptr, &counted, &target);
        if (NT_SUCCESS(status)) {
            value.Get()[target.Length / sizeof(wchar_t)] = 0;
            return ORV_S_OK;
        }
        // Length is now the size needed. Another thread may enlarge the variable in between, hence the loop.
        const uint32_t needed = target.Length / sizeof(wchar_t) + 2;
        if (status != STATUS_BUFFER_TOO_SMALL || needed <= value.Capacity())
            return detail::ResultFromStatus(status);
        if (!value.Reserve(needed))
            return ORV_E_OUT_OF_MEMORY;
    }
}

OrvResult QueryTempDir(TextArray &value)
{
    constexpr const wchar_t *kNames[] = {L"TMP", L"TEMP", L"USERPROFILE"};
    for (const wchar_t *const name : kNames) {
        const OrvResult result = QueryVariable(name, value);
        if (OrvSucceeded(result) || result != detail::ResultFromStatus(STATUS_VARIABLE_NOT_FOUND))
            return result;
    }
    return ORV_E_PATH_NOT_FOUND;
}

template <typename Out, typename... Required>
OrvResult TempDirPath(Out &out, Required... required)
{
    TextArray value;
    const OrvResult result = QueryTempDir(value);
    return OrvSucceeded(result) ? WriteFullPath(out, value.Get(), required...) : result;
}

/// Writes the current directory into the array, which grows if needed.
OrvResult AskCurrentDirectory(TextArray &array, uint32_t &length)
{
    for (uint32_t attempt = 0; attempt < 2; attempt++) {
        length = RtlGetCurrentDirectory_U(array.Capacity() * sizeof(wchar_t), array.Get()) / sizeof(wchar_t);
        if (length < array.Capacity())
            return length ? ORV_S_OK : ORV_E_NOT_PRODUCED;
        if (attempt == 0 && !array.Reserve(length + 1))
            return ORV_E_OUT_OF_MEMORY;
    }
    return ORV_E_BUFFER_TOO_SMALL;
}

/// Puts the prefix before a full path and writes the full path of the result. With the prefix no name in the
/// path is a device's name. "/", "." and ".." must be resolved here, because later they would be taken
/// literally.
OrvResult WritePrefixed(OrvUtf16CharHeapBuffer &buffer, const PathText &root, const PathText &path)
{
    PathPieces pieces(PathText(kPrefix, kPrefixLength));
    pieces.Add(root);
    pieces.Add(path);
    TerminatedText prefixed;
    const OrvResult result = prefixed.Set(pieces);
    return OrvSucceeded(result) ? WriteFullPath(buffer, prefixed.Get()) : result;
}

/// Completes a path that starts at the root of the current drive. `isChanged` stays false when that drive is
/// a server's share.
OrvResult PrefixRoot(const PathText &path, OrvUtf16CharHeapBuffer &buffer, bool &isChanged)
{
    TextArray array;
    uint32_t length = 0;
    const OrvResult result = AskCurrentDirectory(array, length);
    if (OrvFailed(result))
        return result;
    const PathText current(array.Get(), length);
    const PathText root = current.UpTo(OrvBasPath::GetPathRootLength(current.characters, length));
    isChanged = !root.IsEmpty() && IsSeparator(root.Last());
    return isChanged ? WritePrefixed(buffer, root, path.From(1)) : ORV_S_OK;
}

} // namespace

namespace OrvBasPath
{

OrvResult GetFullPath(_ORV_UTF16CHAR_STR &out, const wchar_t *path, uint32_t length, unsigned int *required)
{
    return FullPath(out, path, length, required);
}

OrvResult GetFullPath(OrvUtf16CharHeapBuffer &out, const wchar_t *path, uint32_t length)
{
    return FullPath(out, path, length);
}

OrvResult GetFullPath(const OrvMutableStringRefBase2<wchar_t> &out, const OrvStringRefBase<wchar_t> &path)
{
    return FullPath(out, path.characters, path.length);
}

OrvResult GetTempDirPath(_ORV_UTF16CHAR_STR &out, unsigned int *required)
{
    return TempDirPath(out, required);
}

OrvResult GetTempDirPath(OrvUtf16CharHeapBuffer &out)
{
    return TempDirPath(out);
}

OrvResult GetTempDirPath(const OrvMutableStringRefBase2<wchar_t> &out)
{
    return TempDirPath(out);
}

OrvResult WinEliminateDosDeviceAliasPath(const wchar_t *&path, OrvUtf16CharHeapBuffer &buffer)
{
    const PathText text(path, OrvTerminated);
    bool isChanged = false;
    OrvResult result = ORV_S_OK;
    if (IsAbsolute(text)) {
        if (text[0] == L'\\')
            return ORV_S_OK;
        result = WritePrefixed(buffer, PathText(), text);
        isChanged = true;
    } else if (!text.IsEmpty() && IsSeparator(text[0])) {
        result = PrefixRoot(text, buffer, isChanged);
    }
    if (isChanged && OrvSucceeded(result))
        path = buffer.GetValue();
    return result;
}

OrvResult WinEliminateDosDeviceAliasPathU(const wchar_t *path, _UNICODE_STRING *unicodeString,
                                          unsigned int *required)
{
    OrvUtf16CharHeapBuffer buffer;
    const OrvResult result = WinEliminateDosDeviceAliasPath(path, buffer);
    if (OrvFailed(result))
        return result;
    _ORV_UTF16CHAR_STR out = {0, unicodeString->MaximumLength / uint32_t(sizeof(wchar_t)),
                              unicodeString->Buffer};
    const OrvResult written = WritePath(out, PathPieces(PathText(path, OrvTerminated)), required);
    if (OrvSucceeded(written))
        unicodeString->Length = static_cast<USHORT>(out.length * sizeof(wchar_t));
    return written;
}

} // namespace OrvBasPath

// Path operations that write each name of a path as the file system stores it, long or short.

#include "fs/directory_enumerator.h"
#include "fs/path_text.h"
#include "orv/runtime/result.h"

namespace
{

using detail::DirectoryEntry;
using detail::DirectoryEnumerator;
using detail::IsSeparator;
using detail::PathPieces;
using detail::PathText;
using detail::StartsWith;
using detail::WritePath;

enum class Names { Normalized, Long, Alternate };

bool Separates(wchar_t character, Names names)
{
    return character == L'\\' || (character == L'/' && names != Names::Normalized);
}

bool IsDots(const PathText &name)
{
    return name[0] == L'.' && (name.length == 1 || (name.length == 2 && name[1] == L'.'));
}

/// Whether the name has at most eight characters, or at most eight before the last "." and three after it.
bool CouldBeShortName(const PathText &name)
{
    constexpr uint32_t kLongestBase = 8;
    constexpr uint32_t kLongestExtension = 3;
    if (name.length <= kLongestBase)
        return true;
    if (name.length > kLongestBase + 1 + kLongestExtension)
        return false;
    for (uint32_t i = name.length; i > 0; i--) {
        if (name[i - 1] == L'.')
            return i - 1 <= kLongestBase && name.length - i <= kLongestExtension;
    }
    return false;
}

/// Whether the file system would take the name for a pattern. Win32 converts "*?." to `<>"` for the native
/// interface.
bool HasWildcard(const PathText &name)
{
    constexpr wchar_t kWildcards[] = {L'*', L'?', L'<', L'>', L'"'};
    for (uint32_t i = 0; i < name.length; i++) {
        if (OrvFindElement(kWildcards, name[i], sizeof kWildcards / sizeof *kWildcards))
            return true;
    }
    return false;
}

/// Appends the last component of `path` as the file system stores it.
OrvResult AppendFoundName(const PathText &path, bool alternate, OrvUtf16CharHeapBuffer &out)
{
    DirectoryEnumerator enumerator;
    DirectoryEntry entry;
    OrvResult result = enumerator.Open(path);
    if (OrvSucceeded(result))
        result = enumerator.Next(entry);
    if (OrvFailed(result))
        return result;
    const PathText &name = alternate && !entry.shortName.IsEmpty() ? entry.shortName : entry.name;
    return out.Append(name.characters, name.length);
}

/// Appends `component`, which is the last one of `path`.
OrvResult AppendName(const PathText &path, const PathText &component, Names names,
                     OrvUtf16CharHeapBuffer &out)
{
    if (!IsDots(component)) {
        if (names == Names::Normalized) {
            if (CouldBeShortName(component) && OrvSucceeded(AppendFoundName(path, false, out)))
                return ORV_S_OK;
        } else {
            if (HasWildcard(component))
                return ORV_E_INVALID_NAME; // it would match some other name
            return AppendFoundName(path, names == Names::Alternate, out);
        }
    }
    return out.Append(component.characters, component.length);
}

uint32_t EndOfName(const PathText &path, uint32_t start)
{
    while (start < path.length && !IsSeparator(path[start]))
        start++;
    return start;
}

/// The length of the first part of the path, which is copied unchanged: the root. After "\\?\UNC\" it
/// includes the server and the share, because no directory lists them.
uint32_t FixedLength(const PathText &path, Names names)
{
    const uint32_t rootLength = OrvBasPath::GetPathRootLength(path.characters, path.length);
    if (names == Names::Normalized || !StartsWith(path, detail::kLiteralServers))
        return rootLength;
    constexpr uint32_t kServer = sizeof detail::kLiteralServers / sizeof(wchar_t) - 1;
    const uint32_t serverEnd = EndOfName(path, kServer);
    return serverEnd == path.length ? serverEnd : EndOfName(path, serverEnd + 1);
}

/// Whether the next run of separators in the path adds one "\" to `built`.
bool WantsSeparator(OrvUtf16CharHeapBuffer &built, uint32_t rootLength, bool isEnd, Names names)
{
    const uint32_t length = built.GetInternal().length;
    const wchar_t last = built[length - 1];
    if (isEnd && names == Names::Normalized)
        return last != L'\\'; // a final separator is always kept
    if (length > rootLength)
        return true;
    return !IsSeparator(last); // every root but that of a share ends with a separator
}

OrvResult BuildPath(const PathText &path, Names names, OrvUtf16CharHeapBuffer &out)
{
    constexpr uint32_t kRoomForLongerNames = 64;
    if (path.IsEmpty())
        return ORV_E_INVALID_ARGUMENT;
    const uint32_t rootLength = FixedLength(path, names);
    OrvResult result = path.length < OrvTerminated - 1 - kRoomForLongerNames
                           ? out.ReserveElements(path.length + kRoomForLongerNames)
                           : ORV_E_OUT_OF_MEMORY;
    if (OrvSucceeded(result) && rootLength)
        result = out.Append(path.characters, rootLength);
    for (uint32_t position = rootLength; OrvSucceeded(result) && position < path.length;) {
        if (Separates(path[position], names)) {
            while (position < path.length && Separates(path[position], names))
                position++;
            if (WantsSeparator(out, rootLength, position == path.length, names))
                result = out.Append(L'\\');
            continue;
        }
        uint32_t end = position;
        while (end < path.length && !Separates(path[end], names))
            end++;
        result = AppendName(path.UpTo(end), path.UpTo(end).From(position), names, out);
        position = end;
    }
    return result;
}

template <typename Out, typename... Required>
OrvResult NamedPath(Out &out, const PathText &path, Names names, Required... required)
{
    OrvUtf16CharHeapBuffer built;
    const OrvResult result = BuildPath(path, names, built);
    if (OrvFailed(result))
        return result;
    return WritePath(out, PathPieces(PathText(built.GetValue(), built.GetInternal().length)), required...);
}

} // namespace

namespace OrvBasPath
{

OrvResult GetNormalizedPath(_ORV_UTF16CHAR_STR &out, const wchar_t *path, uint32_t length,
                            unsigned int *required)
{
    return NamedPath(out, PathText(path, length), Names::Normalized, required);
}

OrvResult GetNormalizedPath(OrvUtf16CharHeapBuffer &out, const wchar_t *path, uint32_t length)
{
    return NamedPath(out, PathText(path, length), Names::Normalized);
}

OrvResult GetNormalizedPath(const OrvMutableStringRefBase2<wchar_t> &out,
                            const OrvStringRefBase<wchar_t> &path)
{
    return NamedPath(out, PathText(path), Names::Normalized);
}

OrvResult GetLongPath(_ORV_UTF16CHAR_STR &out, const wchar_t *path, uint32_t length, unsigned int *required)
{
    return NamedPath(out, PathText(path, length), Names::Long, required);
}

OrvResult GetLongPath(OrvUtf16CharHeapBuffer &out, const wchar_t *path, uint32_t length)
{
    return NamedPath(out, PathText(path, length), Names::Long);
}

OrvResult GetLongPath(const OrvMutableStringRefBase2<wchar_t> &out, const OrvStringRefBase<wchar_t> &path)
{
    return NamedPath(out, PathText(path), Names::Long);
}

OrvResult GetAlternatePath(_ORV_UTF16CHAR_STR &out, const wchar_t *path, uint32_t length,
                           unsigned int *required)
{
    return NamedPath(out, PathText(path, length), Names::Alternate, required);
}

OrvResult GetAlternatePath(OrvUtf16CharHeapBuffer &out, const wchar_t *path, uint32_t length)
{
    return NamedPath(out, PathText(path, length), Names::Alternate);
}

OrvResult GetAlternatePath(const OrvMutableStringRefBase2<wchar_t> &out,
                           const OrvStringRefBase<wchar_t> &path)
{
    return NamedPath(out, PathText(path), Names::Alternate);
}

} // namespace OrvBasPath

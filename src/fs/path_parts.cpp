// Path operations that return a part of a path: root, directory, file name, extension, volume.

#include "fs/path_text.h"
#include "orv/text/character.h"

namespace
{

using detail::EndsName;
using detail::IsSeparator;
using detail::PathPieces;
using detail::PathText;
using detail::WritePath;

uint32_t RootLength(const PathText &path)
{
    const uint32_t n = path.length;
    if (n == 0)
        return 0;
    const bool startsWithSeparator = IsSeparator(path[0]);
    if (n >= 2 && path[1] == L':')
        return n > 2 && IsSeparator(path[2]) ? 3 : 2;
    if (n < 2 || !startsWithSeparator || !IsSeparator(path[1]))
        return startsWithSeparator ? 1 : 0;
    // After two separators: the server's name, one separator, the share's name.
    uint32_t i = 2;
    while (i < n && !IsSeparator(path[i]))
        i++;
    for (i++; i < n && !IsSeparator(path[i]);)
        i++;
    return i < n ? i : n;
}

PathPieces Root(const PathText &path)
{
    return PathPieces(path.UpTo(RootLength(path)));
}

/// The position after the last character for which `ends` is true; 0 when there is none.
template <typename Predicate>
uint32_t StartOfName(const PathText &path, Predicate ends)
{
    uint32_t start = path.length;
    while (start > 0 && !ends(path[start - 1]))
        start--;
    return start;
}

/// The position of the last "." at or after `start`; the length of the path when there is none.
uint32_t LastDot(const PathText &path, uint32_t start)
{
    for (uint32_t i = path.length; i > start; i--) {
        if (path[i - 1] == L'.')
            return i - 1;
    }
    return path.length;
}

PathPieces Filename(const PathText &path)
{
    if (path.length == 2 && path[1] == L':') {
        const wchar_t drive = OrvToUpper(path[0]);
        if (drive >= L'A' && drive <= L'Z')
            return PathPieces();
    }
    return PathPieces(path.From(StartOfName(path, IsSeparator)));
}

PathText Extension(const PathText &path)
{
    const uint32_t dot = LastDot(path, StartOfName(path, EndsName));
    return dot + 1 < path.length ? path.From(dot) : PathText();
}

PathPieces FilenameWithoutExtension(const PathText &path)
{
    const uint32_t start = StartOfName(path, EndsName);
    return PathPieces(path.UpTo(LastDot(path, start)).From(start));
}

PathPieces DirectoryPath(const PathText &path)
{
    PathPieces pieces;
    pieces.needsNoRoomWhenEmpty = true;
    if (path.IsEmpty())
        return pieces;
    uint32_t end = path.length; // the separator's position plus 1; a separator at position 0 does not count
    while (end > 1 && !IsSeparator(path[end - 1]))
        end--;
    while (end > 1 && IsSeparator(path[end - 2]))
        end--;
    if (end > 1) {
        end--;
        pieces.Add(path.UpTo(end));
        if (end >= 2 && path[end - 1] == L':')
            pieces.Add(PathText(L"\\", 1));
    } else if (IsSeparator(path[0])) {
        pieces.Add(path.UpTo(1));
    }
    return pieces;
}

/// The volume, or the empty text when there is none.
PathPieces Volume(const PathText &path)
{
    PathPieces pieces;
    uint32_t colon = 0;
    while (colon < path.length && path[colon] != L':')
        colon++;
    if (colon < path.length) {
        pieces.Add(path.UpTo(colon));
        pieces.Add(PathText(L":\\", 2));
    }
    return pieces;
}

template <typename Out, typename... Required>
OrvResult WriteVolume(Out &out, const PathText &path, Required... required)
{
    PathPieces pieces = Volume(path);
    const bool isFound = pieces.Length() != 0;
    pieces.needsNoRoomWhenEmpty = true;
    const OrvResult result = WritePath(out, pieces, required...);
    return OrvSucceeded(result) && !isFound ? ORV_E_INVALID_DATA : result;
}

} // namespace

namespace OrvBasPath
{

uint32_t GetPathRootLength(const wchar_t *path, uint32_t length)
{
    return RootLength(PathText(path, length));
}

bool IsPathRooted(const wchar_t *path, uint32_t length)
{
    return RootLength(PathText(path, length)) != 0;
}

OrvResult GetPathRoot(_ORV_UTF16CHAR_STR &out, const wchar_t *path, unsigned int *required)
{
    return WritePath(out, Root(PathText(path, OrvTerminated)), required);
}

OrvResult GetPathRoot(OrvUtf16CharHeapBuffer &out, const wchar_t *path)
{
    return WritePath(out, Root(PathText(path, OrvTerminated)));
}

OrvResult GetPathRoot(const OrvMutableStringRefBase2<wchar_t> &out, const OrvStringRefBase<wchar_t> &path)
{
    return WritePath(out, Root(PathText(path)));
}

OrvResult GetVolumeFromPath(_ORV_UTF16CHAR_STR &out, const wchar_t *path, uint32_t length,
                            unsigned int *required)
{
    return WriteVolume(out, PathText(path, length), required);
}

OrvResult GetVolumeFromPath(OrvUtf16CharHeapBuffer &out, const wchar_t *path, uint32_t length)
{
    return WriteVolume(out, PathText(path, length));
}

OrvResult GetVolumeFromPath(const OrvMutableStringRefBase2<wchar_t> &out,
                            const OrvStringRefBase<wchar_t> &path)
{
    return WriteVolume(out, PathText(path));
}

bool HasExtension(const wchar_t *path, uint32_t length)
{
    return !Extension(PathText(path, length)).IsEmpty();
}

OrvResult GetFilename(_ORV_UTF16CHAR_STR &out, const wchar_t *path, uint32_t length, unsigned int *required)
{
    return WritePath(out, Filename(PathText(path, length)), required);
}

OrvResult GetFilename(OrvUtf16CharHeapBuffer &out, const wchar_t *path, uint32_t length)
{
    return WritePath(out, Filename(PathText(path, length)));
}

OrvResult GetFilename(const OrvMutableStringRefBase2<wchar_t> &out, const OrvStringRefBase<wchar_t> &path)
{
    return WritePath(out, Filename(PathText(path)));
}

OrvResult GetFilenameExtension(_ORV_UTF16CHAR_STR &out, const wchar_t *path, uint32_t length,
                               unsigned int *required)
{
    return WritePath(out, PathPieces(Extension(PathText(path, length))), required);
}

OrvResult GetFilenameExtension(OrvUtf16CharHeapBuffer &out, const wchar_t *path, uint32_t length)
{
    return WritePath(out, PathPieces(Extension(PathText(path, length))));
}

OrvResult GetFilenameExtension(const OrvMutableStringRefBase2<wchar_t> &out,
                               const OrvStringRefBase<wchar_t> &path)
{
    return WritePath(out, PathPieces(Extension(PathText(path))));
}

OrvResult GetFilenameWithoutExtension(_ORV_UTF16CHAR_STR &out, const wchar_t *path, uint32_t length,
                                      unsigned int *required)
{
    return WritePath(out, FilenameWithoutExtension(PathText(path, length)), required);
}

OrvResult GetFilenameWithoutExtension(OrvUtf16CharHeapBuffer &out, const wchar_t *path, uint32_t length)
{
    return WritePath(out, FilenameWithoutExtension(PathText(path, length)));
}

OrvResult GetFilenameWithoutExtension(const OrvMutableStringRefBase2<wchar_t> &out,
                                      const OrvStringRefBase<wchar_t> &path)
{
    return WritePath(out, FilenameWithoutExtension(PathText(path)));
}

OrvResult GetDirectoryPathFromFilenamePath(_ORV_UTF16CHAR_STR &out, const wchar_t *path, uint32_t length,
                                           unsigned int *required)
{
    const PathText text(path, length);
    if (text.IsEmpty() && required)
        *required = 0;
    return WritePath(out, DirectoryPath(text), required);
}

OrvResult GetDirectoryPathFromFilenamePath(OrvUtf16CharHeapBuffer &out, const wchar_t *path, uint32_t length)
{
    return WritePath(out, DirectoryPath(PathText(path, length)));
}

OrvResult GetDirectoryPathFromFilenamePath(const OrvMutableStringRefBase2<wchar_t> &out,
                                           const OrvStringRefBase<wchar_t> &path)
{
    return WritePath(out, DirectoryPath(PathText(path)));
}

} // namespace OrvBasPath

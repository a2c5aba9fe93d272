// Path operations that join two paths or change the extension of one.

#include "fs/path_text.h"
#include "orv/runtime/result.h"

namespace
{

using detail::EndsName;
using detail::IsAbsolute;
using detail::IsSeparator;
using detail::PathPieces;
using detail::PathText;
using detail::WritePath;

/// Joins the texts. Puts one separator between them, unless the first is empty or ends with one.
PathPieces Join(const PathText &first, const PathText &second)
{
    PathPieces pieces(first);
    if (!first.IsEmpty() && !IsSeparator(first.Last()))
        pieces.Add(PathText(L"\\", 1));
    pieces.Add(second);
    return pieces;
}

PathPieces Combine(const PathText &first, const PathText &second)
{
    if (second.IsEmpty())
        return PathPieces(first);
    if (first.IsEmpty() || IsAbsolute(second))
        return PathPieces(second);
    if (!IsSeparator(second[0]))
        return Join(first, second);
    // The second path starts at the root of the drive, and the first path names the drive.
    if (!IsAbsolute(first) || first[1] != L':')
        return PathPieces(second);
    PathPieces pieces(first.UpTo(2));
    pieces.Add(second);
    return pieces;
}

/// Replaces or adds the extension. The path must not be empty.
PathPieces WithExtension(const PathText &path, const PathText &extension)
{
    if (EndsName(path.Last()))
        return PathPieces(path);
    uint32_t baseLength = path.length;
    for (uint32_t i = path.length; i > 0 && !EndsName(path[i - 1]); i--) {
        if (path[i - 1] == L'.') {
            baseLength = i - 1;
            break;
        }
    }
    PathPieces pieces(path.UpTo(baseLength));
    if (extension.IsEmpty() || extension[0] != L'.')
        pieces.Add(PathText(L".", 1));
    pieces.Add(extension);
    return pieces;
}

template <typename Out, typename... Required>
OrvResult WriteWithExtension(Out &out, const PathText &path, const PathText &extension, Required... required)
{
    return path.IsEmpty() ? ORV_S_OK : WritePath(out, WithExtension(path, extension), required...);
}

} // namespace

namespace OrvBasPath
{

OrvResult CombinePaths(_ORV_UTF16CHAR_STR &out, const wchar_t *first, const wchar_t *second,
                       uint32_t firstLength, uint32_t secondLength, unsigned int *required)
{
    return WritePath(out, Combine(PathText(first, firstLength), PathText(second, secondLength)), required);
}

OrvResult CombinePaths(OrvUtf16CharHeapBuffer &out, const wchar_t *first, const wchar_t *second,
                       uint32_t firstLength, uint32_t secondLength)
{
    return WritePath(out, Combine(PathText(first, firstLength), PathText(second, secondLength)));
}

OrvResult CombinePaths(const OrvMutableStringRefBase2<wchar_t> &out, const OrvStringRefBase<wchar_t> &first,
                       const OrvStringRefBase<wchar_t> &second)
{
    return WritePath(out, Combine(PathText(first), PathText(second)));
}

OrvResult AppendPath(OrvUtf16CharHeapBuffer &buffer, const wchar_t *part)
{
    const PathText present(buffer.GetBuffer(), buffer.GetInternal().length);
    return WritePath(buffer, Join(present, PathText(part, OrvTerminated)));
}

OrvResult ChangeExtension(_ORV_UTF16CHAR_STR &out, const wchar_t *path, const wchar_t *extension,
                          uint32_t pathLength, uint32_t extensionLength, unsigned int *required)
{
    return WriteWithExtension(out, PathText(path, pathLength), PathText(extension, extensionLength),
                              required);
}

OrvResult ChangeExtension(OrvUtf16CharHeapBuffer &out, const wchar_t *path, const wchar_t *extension,
                          uint32_t pathLength, uint32_t extensionLength)
{
    return WriteWithExtension(out, PathText(path, pathLength), PathText(extension, extensionLength));
}

OrvResult ChangeExtension(const OrvMutableStringRefBase2<wchar_t> &out, const OrvStringRefBase<wchar_t> &path,
                          const OrvStringRefBase<wchar_t> &extension)
{
    return WriteWithExtension(out, PathText(path), PathText(extension));
}

} // namespace OrvBasPath

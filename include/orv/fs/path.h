// Paths: splitting them, joining them, and completing them.
//
//     OrvUtf16CharHeapBuffer path;
//     OrvResult result = OrvBasPath::GetTempDirPath(path);
//     if (OrvSucceeded(result))
//         result = OrvBasPath::AppendPath(path, L"report.txt");
//     if (OrvSucceeded(result))
//         result = OrvBasPath::ChangeExtension(path, path.GetValue(), L".bak"); // "D:\Temp\report.bak"
//
// Except for the full forms, which ask the platform, all of this works on the text alone: nothing is opened,
// and nothing needs to exist. "\" and "/" are both separators. Operations add "\" only; text that is copied
// from the input keeps its separators. Only GetFullPath, and operations that complete a path as it does,
// resolve "." and "..".
//
// Every operation has three forms that differ in where the result goes:
//
//   a descriptor of the caller's array, whose capacity counts the terminator. If it is too small, the
//     result is ORV_E_BUFFER_TOO_SMALL, the array and the length are as they were, and `required` receives
//     the capacity that is needed; it may be null, and is not written otherwise. For a null array the result
//     is ORV_E_INVALID_ARGUMENT when there is something to write.
//   a heap buffer, which becomes as large as the result needs.
//   a writable reference, whose owner grows by its own rules.
//
// The last two return ORV_E_OUT_OF_MEMORY or the owner's failure, and the text is then as it was. Their
// inputs may lie in the buffer that they write to. With a descriptor only the first input may lie in the
// array, and only at its start. The forms with a descriptor allocate nothing, except those full forms that
// say so.
//
// Lengths are in characters; OrvTerminated means that the text is terminated. A null text is empty.

#pragma once

#include "orv/base.h"
#include "orv/text/heap_buffer.h"
#include "orv/text/string_ref.h"

struct _UNICODE_STRING;

/// Operations on paths.
namespace OrvBasPath
{

// Roots.

/// The number of characters at the start that form the root: "D:\" and "D:", "\", "\\server\share" without
/// the separator after it; 0 when there is none. The text before a ":" need not be a letter. "\\?\D:\x" has
/// the root "\\?\D:".
ORV_API uint32_t GetPathRootLength(const wchar_t *path, uint32_t length = OrvTerminated);

/// Whether the path has a root.
ORV_API bool IsPathRooted(const wchar_t *path, uint32_t length = OrvTerminated);

/// The root, as long as GetPathRootLength says. Returns 0 or a failure that all forms share.
ORV_API OrvResult GetPathRoot(_ORV_UTF16CHAR_STR &out, const wchar_t *path, unsigned int *required = nullptr);
ORV_API OrvResult GetPathRoot(OrvUtf16CharHeapBuffer &out, const wchar_t *path);
ORV_API OrvResult GetPathRoot(const OrvMutableStringRefBase2<wchar_t> &out,
                              const OrvStringRefBase<wchar_t> &path);

/// The text before the first ":", followed by ":\": "D:\".
///
/// Returns 0; a failure that all forms share; ORV_E_INVALID_DATA when there is no ":", and the output is the
/// empty text.
ORV_API OrvResult GetVolumeFromPath(_ORV_UTF16CHAR_STR &out, const wchar_t *path,
                                    uint32_t length = OrvTerminated, unsigned int *required = nullptr);
ORV_API OrvResult GetVolumeFromPath(OrvUtf16CharHeapBuffer &out, const wchar_t *path,
                                    uint32_t length = OrvTerminated);
ORV_API OrvResult GetVolumeFromPath(const OrvMutableStringRefBase2<wchar_t> &out,
                                    const OrvStringRefBase<wchar_t> &path);

// Splitting. All return 0 or a failure that all forms share.

/// Whether the name has an extension: a "." after the last separator or ":" that is not the last character.
ORV_API bool HasExtension(const wchar_t *path, uint32_t length = OrvTerminated);

/// The text after the last separator, which may be empty; the whole path when there is no separator: "D:foo"
/// is a name. A drive alone, "D:" with a letter from A to Z, has the empty name.
ORV_API OrvResult GetFilename(_ORV_UTF16CHAR_STR &out, const wchar_t *path, uint32_t length = OrvTerminated,
                              unsigned int *required = nullptr);
ORV_API OrvResult GetFilename(OrvUtf16CharHeapBuffer &out, const wchar_t *path,
                              uint32_t length = OrvTerminated);
ORV_API OrvResult GetFilename(const OrvMutableStringRefBase2<wchar_t> &out,
                              const OrvStringRefBase<wchar_t> &path);

/// The last "." of the name and the text after it; empty when there is no "." or no text after it.
ORV_API OrvResult GetFilenameExtension(_ORV_UTF16CHAR_STR &out, const wchar_t *path,
                                       uint32_t length = OrvTerminated, unsigned int *required = nullptr);
ORV_API OrvResult GetFilenameExtension(OrvUtf16CharHeapBuffer &out, const wchar_t *path,
                                       uint32_t length = OrvTerminated);
ORV_API OrvResult GetFilenameExtension(const OrvMutableStringRefBase2<wchar_t> &out,
                                       const OrvStringRefBase<wchar_t> &path);

/// The name, which starts after the last separator or ":", up to its last ".": ".profile" gives the empty
/// text.
ORV_API OrvResult GetFilenameWithoutExtension(_ORV_UTF16CHAR_STR &out, const wchar_t *path,
                                              uint32_t length = OrvTerminated,
                                              unsigned int *required = nullptr);
ORV_API OrvResult GetFilenameWithoutExtension(OrvUtf16CharHeapBuffer &out, const wchar_t *path,
                                              uint32_t length = OrvTerminated);
ORV_API OrvResult GetFilenameWithoutExtension(const OrvMutableStringRefBase2<wchar_t> &out,
                                              const OrvStringRefBase<wchar_t> &path);

/// The text before the last separator, without further separators at its end: "D:\a\\b" and "D:\a\" give
/// "D:\a". "D:\foo" gives "D:\", "\foo" gives "\", and "foo" the empty text, for which a capacity of 0 is
/// enough; `required` is set to 0 for an empty path.
ORV_API OrvResult GetDirectoryPathFromFilenamePath(_ORV_UTF16CHAR_STR &out, const wchar_t *path,
                                                   uint32_t length = OrvTerminated,
                                                   unsigned int *required = nullptr);
ORV_API OrvResult GetDirectoryPathFromFilenamePath(OrvUtf16CharHeapBuffer &out, const wchar_t *path,
                                                   uint32_t length = OrvTerminated);
ORV_API OrvResult GetDirectoryPathFromFilenamePath(const OrvMutableStringRefBase2<wchar_t> &out,
                                                   const OrvStringRefBase<wchar_t> &path);

// Joining and changing. All return 0 or a failure that all forms share.

/// Resolves `second` against the directory `first`. When `second` is absolute or `first` is empty, the result
/// is `second`. When `second` starts at the root of a drive, the result is the drive of `first`, then
/// `second`: "D:\dir" and "\x" give "D:\x"; it is `second` alone when `first` has no drive. Otherwise it is
/// `first`, then `second`, with one "\" in between unless `first` ends with a separator.
///
/// A path is absolute when it is "D:" alone, starts with "D:\", or starts with two separators.
ORV_API OrvResult CombinePaths(_ORV_UTF16CHAR_STR &out, const wchar_t *first, const wchar_t *second,
                               uint32_t firstLength = OrvTerminated, uint32_t secondLength = OrvTerminated,
                               unsigned int *required = nullptr);
ORV_API OrvResult CombinePaths(OrvUtf16CharHeapBuffer &out, const wchar_t *first, const wchar_t *second,
                               uint32_t firstLength = OrvTerminated, uint32_t secondLength = OrvTerminated);
ORV_API OrvResult CombinePaths(const OrvMutableStringRefBase2<wchar_t> &out,
                               const OrvStringRefBase<wchar_t> &first,
                               const OrvStringRefBase<wchar_t> &second);

/// Appends `part` (terminated) to the buffer's text, with a "\" in between unless the text is empty or ends
/// with a separator. A separator at the start of `part` stays.
ORV_API OrvResult AppendPath(OrvUtf16CharHeapBuffer &buffer, const wchar_t *part);

/// The path with the last "." of its name and the text after it replaced by `extension`; a name without a "."
/// gets it at its end. The extension may be given with or without its ".": "a.txt" and "" give "a.". A path
/// that ends with a separator or ":" stays as it is. For an empty path the output is not touched.
ORV_API OrvResult ChangeExtension(_ORV_UTF16CHAR_STR &out, const wchar_t *path, const wchar_t *extension,
                                  uint32_t pathLength = OrvTerminated,
                                  uint32_t extensionLength = OrvTerminated, unsigned int *required = nullptr);
ORV_API OrvResult ChangeExtension(OrvUtf16CharHeapBuffer &out, const wchar_t *path, const wchar_t *extension,
                                  uint32_t pathLength = OrvTerminated,
                                  uint32_t extensionLength = OrvTerminated);
ORV_API OrvResult ChangeExtension(const OrvMutableStringRefBase2<wchar_t> &out,
                                  const OrvStringRefBase<wchar_t> &path,
                                  const OrvStringRefBase<wchar_t> &extension);

// Full forms: these ask the platform. A path has at most 32,766 characters.

/// The path as the platform completes it: with its drive and directory, "." and ".." resolved, "/" turned
/// into "\". The array must not overlap the path. This may allocate for a path that is given with its length,
/// and for a result, of more than 259 characters.
///
/// Returns 0; a failure that all forms share; ORV_E_NOT_PRODUCED when the platform makes no full path, as for
/// an empty path, and for a path that contains a zero. `required` receives the platform's count.
ORV_API OrvResult GetFullPath(_ORV_UTF16CHAR_STR &out, const wchar_t *path, uint32_t length = OrvTerminated,
                              unsigned int *required = nullptr);
ORV_API OrvResult GetFullPath(OrvUtf16CharHeapBuffer &out, const wchar_t *path,
                              uint32_t length = OrvTerminated);
ORV_API OrvResult GetFullPath(const OrvMutableStringRefBase2<wchar_t> &out,
                              const OrvStringRefBase<wchar_t> &path);

/// The path with every short name (8.3) in it replaced by the long one that the file system has for it, and
/// doubled separators removed. A name that is not found stays as it is. Allocates.
///
/// The root (see GetPathRootLength) stays as it is, and so does the "\" after a share; "\x" and "D:x" keep
/// their roots, too, although they are not absolute. After the root only "\" is a separator: the text between
/// two of them is replaced as a whole, "a/b" by the name of "b". A pattern is replaced by the first name that
/// it matches.
///
/// Returns 0; a failure that all forms share; ORV_E_INVALID_ARGUMENT for an empty path; ORV_E_OUT_OF_MEMORY.
ORV_API OrvResult GetNormalizedPath(_ORV_UTF16CHAR_STR &out, const wchar_t *path,
                                    uint32_t length = OrvTerminated, unsigned int *required = nullptr);
ORV_API OrvResult GetNormalizedPath(OrvUtf16CharHeapBuffer &out, const wchar_t *path,
                                    uint32_t length = OrvTerminated);
ORV_API OrvResult GetNormalizedPath(const OrvMutableStringRefBase2<wchar_t> &out,
                                    const OrvStringRefBase<wchar_t> &path);

/// The path with every name in it as the file system has it, in its letter case, and doubled separators
/// removed; this also holds after "\\?\D:\" and "\\?\UNC\". The root, "." and ".." stay, and so do the names
/// of a server and its share. A ".." at the root leads to the root, as in GetFullPath. After "\\?\", "." and
/// ".." have no meaning, and a path that continues after one is refused. Allocates.
///
/// Returns 0; a failure that all forms share; ORV_E_INVALID_ARGUMENT for an empty path; ORV_E_INVALID_NAME
/// for a path that contains a pattern; ORV_E_OUT_OF_MEMORY; ORV_E_FILE_NOT_FOUND or ORV_E_PATH_NOT_FOUND when
/// a name does not exist, or the converted status when it cannot be looked up. The output is then as it was.
ORV_API OrvResult GetLongPath(_ORV_UTF16CHAR_STR &out, const wchar_t *path, uint32_t length = OrvTerminated,
                              unsigned int *required = nullptr);
ORV_API OrvResult GetLongPath(OrvUtf16CharHeapBuffer &out, const wchar_t *path,
                              uint32_t length = OrvTerminated);
ORV_API OrvResult GetLongPath(const OrvMutableStringRefBase2<wchar_t> &out,
                              const OrvStringRefBase<wchar_t> &path);

/// The same, with the short name of each file or directory that has one.
ORV_API OrvResult GetAlternatePath(_ORV_UTF16CHAR_STR &out, const wchar_t *path,
                                   uint32_t length = OrvTerminated, unsigned int *required = nullptr);
ORV_API OrvResult GetAlternatePath(OrvUtf16CharHeapBuffer &out, const wchar_t *path,
                                   uint32_t length = OrvTerminated);
ORV_API OrvResult GetAlternatePath(const OrvMutableStringRefBase2<wchar_t> &out,
                                   const OrvStringRefBase<wchar_t> &path);

/// Converts a path (terminated) to the form "\\?\D:\...", in which no name, not even "CON", means a device.
/// `path` then points to the text in `buffer`. `path` is left alone when there is nothing to do: for relative
/// paths, for those that start with two separators "\\", and for one that starts with a single separator
/// while the current directory is on a server. The platform completes the path first, which resolves "/", "."
/// and "..": these have no meaning after the prefix. The path may lie in the buffer.
///
/// Beware of a ".." that leads out of the drive: it removes the drive, and the next name takes its place.
/// "C:\a\..\..\UNC\srv\x" becomes "\\?\UNC\srv\x", which is on a server; and "//srv/share" becomes
/// "\\?\srv\share", which names nothing. The library itself opens files by
/// OrvNtdll_RtlDosPathNameToNtPathName_T_EliminateDosDevice, which stays on the drive and reaches the server.
///
/// Returns 0; ORV_E_NOT_PRODUCED when the platform makes no full path; ORV_E_OUT_OF_MEMORY;
/// ORV_E_BUFFER_TOO_SMALL when the current directory grew meanwhile. On failure `path` and the buffer are as
/// they were.
ORV_API OrvResult WinEliminateDosDeviceAliasPath(const wchar_t *&path, OrvUtf16CharHeapBuffer &buffer);

/// The same into the caller's counted string, with a terminator. When there is nothing to do, the string
/// receives the path itself. Allocates.
///
/// Returns 0 and sets the length; ORV_E_BUFFER_TOO_SMALL, and `required`, which may be null, receives the
/// number of characters needed, terminator included; otherwise as the other form. On failure the string is as
/// it was.
ORV_API OrvResult WinEliminateDosDeviceAliasPathU(const wchar_t *path, _UNICODE_STRING *unicodeString,
                                                  unsigned int *required = nullptr);

/// The directory for temporary files: the first of the process's variables "TMP", "TEMP" and "USERPROFILE"
/// that is set, completed as by GetFullPath. It may not exist, and no separator is added. Variables of more
/// than 259 characters need an allocation.
///
/// Returns 0; a failure that all forms share; ORV_E_PATH_NOT_FOUND when none is set; ORV_E_NOT_PRODUCED when
/// the platform makes no full path of it.
ORV_API OrvResult GetTempDirPath(_ORV_UTF16CHAR_STR &out, unsigned int *required = nullptr);
ORV_API OrvResult GetTempDirPath(OrvUtf16CharHeapBuffer &out);
ORV_API OrvResult GetTempDirPath(const OrvMutableStringRefBase2<wchar_t> &out);

// Random names. They come from the library's generator, which starts in the same state in every process: a
// program that creates a file by such a name must expect that the name is taken. All return 0 or a failure
// that all forms share. A writable reference, though, is written piece by piece after its owner has reserved
// room, and a failure of the owner leaves the text as it was, empty, or with the first pieces.

/// 40 characters, the terminator not counted.
ORV_API uint32_t GetRandomNameSize();

/// 44 characters, the terminator not counted.
ORV_API uint32_t GetRandomTempFileNameSize();

/// "orv-" and a fresh random GUID (version 4, RFC 4122) as 36 characters.
ORV_API OrvResult GetRandomName(_ORV_UTF16CHAR_STR &out, unsigned int *required = nullptr);
ORV_API OrvResult GetRandomName(OrvUtf16CharHeapBuffer &out);
ORV_API OrvResult GetRandomName(const OrvMutableStringRefBase2<wchar_t> &out);

/// The same, followed by ".tmp". `required` receives 44, which is one too few: use GetRandomTempFileNameSize
/// plus one.
ORV_API OrvResult GetRandomTempFileName(_ORV_UTF16CHAR_STR &out, unsigned int *required = nullptr);
ORV_API OrvResult GetRandomTempFileName(OrvUtf16CharHeapBuffer &out);
ORV_API OrvResult GetRandomTempFileName(const OrvMutableStringRefBase2<wchar_t> &out);

} // namespace OrvBasPath

// Taking paths apart, putting them together, and turning them into fuller forms.
//
// Except for the full forms, which ask the platform, all of this works on the text alone: nothing is opened,
// and nothing needs to exist. "\" and "/" both separate, and "\" is what is written; texts taken over from
// the input keep their separators. No "." and ".." are resolved, but by GetFullPath.
//
// Every operation has three forms that differ in where the result goes:
//
//   a descriptor of the caller's array, whose capacity counts the terminator. When that is too small the
//     result is ORV_E_BUFFER_TOO_SMALL, the array and the length are as they were, and the capacity that is
//     needed stands in `required`, which may be null and is not written otherwise. A null array is
//     ORV_E_INVALID_ARGUMENT when there is something to write.
//   a heap buffer, which becomes as large as the result needs.
//   a writable reference, whose owner grows by its own rules.
//
// The last two return ORV_E_OUT_OF_MEMORY, or the owner's failure, and the text is then as it was; the texts
// that they are given may stand in the buffer that they write to. With a descriptor only the first text may
// stand in the array, at its start. The forms with a descriptor allocate nothing, except for the full forms
// that say so.
//
// Lengths are in characters; OrvTerminated means that the text is terminated. A null text is empty.

#pragma once

#include "orv/base.h"
#include "orv/text/heap_buffer.h"
#include "orv/text/string_ref.h"

struct _UNICODE_STRING;

/// Paths: taking them apart, putting them together, and turning them into fuller forms.
namespace OrvBasPath
{

// Roots.

/// The number of characters at the start that form the root: "D:\" and "D:", "\", "\\server\share" without
/// the separator behind it; 0 when there is none. What stands before a ":" need not be a letter. "\\?\D:\x"
/// has the root "\\?\D:".
ORV_API uint32_t GetPathRootLength(const wchar_t *path, uint32_t length = OrvTerminated);

/// Whether the path has a root.
ORV_API bool IsPathRooted(const wchar_t *path, uint32_t length = OrvTerminated);

/// The root, by GetPathRootLength. Returns 0, or as all forms do.
ORV_API OrvResult GetPathRoot(_ORV_UTF16CHAR_STR &out, const wchar_t *path, unsigned int *required = nullptr);
ORV_API OrvResult GetPathRoot(OrvUtf16CharHeapBuffer &out, const wchar_t *path);
ORV_API OrvResult GetPathRoot(const OrvMutableStringRefBase2<wchar_t> &out,
                              const OrvStringRefBase<wchar_t> &path);

/// What stands before the first ":", and ":\" behind it: "D:\".
///
/// Returns 0, or as all forms do; ORV_E_INVALID_DATA when there is no ":", and the output is the empty text.
ORV_API OrvResult GetVolumeFromPath(_ORV_UTF16CHAR_STR &out, const wchar_t *path,
                                    uint32_t length = OrvTerminated, unsigned int *required = nullptr);
ORV_API OrvResult GetVolumeFromPath(OrvUtf16CharHeapBuffer &out, const wchar_t *path,
                                    uint32_t length = OrvTerminated);
ORV_API OrvResult GetVolumeFromPath(const OrvMutableStringRefBase2<wchar_t> &out,
                                    const OrvStringRefBase<wchar_t> &path);

// Splitting. All return 0, or as all forms do.

/// Whether the name has an extension: a "." behind the last separator or ":" that is not the last character.
ORV_API bool HasExtension(const wchar_t *path, uint32_t length = OrvTerminated);

/// The text behind the last separator, which may be empty; the whole path when there is none: "D:foo" is a
/// name. A drive alone, "D:" with a letter from A to Z, has the empty name.
ORV_API OrvResult GetFilename(_ORV_UTF16CHAR_STR &out, const wchar_t *path, uint32_t length = OrvTerminated,
                              unsigned int *required = nullptr);
ORV_API OrvResult GetFilename(OrvUtf16CharHeapBuffer &out, const wchar_t *path,
                              uint32_t length = OrvTerminated);
ORV_API OrvResult GetFilename(const OrvMutableStringRefBase2<wchar_t> &out,
                              const OrvStringRefBase<wchar_t> &path);

/// The last "." of the name and what stands behind it; empty when there is no "." or nothing behind it.
ORV_API OrvResult GetFilenameExtension(_ORV_UTF16CHAR_STR &out, const wchar_t *path,
                                       uint32_t length = OrvTerminated, unsigned int *required = nullptr);
ORV_API OrvResult GetFilenameExtension(OrvUtf16CharHeapBuffer &out, const wchar_t *path,
                                       uint32_t length = OrvTerminated);
ORV_API OrvResult GetFilenameExtension(const OrvMutableStringRefBase2<wchar_t> &out,
                                       const OrvStringRefBase<wchar_t> &path);

/// The name, which starts behind the last separator or ":", up to its last ".": ".profile" gives the empty
/// text.
ORV_API OrvResult GetFilenameWithoutExtension(_ORV_UTF16CHAR_STR &out, const wchar_t *path,
                                              uint32_t length = OrvTerminated,
                                              unsigned int *required = nullptr);
ORV_API OrvResult GetFilenameWithoutExtension(OrvUtf16CharHeapBuffer &out, const wchar_t *path,
                                              uint32_t length = OrvTerminated);
ORV_API OrvResult GetFilenameWithoutExtension(const OrvMutableStringRefBase2<wchar_t> &out,
                                              const OrvStringRefBase<wchar_t> &path);

/// What stands before the last separator, less further separators there: "D:\a\\b" and "D:\a\" give "D:\a".
/// "D:\foo" gives "D:\", "\foo" gives "\", and "foo" the empty text, for which a capacity of 0 is enough;
/// `required` is set to 0 for an empty path.
ORV_API OrvResult GetDirectoryPathFromFilenamePath(_ORV_UTF16CHAR_STR &out, const wchar_t *path,
                                                   uint32_t length = OrvTerminated,
                                                   unsigned int *required = nullptr);
ORV_API OrvResult GetDirectoryPathFromFilenamePath(OrvUtf16CharHeapBuffer &out, const wchar_t *path,
                                                   uint32_t length = OrvTerminated);
ORV_API OrvResult GetDirectoryPathFromFilenamePath(const OrvMutableStringRefBase2<wchar_t> &out,
                                                   const OrvStringRefBase<wchar_t> &path);

// Joining and changing. All return 0, or as all forms do.

/// The path that `second` means when `first` is the directory that one is in: `second` itself when it is
/// absolute, and when `first` is empty; the drive of `first` and `second` when that starts at the root of a
/// drive ("D:\dir" and "\x" give "D:\x"), or `second` itself when `first` has no drive; else both with one
/// "\" between, unless `first` ends with a separator. A path is absolute when it is "D:" alone, starts with
/// "D:\", or starts with two separators.
ORV_API OrvResult CombinePaths(_ORV_UTF16CHAR_STR &out, const wchar_t *first, const wchar_t *second,
                               uint32_t firstLength = OrvTerminated, uint32_t secondLength = OrvTerminated,
                               unsigned int *required = nullptr);
ORV_API OrvResult CombinePaths(OrvUtf16CharHeapBuffer &out, const wchar_t *first, const wchar_t *second,
                               uint32_t firstLength = OrvTerminated, uint32_t secondLength = OrvTerminated);
ORV_API OrvResult CombinePaths(const OrvMutableStringRefBase2<wchar_t> &out,
                               const OrvStringRefBase<wchar_t> &first,
                               const OrvStringRefBase<wchar_t> &second);

/// Puts `part` (terminated) behind the buffer's text, with a "\" between when there is a text that does not
/// end with a separator. A separator at the start of `part` stays.
ORV_API OrvResult AppendPath(OrvUtf16CharHeapBuffer &buffer, const wchar_t *part);

/// The path with its name's extension, if it has one, replaced by another, which may be given with or without
/// its ".": "a.txt" and "" give "a.". A path that ends with a separator or ":" stays as it is. For an empty
/// path the output is not touched.
ORV_API OrvResult ChangeExtension(_ORV_UTF16CHAR_STR &out, const wchar_t *path, const wchar_t *extension,
                                  uint32_t pathLength = OrvTerminated,
                                  uint32_t extensionLength = OrvTerminated, unsigned int *required = nullptr);
ORV_API OrvResult ChangeExtension(OrvUtf16CharHeapBuffer &out, const wchar_t *path, const wchar_t *extension,
                                  uint32_t pathLength = OrvTerminated,
                                  uint32_t extensionLength = OrvTerminated);
ORV_API OrvResult ChangeExtension(const OrvMutableStringRefBase2<wchar_t> &out,
                                  const OrvStringRefBase<wchar_t> &path,
                                  const OrvStringRefBase<wchar_t> &extension);

// Full forms: these ask the platform. A path has 32,766 characters at most.

/// The path as the platform completes it: with its drive and directory, "." and ".." resolved, "/" turned
/// into "\". The array must not overlap the path. A path that is given with its length, or a result, of more
/// than 259 characters may need an allocation.
///
/// Returns 0, or as all forms do; ORV_E_NOT_PRODUCED when the platform makes none, as for an empty path, and
/// for one with a zero in it. The capacity required is the platform's count.
ORV_API OrvResult GetFullPath(_ORV_UTF16CHAR_STR &out, const wchar_t *path, uint32_t length = OrvTerminated,
                              unsigned int *required = nullptr);
ORV_API OrvResult GetFullPath(OrvUtf16CharHeapBuffer &out, const wchar_t *path,
                              uint32_t length = OrvTerminated);
ORV_API OrvResult GetFullPath(const OrvMutableStringRefBase2<wchar_t> &out,
                              const OrvStringRefBase<wchar_t> &path);

/// The path with every short name (8.3) in it replaced by the long one that the file system has for it, and
/// doubled separators removed. A name that is not found stays as it is. Allocates.
///
/// The root, by GetPathRootLength, stays as it is, and so does the "\" behind a share: "\x" and "D:x" keep
/// theirs, too, although they are not absolute. Behind the root only "\" separates: what stands between two
/// is replaced as a whole, "a/b" by the name of "b". A pattern is replaced by the first name that it matches.
///
/// Returns 0, or as all forms do; ORV_E_INVALID_ARGUMENT for an empty path; ORV_E_OUT_OF_MEMORY.
ORV_API OrvResult GetNormalizedPath(_ORV_UTF16CHAR_STR &out, const wchar_t *path,
                                    uint32_t length = OrvTerminated, unsigned int *required = nullptr);
ORV_API OrvResult GetNormalizedPath(OrvUtf16CharHeapBuffer &out, const wchar_t *path,
                                    uint32_t length = OrvTerminated);
ORV_API OrvResult GetNormalizedPath(const OrvMutableStringRefBase2<wchar_t> &out,
                                    const OrvStringRefBase<wchar_t> &path);

/// The path with every name in it as the file system has it, in its letter case, and doubled separators
/// removed, behind "\\?\D:\" and "\\?\UNC\" too; the root, "." and ".." stay, and so does what names a server
/// and its share. A ".." at the root leads to the root, as in GetFullPath; behind "\\?\", where "." and ".."
/// have no meaning, a path that goes on after one is refused. Allocates.
///
/// Returns 0, or as all forms do; ORV_E_INVALID_ARGUMENT for an empty path; ORV_E_INVALID_NAME for one with a
/// pattern in it; ORV_E_OUT_OF_MEMORY; ORV_E_FILE_NOT_FOUND or ORV_E_PATH_NOT_FOUND when a name does not
/// exist, or the converted status why it could not be looked up: the output is then as it was.
ORV_API OrvResult GetLongPath(_ORV_UTF16CHAR_STR &out, const wchar_t *path, uint32_t length = OrvTerminated,
                              unsigned int *required = nullptr);
ORV_API OrvResult GetLongPath(OrvUtf16CharHeapBuffer &out, const wchar_t *path,
                              uint32_t length = OrvTerminated);
ORV_API OrvResult GetLongPath(const OrvMutableStringRefBase2<wchar_t> &out,
                              const OrvStringRefBase<wchar_t> &path);

/// The same with the short name of each that has one.
ORV_API OrvResult GetAlternatePath(_ORV_UTF16CHAR_STR &out, const wchar_t *path,
                                   uint32_t length = OrvTerminated, unsigned int *required = nullptr);
ORV_API OrvResult GetAlternatePath(OrvUtf16CharHeapBuffer &out, const wchar_t *path,
                                   uint32_t length = OrvTerminated);
ORV_API OrvResult GetAlternatePath(const OrvMutableStringRefBase2<wchar_t> &out,
                                   const OrvStringRefBase<wchar_t> &path);

/// Turns a path (terminated) into the form "\\?\D:\...", in which no name, be it "CON", is taken for a
/// device's. `path` then points to the text in `buffer`, or is left alone when there is nothing to do: for
/// relative paths, for those that start with two separators "\\", and for one that starts with a single
/// separator while the current directory is on a server. The platform completes what it turns: "/", "." and
/// "..", which have no meaning behind the prefix, have been resolved. The path may stand in the buffer.
///
/// Beware of a ".." that leads out of the drive: it takes the drive away, and the next name comes in its
/// place. "C:\a\..\..\UNC\srv\x" becomes "\\?\UNC\srv\x", which is on a server; and "//srv/share" becomes
/// "\\?\srv\share", which is nothing. OrvNtdll_RtlDosPathNameToNtPathName_T_EliminateDosDevice, by
/// which the library opens files, stays on the drive and reaches the server.
///
/// Returns 0; ORV_E_NOT_PRODUCED when the platform makes no full path; ORV_E_OUT_OF_MEMORY;
/// ORV_E_BUFFER_TOO_SMALL when the current directory grew meanwhile. On failure `path` and the buffer are as
/// they were.
ORV_API OrvResult WinEliminateDosDeviceAliasPath(const wchar_t *&path, OrvUtf16CharHeapBuffer &buffer);

/// The same into a counted string of the caller, with a terminator; the path itself where there is nothing to
/// do. Allocates.
///
/// Returns 0 and sets the length; ORV_E_BUFFER_TOO_SMALL, and the characters that are needed with the
/// terminator in `required`, which may be null; otherwise as the other form. On failure the string is as it
/// was.
ORV_API OrvResult WinEliminateDosDeviceAliasPathU(const wchar_t *path, _UNICODE_STRING *unicodeString,
                                                  unsigned int *required = nullptr);

/// The directory for temporary files: the first that is set of the process's variables "TMP", "TEMP" and
/// "USERPROFILE", as GetFullPath completes it. It may not exist, and no separator is added. Variables of more
/// than 259 characters need an allocation.
///
/// Returns 0, or as all forms do; ORV_E_PATH_NOT_FOUND when none is set; ORV_E_NOT_PRODUCED when the platform
/// makes no full path of it.
ORV_API OrvResult GetTempDirPath(_ORV_UTF16CHAR_STR &out, unsigned int *required = nullptr);
ORV_API OrvResult GetTempDirPath(OrvUtf16CharHeapBuffer &out);
ORV_API OrvResult GetTempDirPath(const OrvMutableStringRefBase2<wchar_t> &out);

// Random names. They come from the library's generator, which starts alike in every process: a program
// that creates a file by such a name must be ready to find it taken. All return 0, or as all forms do; but
// through a reference a name is written piece by piece, once its owner has reserved room for it, and a
// failure of the owner leaves the text as it was, empty, or with the first pieces.

/// 40 characters, the terminator not counted.
ORV_API uint32_t GetRandomNameSize();

/// 44 characters, the terminator not counted.
ORV_API uint32_t GetRandomTempFileNameSize();

/// "orv-" and a fresh random GUID (version 4, RFC 4122) as 36 characters.
ORV_API OrvResult GetRandomName(_ORV_UTF16CHAR_STR &out, unsigned int *required = nullptr);
ORV_API OrvResult GetRandomName(OrvUtf16CharHeapBuffer &out);
ORV_API OrvResult GetRandomName(const OrvMutableStringRefBase2<wchar_t> &out);

/// The same and ".tmp" behind it. The capacity that is reported as required is 44, which is one too few: use
/// GetRandomTempFileNameSize plus one.
ORV_API OrvResult GetRandomTempFileName(_ORV_UTF16CHAR_STR &out, unsigned int *required = nullptr);
ORV_API OrvResult GetRandomTempFileName(OrvUtf16CharHeapBuffer &out);
ORV_API OrvResult GetRandomTempFileName(const OrvMutableStringRefBase2<wchar_t> &out);

} // namespace OrvBasPath

// The identity of a file: it distinguishes the file from every other on this system, whatever path leads to
// it.
//
// The identity is the MD5 digest (RFC 1321) of the file's volume and its number on that volume. Links, short
// names, other letter case and mapped drives give the same identity, in every process. It stays the same
// while the file exists; afterwards the file system may give it to another file.

#pragma once

#include "orv/base.h"
#include "orv/text/string_ref.h"

/// An identity. Equal bytes mean the same file.
struct OrvFileId {
    uint8_t bytes[16]; ///< the digest
};

/// Identities of files, and their text form.
namespace OrvFileIdUtils
{

/// Gets the identity of the file or directory at a terminated path. This opens the file, without any right
/// that the sharing mode of another program could refuse.
///
/// Returns 0; ORV_E_INVALID_ARGUMENT for a null or empty path; ORV_E_NOT_PRODUCED when the platform cannot
/// make a full path of it; ORV_E_FILE_NOT_FOUND or ORV_E_PATH_NOT_FOUND; ORV_E_NOT_SUPPORTED when the file
/// system gives no numbers; otherwise the converted status. On failure `id` is as it was.
ORV_API OrvResult GetId(OrvFileId &id, const wchar_t *path);

/// Writes the identity as 32 lower-case hexadecimal digits and a terminator.
///
/// Returns 0 and sets the length; ORV_E_BUFFER_TOO_SMALL when the capacity is below 33;
/// ORV_E_INVALID_ARGUMENT for a null array. On failure the descriptor and its array are as they were.
ORV_API OrvResult GetString(const OrvFileId &id, _ORV_UTF16CHAR_STR &text);

} // namespace OrvFileIdUtils

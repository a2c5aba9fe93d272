// The entries of a directory whose names match a pattern, one after another.

#pragma once

#include "fs/path_text.h"
#include "nt/nt.h"
#include "runtime/native_handle.h"

namespace detail
{

/// Neither text is terminated. Both stay valid until the next call of Next.
struct DirectoryEntry {
    PathText name;
    PathText shortName; ///< empty when the file system has none
    ULONG attributes;
};

/// Enumerates once. Only the platform limits the length of the path.
class DirectoryEnumerator
{
public:
    DirectoryEnumerator() = default;
    DirectoryEnumerator(const DirectoryEnumerator &) = delete;
    DirectoryEnumerator &operator=(const DirectoryEnumerator &) = delete;

    /// Opens the directory of `pattern`. The text after the last separator is the pattern for the names, with
    /// the wildcards "*" and "?". `pattern` must live as long as the enumerator. Returns 0 or the converted
    /// status.
    OrvResult Open(const PathText &pattern);

    /// Gives the next entry. Returns 0; ORV_E_NO_MORE_FILES after the last entry; ORV_E_FILE_NOT_FOUND when
    /// no entry matches; otherwise the converted status.
    OrvResult Next(DirectoryEntry &entry);

private:
    NativeHandle directory_;
    UNICODE_STRING pattern_ = {};
    bool isFirst_ = true;
    uint32_t next_ = 0; ///< the offset of the next entry in the buffer; 0 when it is used up
    alignas(8) uint8_t buffer_[2048];
};

} // namespace detail

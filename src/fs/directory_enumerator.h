// The entries of a directory whose names match a pattern, one after the other.

#pragma once

#include "fs/path_text.h"
#include "nt/nt.h"
#include "runtime/native_handle.h"

namespace detail
{

/// Neither text is terminated; both stay valid until the next entry is asked for.
struct DirectoryEntry {
    PathText name;
    PathText shortName; ///< empty when the file system has none
    ULONG attributes;
};

/// Enumerates once. Nothing limits the length of the path but the platform.
class DirectoryEnumerator
{
public:
    DirectoryEnumerator() = default;
    DirectoryEnumerator(const DirectoryEnumerator &) = delete;
    DirectoryEnumerator &operator=(const DirectoryEnumerator &) = delete;

    /// Opens the directory of `pattern`. What stands behind its last separator is the pattern of the names,
    /// in which "*" and "?" stand for others; it has to live as long as the enumerator. Returns 0 or the
    /// converted status.
    OrvResult Open(const PathText &pattern);

    /// Gives the next entry. Returns 0; ORV_E_NO_MORE_FILES behind the last; ORV_E_FILE_NOT_FOUND when there
    /// is none at all; otherwise the converted status.
    OrvResult Next(DirectoryEntry &entry);

private:
    NativeHandle directory_;
    UNICODE_STRING pattern_ = {};
    bool isFirst_ = true;
    uint32_t next_ = 0; ///< the offset of the next entry in the buffer; 0 when it is used up
    alignas(8) uint8_t buffer_[2048];
};

} // namespace detail

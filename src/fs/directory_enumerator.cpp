// Enumerates a directory through its handle, several entries for each native call.

#include "fs/directory_enumerator.h"

#include "fs/nt_path.h"
#include "fs/platform_text.h"
#include "orv/runtime/result.h"
#include "runtime/status.h"

namespace detail
{

OrvResult DirectoryEnumerator::Open(const PathText &pattern)
{
    uint32_t start = pattern.length;
    while (start > 0 && !EndsName(pattern[start - 1]))
        start--;
    const PathText names = pattern.From(start);
    if (!CountText(names.characters, names.length, pattern_))
        return ORV_E_INVALID_NAME;

    TerminatedText directory;
    PathPieces pieces(pattern.UpTo(start));
    if (start == 0 || pattern[start - 1] == L':')
        pieces.Add(PathText(L".", 1)); // the current directory; after "D:" that of the drive
    OrvResult result = directory.Set(pieces);
    if (OrvFailed(result))
        return result;
    NtPath path;
    result = path.Build(directory.Get());
    if (OrvFailed(result))
        return result;
    const OBJECT_ATTRIBUTES attributes = path.Attributes();
    IO_STATUS_BLOCK status = {};
    return ResultFromCall(ZwOpenFile(
        directory_.Receive(), FILE_LIST_DIRECTORY | SYNCHRONIZE, &attributes, &status, FILE_SHARE_ALL,
        FILE_DIRECTORY_FILE | FILE_SYNCHRONOUS_IO_NONALERT | FILE_OPEN_FOR_BACKUP_INTENT));
}

OrvResult DirectoryEnumerator::Next(DirectoryEntry &entry)
{
    const uint8_t *at = buffer_ + next_;
    if (next_ == 0) {
        IO_STATUS_BLOCK status = {};
        const NTSTATUS answer =
            ZwQueryDirectoryFile(directory_.Get(), nullptr, nullptr, nullptr, &status, buffer_,
                                 sizeof buffer_, FileBothDirectoryInformation, false, &pattern_, isFirst_);
        if (!NT_SUCCESS(answer))
            return answer == STATUS_NO_MORE_FILES ? ORV_E_NO_MORE_FILES : ResultFromStatus(answer);
        isFirst_ = false;
        at = buffer_;
    }
    const auto &found = *reinterpret_cast<const FILE_BOTH_DIR_INFORMATION *>(at);
    next_ = found.NextEntryOffset ? static_cast<uint32_t>(at - buffer_) + found.NextEntryOffset : 0;
    entry.name = PathText(found.FileName, found.FileNameLength / sizeof(WCHAR));
    entry.shortName = PathText(found.ShortName, static_cast<UCHAR>(found.ShortNameLength) / sizeof(WCHAR));
    entry.attributes = found.FileAttributes;
    return ORV_S_OK;
}

} // namespace detail

// Writes a file through a temporary one. The temporary file is marked for deletion from the start: the system
// removes it when its last handle is closed, however the program ends. The mark is removed only for the
// renaming.

#include "output_file.h"

#include "native_status.h"
#include "orv/text/format.h"
#include "runtime/entropy.h"

namespace orvtool
{

namespace
{

NTSTATUS Open(HANDLE &handle, UNICODE_STRING &name, ACCESS_MASK access, ULONG share, ULONG disposition,
              IO_STATUS_BLOCK &status)
{
    const OBJECT_ATTRIBUTES attributes = {sizeof attributes,    nullptr, &name,
                                          OBJ_CASE_INSENSITIVE, nullptr, nullptr};
    return NtCreateFile(&handle, access | SYNCHRONIZE, &attributes, &status, nullptr, FILE_ATTRIBUTE_NORMAL,
                        share, disposition, FILE_SYNCHRONOUS_IO_NONALERT | FILE_NON_DIRECTORY_FILE, nullptr,
                        0);
}

/// Whether the handle refers to a file on a disk of any kind, and not to another device.
bool IsOnDisk(HANDLE handle)
{
    IO_STATUS_BLOCK status;
    FILE_FS_DEVICE_INFORMATION device = {};
    if (!NT_SUCCESS(
            NtQueryVolumeInformationFile(handle, &status, &device, sizeof device, FileFsDeviceInformation)))
        return false;
    return device.DeviceType == FILE_DEVICE_DISK || device.DeviceType == FILE_DEVICE_DISK_FILE_SYSTEM ||
           device.DeviceType == FILE_DEVICE_NETWORK_FILE_SYSTEM ||
           device.DeviceType == FILE_DEVICE_VIRTUAL_DISK;
}

/// Asks `query`, which takes room, its size and where to put the size that is needed, until the room is
/// enough. Returns the size; 0, with `bytes` null, when it refuses to answer or there is no memory.
template <typename Query>
ULONG AskForBytes(detail::HeapArray<uint8_t> &bytes, Query query)
{
    ULONG size = 512;
    for (;;) {
        const ULONG room = size;
        bytes.Reset(static_cast<uint8_t *>(detail::AllocateBytes(room)));
        if (!bytes)
            return 0;
        if (NT_SUCCESS(query(bytes.Get(), room, &size)))
            return size;
        if (size <= room) {
            bytes.Reset(nullptr);
            return 0;
        }
    }
}

ULONG AskForRights(detail::HeapArray<uint8_t> &bytes, HANDLE file)
{
    return AskForBytes(bytes, [file](void *room, ULONG size, ULONG *needed) {
        return NtQuerySecurityObject(file, DACL_SECURITY_INFORMATION, room, size, needed);
    });
}

} // namespace

OutputFile::~OutputFile()
{
    if (handle_)
        ZwClose(handle_);
}

OrvResult OutputFile::Create(const wchar_t *path)
{
    UNICODE_STRING name;
    if (!RtlDosPathNameToNtPathName_U(path, &name, nullptr, nullptr))
        return ORV_E_PATH_NOT_FOUND;
    const OrvResult result = FindTarget(name);
    RtlFreeUnicodeString(&name);
    return OrvFailed(result) || handle_ ? result : CreateTemporary();
}

OrvResult OutputFile::FindTarget(UNICODE_STRING &name)
{
    // A user without the right to write to the target must not replace it either.
    constexpr ACCESS_MASK kAccess = FILE_WRITE_DATA | FILE_READ_ATTRIBUTES | READ_CONTROL;
    HANDLE target = nullptr;
    IO_STATUS_BLOCK status = {};
    NTSTATUS outcome = Open(target, name, kAccess, FILE_SHARE_ALL, FILE_OPEN, status);
    const bool isMissing = ResultOf(outcome) == ORV_E_FILE_NOT_FOUND;
    // Creates the target for a moment: only so the end of a link can be found that leads to no file yet.
    if (isMissing)
        outcome = Open(target, name, kAccess | DELETE, FILE_SHARE_ALL, FILE_OPEN_IF, status);
    if (!NT_SUCCESS(outcome))
        return ResultOf(outcome);
    if (!IsOnDisk(target)) {
        handle_ = target;
        return ORV_S_OK;
    }
    const bool isNew = isMissing && status.Information == FILE_CREATED;
    OrvResult result = isNew ? SetFate(target, Fate::kIsDeleted) : ORV_S_OK;
    if (OrvSucceeded(result))
        result = ReadTarget(target, isNew);
    ZwClose(target);
    if (OrvSucceeded(result) && target_.IsEmpty())
        result = target_.Append(name.Buffer, name.Length / sizeof(WCHAR));
    return result;
}

OrvResult OutputFile::ReadTarget(HANDLE target, bool isNew)
{
    // The opened file has the name of a link's end. If the system returns no name, the path is used.
    detail::HeapArray<uint8_t> bytes;
    const auto queryName = [target](void *room, ULONG size, ULONG *needed) {
        return NtQueryObject(target, ObjectNameInformation, room, size, needed);
    };
    if (AskForBytes(bytes, queryName)) {
        const UNICODE_STRING &name = reinterpret_cast<const OBJECT_NAME_INFORMATION *>(bytes.Get())->Name;
        const OrvResult result = target_.Append(name.Buffer, name.Length / sizeof(WCHAR));
        if (OrvFailed(result))
            return result;
    }
    if (isNew)
        return ORV_S_OK;
    rightsSize_ = AskForRights(rights_, target);
    IO_STATUS_BLOCK status;
    const OrvResult result = ResultOf(
        NtQueryInformationFile(target, &status, &attributes_, sizeof attributes_, FileBasicInformation));
    const bool isReadOnly = attributes_.FileAttributes & FILE_ATTRIBUTE_READONLY;
    return isReadOnly ? ORV_E_ACCESS_DENIED : result;
}

OrvResult OutputFile::CreateTemporary()
{
    constexpr uint32_t kAttempts = 100;
    constexpr ACCESS_MASK kAccess =
        FILE_WRITE_DATA | FILE_READ_ATTRIBUTES | FILE_WRITE_ATTRIBUTES | READ_CONTROL | WRITE_DAC | DELETE;
    uint32_t folder = target_.GetInternal().length;
    while (folder && target_[folder - 1] != L'\\')
        folder--;
    OrvUtf16CharHeapBuffer path;
    NTSTATUS outcome = STATUS_OBJECT_NAME_COLLISION;
    for (uint32_t i = 0; i < kAttempts && outcome == STATUS_OBJECT_NAME_COLLISION; i++) {
        uint64_t number = 0;
        detail::FillWithEntropy(&number, sizeof number);
        wchar_t file[32];
        OrvFormatString(OrvCodePageDefault, file, sizeof file / sizeof *file, nullptr, L"orv-%016I64x.tmp",
                        number);
        path.Resize(0);
        OrvResult result = path.Append(target_.GetValue(), folder);
        if (OrvSucceeded(result))
            result = path.Append(file);
        if (OrvFailed(result))
            return result;
        UNICODE_STRING name;
        RtlInitUnicodeString(&name, path.GetValue());
        IO_STATUS_BLOCK status;
        outcome = Open(handle_, name, kAccess, FILE_SHARE_READ, FILE_CREATE, status);
    }
    return NT_SUCCESS(outcome) ? SetFate(handle_, Fate::kIsDeleted) : ResultOf(outcome);
}

OrvResult OutputFile::Replace()
{
    if (target_.IsEmpty())
        return ORV_S_OK;
    IO_STATUS_BLOCK status;
    OrvResult result = ResultOf(NtFlushBuffersFile(handle_, &status));
    if (OrvSucceeded(result))
        result = CopyAttributes();
    if (OrvSucceeded(result))
        result = SetFate(handle_, Fate::kStays);
    if (OrvFailed(result))
        return result;
    result = Rename();
    if (OrvFailed(result))
        SetFate(handle_, Fate::kIsDeleted);
    return result;
}

OrvResult OutputFile::CopyAttributes()
{
    constexpr ULONG kSettable = FILE_ATTRIBUTE_HIDDEN | FILE_ATTRIBUTE_SYSTEM | FILE_ATTRIBUTE_ARCHIVE |
                                FILE_ATTRIBUTE_NOT_CONTENT_INDEXED;
    if (attributes_.FileAttributes == 0) // there was no target
        return ORV_S_OK;
    // Most files have the rights that their folder gives to a new file; then there is nothing to set.
    detail::HeapArray<uint8_t> rights;
    const ULONG rightsSize = AskForRights(rights, handle_);
    if (rightsSize_ && (rightsSize != rightsSize_ || memcmp(rights.Get(), rights_.Get(), rightsSize) != 0)) {
        const OrvResult result =
            ResultOf(NtSetSecurityObject(handle_, DACL_SECURITY_INFORMATION, rights_.Get()));
        if (OrvFailed(result))
            return result;
    }
    const ULONG kept = attributes_.FileAttributes & kSettable;
    const FILE_BASIC_INFORMATION wanted = {attributes_.CreationTime, 0, 0, 0,
                                           kept ? kept : FILE_ATTRIBUTE_NORMAL};
    IO_STATUS_BLOCK status;
    return ResultOf(NtSetInformationFile(handle_, &status, &wanted, sizeof wanted, FileBasicInformation));
}

OrvResult OutputFile::Rename()
{
    const uint32_t nameSize = target_.GetInternal().length * sizeof(WCHAR);
    const uint32_t size = sizeof(FILE_RENAME_INFORMATION) + nameSize;
    const detail::HeapArray<uint8_t> bytes = detail::HeapArray<uint8_t>::Allocate(size);
    if (!bytes)
        return ORV_E_OUT_OF_MEMORY;
    auto &information = *reinterpret_cast<FILE_RENAME_INFORMATION *>(bytes.Get());
    information = {true, nullptr, nameSize, {}};
    memmove(information.FileName, target_.GetValue(), nameSize);
    IO_STATUS_BLOCK status;
    return ResultOf(NtSetInformationFile(handle_, &status, &information, size, FileRenameInformation));
}

OrvResult OutputFile::SetFate(HANDLE file, Fate fate)
{
    const FILE_DISPOSITION_INFORMATION information = {static_cast<BOOLEAN>(fate)};
    IO_STATUS_BLOCK status;
    return ResultOf(
        NtSetInformationFile(file, &status, &information, sizeof information, FileDispositionInformation));
}

} // namespace orvtool

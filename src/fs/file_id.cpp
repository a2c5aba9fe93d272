// Identities of files. An identity is made of the 64-bit volume number and the 128-bit file number if the
// system has them, because the older short numbers are not unique on the largest volumes; otherwise of the
// short numbers. Every process of the system gets the same identity.

#include "orv/fs/file_id.h"

#include "crt/memory.h"
#include "fs/nt_path.h"
#include "nt/nt.h"
#include "orv/hash/md5.h"
#include "orv/runtime/result.h"
#include "orv/text/hexadecimal.h"
#include "runtime/native_handle.h"
#include "runtime/status.h"

namespace
{

/// Opens a file for its attributes only.
NTSTATUS OpenForAttributes(detail::NtPath &path, detail::NativeHandle &file)
{
    const OBJECT_ATTRIBUTES attributes = path.Attributes();
    IO_STATUS_BLOCK status = {};
    return ZwOpenFile(file.Receive(), FILE_READ_ATTRIBUTES | SYNCHRONIZE, &attributes, &status,
                      FILE_SHARE_ALL, FILE_SYNCHRONOUS_IO_NONALERT | FILE_OPEN_FOR_BACKUP_INTENT);
}

bool QueryLongNumbers(HANDLE file, FILE_ID_INFORMATION &numbers)
{
    IO_STATUS_BLOCK status = {};
    return NT_SUCCESS(NtQueryInformationFile(file, &status, &numbers, sizeof numbers, FileIdInformation));
}

NTSTATUS QueryShortNumbers(HANDLE file, FILE_ID_INFORMATION &numbers)
{
    IO_STATUS_BLOCK status = {};
    FILE_INTERNAL_INFORMATION internal = {};
    const NTSTATUS result =
        NtQueryInformationFile(file, &status, &internal, sizeof internal, FileInternalInformation);
    if (!NT_SUCCESS(result))
        return result;
    // The label of the volume is not needed here. It may be cut; then the status is a warning.
    FILE_FS_VOLUME_INFORMATION volume = {};
    const NTSTATUS volumeResult =
        NtQueryVolumeInformationFile(file, &status, &volume, sizeof volume, FileFsVolumeInformation);
    if (!NT_SUCCESS(volumeResult) && volumeResult != STATUS_BUFFER_OVERFLOW)
        return volumeResult;
    numbers = {volume.VolumeSerialNumber, {internal.IndexNumber, 0}};
    return STATUS_SUCCESS;
}

} // namespace

OrvResult OrvFileIdUtils::GetId(OrvFileId &id, const wchar_t *path)
{
    detail::NtPath nativePath;
    const OrvResult result = nativePath.Build(path);
    if (OrvFailed(result))
        return result;
    detail::NativeHandle file;
    NTSTATUS status = OpenForAttributes(nativePath, file);
    if (!NT_SUCCESS(status))
        return detail::ResultFromStatus(status);

    FILE_ID_INFORMATION numbers = {};
    if (!QueryLongNumbers(file.Get(), numbers)) {
        status = QueryShortNumbers(file.Get(), numbers);
        if (!NT_SUCCESS(status))
            return detail::ResultFromStatus(status);
    }
    if (numbers.FileId[0] == 0 && numbers.FileId[1] == 0)
        return ORV_E_NOT_SUPPORTED;

    OrvMiniHashMd5 digest;
    digest.Add(reinterpret_cast<const uint8_t *>(&numbers), sizeof numbers);
    const OrvMiniHashMd5::HashType &bytes = digest.Get();
    static_assert(sizeof id.bytes == sizeof bytes.bytes);
    memcpy(id.bytes, bytes.bytes, sizeof id.bytes);
    return ORV_S_OK;
}

OrvResult OrvFileIdUtils::GetString(const OrvFileId &id, _ORV_UTF16CHAR_STR &text)
{
    if (!text.characters)
        return ORV_E_INVALID_ARGUMENT;
    return OrvConvertBytes2HexString(text, id.bytes, sizeof id.bytes);
}

#include "output_file.h"

#include "native_status.h"
#include "nt/programs.h"

namespace orvtool
{

namespace
{

OBJECT_ATTRIBUTES AttributesOf(UNICODE_STRING &name)
{
    return {sizeof(OBJECT_ATTRIBUTES), nullptr, &name, OBJ_CASE_INSENSITIVE, nullptr, nullptr};
}

} // namespace

OutputFile::~OutputFile()
{
    if (handle_) {
        ZwClose(handle_);
        const OBJECT_ATTRIBUTES attributes = AttributesOf(name_);
        if (!isKept_)
            NtDeleteFile(&attributes);
    }
    if (name_.Buffer)
        RtlFreeUnicodeString(&name_);
}

OrvResult OutputFile::Create(const wchar_t *path)
{
    if (!RtlDosPathNameToNtPathName_U(path, &name_, nullptr, nullptr)) {
        name_ = {};
        return ORV_E_PATH_NOT_FOUND;
    }
    const OBJECT_ATTRIBUTES attributes = AttributesOf(name_);
    IO_STATUS_BLOCK status;
    return ResultOf(NtCreateFile(&handle_, GENERIC_WRITE | SYNCHRONIZE, &attributes, &status, nullptr,
                                 FILE_ATTRIBUTE_NORMAL, FILE_SHARE_READ, FILE_OVERWRITE_IF,
                                 FILE_SYNCHRONOUS_IO_NONALERT | FILE_NON_DIRECTORY_FILE, nullptr, 0));
}

} // namespace orvtool

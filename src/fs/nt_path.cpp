// Makes the native form of a path, and frees it.

#include "fs/nt_path.h"

#include "orv/fs/dos_path.h"

namespace detail
{

NtPath::~NtPath()
{
    if (native_.Buffer)
        RtlFreeUnicodeString(&native_);
}

OrvResult NtPath::Build(const WCHAR *path)
{
    return OrvNtdll_RtlDosPathNameToNtPathName_U_EliminateDosDevice(path, &native_);
}

} // namespace detail

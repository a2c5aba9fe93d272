#include "fs/nt_path.h"

#include "orv/runtime/result.h"

namespace detail
{

NtPath::~NtPath()
{
    if (native_.Buffer)
        RtlFreeUnicodeString(&native_);
}

OrvResult NtPath::Build(const WCHAR *path)
{
    if (!path || !*path)
        return ORV_E_INVALID_ARGUMENT;
    return RtlDosPathNameToNtPathName_U(path, &native_, nullptr, nullptr) ? ORV_S_OK : ORV_E_NOT_PRODUCED;
}

} // namespace detail

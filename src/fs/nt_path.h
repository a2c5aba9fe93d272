// A DOS path in its native form, as the native interface takes it.

#pragma once

#include "nt/nt.h"
#include "orv/base.h"

namespace detail
{

/// Owns the native form of a path. The platform resolves the path against the current directory. If the path
/// starts at a root, no name in it is taken for a device; in a relative path a name may be.
class NtPath
{
public:
    NtPath() = default;
    NtPath(const NtPath &) = delete;
    NtPath &operator=(const NtPath &) = delete;
    ~NtPath();

    /// Makes the native form of a terminated path. Call it once for each object. Returns as
    /// OrvNtdll_RtlDosPathNameToNtPathName_U_EliminateDosDevice.
    OrvResult Build(const WCHAR *path);

    /// Attributes for opening the path, by default in any letter case. They refer to this object.
    OBJECT_ATTRIBUTES Attributes(ULONG flags = OBJ_CASE_INSENSITIVE, PVOID securityDescriptor = nullptr)
    {
        return {sizeof(OBJECT_ATTRIBUTES), nullptr, &native_, flags, securityDescriptor, nullptr};
    }

private:
    UNICODE_STRING native_ = {};
};

} // namespace detail

// A DOS path as the native interface takes it.

#pragma once

#include "nt/nt.h"
#include "orv/base.h"

namespace detail
{

/// Owns the native form of a path, which the platform makes against the current directory. No name in it is a
/// device's when the path starts at a root; in a relative path one may be.
class NtPath
{
public:
    NtPath() = default;
    NtPath(const NtPath &) = delete;
    NtPath &operator=(const NtPath &) = delete;
    ~NtPath();

    /// Makes the native form of a terminated path; an object makes one. Returns 0, or as
    /// OrvNtdll_RtlDosPathNameToNtPathName_U_EliminateDosDevice.
    OrvResult Build(const WCHAR *path);

    /// Attributes to open the path with, in any letter case. They refer to this object.
    OBJECT_ATTRIBUTES Attributes(ULONG flags = OBJ_CASE_INSENSITIVE, PVOID securityDescriptor = nullptr)
    {
        return {sizeof(OBJECT_ATTRIBUTES), nullptr, &native_, flags, securityDescriptor, nullptr};
    }

private:
    UNICODE_STRING native_ = {};
};

} // namespace detail

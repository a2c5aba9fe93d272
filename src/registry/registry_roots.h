// The predefined keys: what they are called, and the process's one handle to each.

#pragma once

#include "nt/nt.h"
#include "orv/registry/registry_types.h"

namespace detail
{

struct RegistryRoot {
    OrvBasWinRegistryRootType type;
    const wchar_t *shortName;
    const wchar_t *longName;
    const wchar_t *objectName; ///< null: the calling user's key, which the platform finds
};

/// Null when the value is no root.
const RegistryRoot *FindRegistryRoot(OrvBasWinRegistryRootType type);

/// The root whose short or long name the text of `length` characters is, in any letter case; null when it is
/// none.
const RegistryRoot *FindRegistryRoot(const wchar_t *name, uint32_t length);

/// The handle of a root, opened on first use and kept for the life of the process. Returns 0;
/// ORV_E_INVALID_HANDLE for no root; ORV_E_INVALID_ARGUMENT for what is none; or the converted status.
OrvResult GetRegistryRootKey(OrvBasWinRegistryRootType type, HANDLE &key);

} // namespace detail

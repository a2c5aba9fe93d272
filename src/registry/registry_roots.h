// The predefined keys and their names.

#pragma once

#include "orv/registry/registry_types.h"

namespace detail
{

struct RegistryRoot {
    OrvBasWinRegistryRootType type;
    const wchar_t *shortName;
    const wchar_t *longName;
    const wchar_t *objectName; ///< null: the calling user's key, which the platform finds
};

constexpr uint32_t kRegistryRootCount = 9;

extern const RegistryRoot kRegistryRoots[kRegistryRootCount];

/// The root with this type; null when the value is not a root.
const RegistryRoot *FindRegistryRoot(OrvBasWinRegistryRootType type);

/// The root whose short or long name equals the text of `length` characters, in any letter case; null when
/// there is none.
const RegistryRoot *FindRegistryRoot(const wchar_t *name, uint32_t length);

} // namespace detail

// The predefined keys: what they are called.

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

/// Null when the value is no root.
const RegistryRoot *FindRegistryRoot(OrvBasWinRegistryRootType type);

/// The root whose short or long name the text of `length` characters is, in any letter case; null when it is
/// none.
const RegistryRoot *FindRegistryRoot(const wchar_t *name, uint32_t length);

} // namespace detail

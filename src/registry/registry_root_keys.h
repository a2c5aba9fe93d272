// The process's one handle to each predefined key.

#pragma once

#include "nt/nt.h"
#include "orv/registry/registry_types.h"

namespace detail
{

/// The handle of a root, opened on first use and kept for the life of the process. Returns 0;
/// ORV_E_INVALID_HANDLE for OrvRegistryNoRoot; ORV_E_INVALID_ARGUMENT for a value that is not a root; else
/// the converted status.
OrvResult GetRegistryRootKey(OrvBasWinRegistryRootType type, HANDLE &key);

} // namespace detail

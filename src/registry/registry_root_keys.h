// The process's one handle to each predefined key.

#pragma once

#include "nt/nt.h"
#include "orv/registry/registry_types.h"

namespace detail
{

/// The handle of a root, opened on first use and kept for the life of the process. Returns 0;
/// ORV_E_INVALID_HANDLE for no root; ORV_E_INVALID_ARGUMENT for what is none; or the converted status.
OrvResult GetRegistryRootKey(OrvBasWinRegistryRootType type, HANDLE &key);

} // namespace detail

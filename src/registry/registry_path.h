// Key paths as text: the place of the 32-bit view's path part, and the conversion of native names to root and
// path.

#pragma once

#include "orv/base.h"
#include "orv/registry/registry_types.h"
#include "orv/text/heap_buffer.h"

namespace detail
{

/// "Wow6432Node".
extern const wchar_t kWow6432Node[12];

/// The position in a key's path below `root` at which "\Wow6432Node" belongs. 0 when the path is the same in
/// both views, or already has that part. The path starts directly below the root.
uint32_t FindWow6432NodePosition(OrvBasWinRegistryRootType root, const wchar_t *path, uint32_t length);

/// Splits the native name of a key into root and path. Returns as
/// OrvBasWinRegistryHandle::SplitCurrentKeyName.
OrvResult SplitNativeKeyName(const wchar_t *name, uint32_t length, OrvBasWinRegistryRootType &root,
                             OrvUtf16CharHeapBuffer &path, uint32_t &access);

} // namespace detail

// Key paths as text: where the 32-bit view's path part goes, and native names read back.

#pragma once

#include "orv/base.h"
#include "orv/registry/registry_types.h"
#include "orv/text/heap_buffer.h"

namespace detail
{

/// "Wow6432Node".
extern const wchar_t kWow6432Node[12];

/// The position in a key's path below `root` where "\Wow6432Node" belongs; 0 when the path is the same in
/// both views, or has that part there. The path starts at the root itself.
uint32_t FindWow6432NodePosition(OrvBasWinRegistryRootType root, const wchar_t *path, uint32_t length);

/// Reads the native name of a key back. See OrvBasWinRegistryHandle::SplitCurrentKeyName, whose results these
/// are.
OrvResult SplitNativeKeyName(const wchar_t *name, uint32_t length, OrvBasWinRegistryRootType &root,
                             OrvUtf16CharHeapBuffer &path, uint32_t &access);

} // namespace detail

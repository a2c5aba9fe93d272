// What the classes of kernel objects share around their native calls.

#pragma once

#include "nt/nt.h"
#include "orv/sync/waitable.h"

namespace detail
{

constexpr OBJECT_ATTRIBUTES kUnnamedObject = {
    sizeof(OBJECT_ATTRIBUTES), nullptr, nullptr, OBJ_KERNEL_HANDLE, nullptr, nullptr,
};

/// The last step of a creation. On success the waitable owns the handle in place of its previous one, and the
/// result is 0, or ORV_S_ALREADY_EXISTS when the object existed and was opened. On failure the waitable is
/// unchanged.
OrvResult AttachCreated(OrvBasWaitable &waitable, NTSTATUS status, HANDLE handle);

} // namespace detail

// The one place where a native status becomes a result code.

#pragma once

#include "nt/nt.h"
#include "orv/runtime/result.h"

namespace detail
{

/// Converts a status that the caller did not accept as success. STATUS_SUCCESS gives 0,
/// STATUS_BUFFER_OVERFLOW the failure ORV_E_BUFFER_TOO_SMALL; any other keeps its severity (at least
/// informational) around the Win32 number that the platform gives it.
OrvResult ResultFromStatus(NTSTATUS status);

/// The common case: any success status is plain success.
inline OrvResult ResultFromCall(NTSTATUS status)
{
    return NT_SUCCESS(status) ? ORV_S_OK : ResultFromStatus(status);
}

} // namespace detail

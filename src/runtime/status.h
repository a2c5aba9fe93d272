// How the library's own files call the one conversion of a native status, OrvCreateErrorCodeFromNtStatus.

#pragma once

#include "nt/nt.h"
#include "orv/runtime/result.h"

namespace detail
{

/// OrvCreateErrorCodeFromNtStatus, out of line: it is called in many places.
OrvResult ResultFromStatus(NTSTATUS status);

/// The common case: any success status is plain success.
inline OrvResult ResultFromCall(NTSTATUS status)
{
    return NT_SUCCESS(status) ? ORV_S_OK : ResultFromStatus(status);
}

} // namespace detail

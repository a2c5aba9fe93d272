// The conversion of a native status to a result, as the library's own files call it. The conversion itself is
// OrvCreateErrorCodeFromNtStatus.

#pragma once

#include "nt/nt.h"
#include "orv/runtime/result.h"

namespace detail
{

/// Calls OrvCreateErrorCodeFromNtStatus. Not inline, because it is called in many places.
OrvResult ResultFromStatus(NTSTATUS status);

/// The common case: every success status becomes ORV_S_OK.
inline OrvResult ResultFromCall(NTSTATUS status)
{
    return NT_SUCCESS(status) ? ORV_S_OK : ResultFromStatus(status);
}

} // namespace detail

// What a native status says, as a result code.

#pragma once

#include "nt/nt.h"
#include "orv/runtime/result.h"

namespace orvtool
{

/// 0 for every success.
inline OrvResult ResultOf(NTSTATUS status)
{
    return NT_SUCCESS(status) ? ORV_S_OK : OrvCreateErrorCodeFromNtStatus(status);
}

} // namespace orvtool

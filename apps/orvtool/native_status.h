// The conversion of a native status to a result code.

#pragma once

#include "nt/nt.h"
#include "orv/runtime/result.h"

namespace orvtool
{

/// Every success becomes 0.
inline OrvResult ResultOf(NTSTATUS status)
{
    return NT_SUCCESS(status) ? ORV_S_OK : OrvCreateErrorCodeFromNtStatus(status);
}

} // namespace orvtool

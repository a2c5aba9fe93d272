// The standard streams that a process is handed.

#pragma once

#include "nt/nt.h"
#include "orv/base.h"

namespace detail
{

/// Whether the handle is that of a console, which wants its OEM page.
bool IsConsole(HANDLE stream);

/// Writes all of the bytes at the stream's position.
///
/// Returns 0; ORV_E_WRITE_FAULT when the stream takes nothing more; otherwise the converted status of
/// writing.
OrvResult WriteToStream(HANDLE stream, const char *bytes, uint32_t count);

} // namespace detail

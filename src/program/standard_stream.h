// Writing to the standard streams that a process receives at its start.

#pragma once

#include "nt/nt.h"
#include "orv/base.h"

namespace detail
{

/// Whether the handle refers to a console. A console expects text in its OEM page.
bool IsConsole(HANDLE stream);

/// Writes all of the bytes at the stream's position.
///
/// Returns 0; ORV_E_WRITE_FAULT when the stream takes no more bytes; otherwise the converted status of the
/// write.
OrvResult WriteToStream(HANDLE stream, const char *bytes, uint32_t count);

} // namespace detail

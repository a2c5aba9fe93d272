// The bytes of a file in the registry editor's text format as text.

#pragma once

#include "orv/text/heap_buffer.h"

namespace orvtool
{

/// The bytes are UTF-16, little-endian, behind a byte order mark, or else UTF-8.
///
/// Returns 0; ORV_E_INVALID_DATA when the bytes are no such text, and `line` is where; ORV_E_OUT_OF_MEMORY.
OrvResult DecodeRegFile(const char *bytes, uint32_t size, OrvUtf16CharHeapBuffer &text, uint32_t &line);

} // namespace orvtool

// The decoding of a file in the registry editor's text format: from bytes to text.

#pragma once

#include "orv/text/heap_buffer.h"

namespace orvtool
{

/// Decodes the bytes: UTF-16, little-endian, after a byte order mark; without that mark UTF-8.
///
/// Returns 0; ORV_E_INVALID_DATA when the bytes are malformed, and then `line` tells where;
/// ORV_E_OUT_OF_MEMORY.
OrvResult DecodeRegFile(const char *bytes, uint32_t size, OrvUtf16CharHeapBuffer &text, uint32_t &line);

} // namespace orvtool

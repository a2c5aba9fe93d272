// Writes all given bytes to a stream, which may take fewer at a time.

#pragma once

#include "orv/stream/stream.h"

namespace detail
{

/// Returns 0; the stream's failure; ORV_E_WRITE_FAULT for a stream that reports more bytes written than it
/// was given, or none: with such a stream the loop would never end.
inline OrvResult WriteAll(IOrvStream &stream, const uint8_t *bytes, uint32_t size)
{
    while (size) {
        uint32_t written = 0;
        const OrvResult result = stream.Write(bytes, size, written);
        if (OrvFailed(result))
            return result;
        if (written == 0 || written > size)
            return ORV_E_WRITE_FAULT;
        bytes += written;
        size -= written;
    }
    return ORV_S_OK;
}

} // namespace detail

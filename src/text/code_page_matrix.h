// The converters of the library's own pages, one for each pair of them.

#pragma once

#include "orv/base.h"
#include "orv/text/code_page.h"

namespace detail
{

/// Converts `size` bytes at `source` into at most `room` bytes at `target`, or without a target only
/// measures; `converted` is the size of the result. Nothing behind the room is written; on failure the room
/// holds anything, and `converted` is as it was.
///
/// ORV_E_BUFFER_TOO_SMALL: the room does not hold the result. ORV_E_INVALID_DATA: the source is no text in
/// its page.
typedef OrvResult (*CodePageConverter)(const uint8_t *source, uint32_t size, uint8_t *target, uint32_t room,
                                       uint64_t &converted);

/// Null where the library has none: for the pages of the platform, and for values that are no page.
CodePageConverter FindCodePageConverter(OrvCodePage from, OrvCodePage to);

} // namespace detail

// The converters of the library's own pages, one for each pair of them.

#pragma once

#include "orv/base.h"
#include "orv/text/code_page.h"

namespace detail
{

/// Converts `size` bytes at `source` into at most `room` bytes at `target`; without a target it only
/// measures. `converted` receives the size of the result. Nothing is written after the room. On failure the
/// content of the room is undefined, and `converted` is unchanged.
///
/// ORV_E_BUFFER_TOO_SMALL: the result does not fit into the room. ORV_E_INVALID_DATA: the source is not valid
/// text in its page.
typedef OrvResult (*CodePageConverter)(const uint8_t *source, uint32_t size, uint8_t *target, uint32_t room,
                                       uint64_t &converted);

/// Null when the library has no such converter: for the platform's pages, and for values that are no page.
CodePageConverter FindCodePageConverter(OrvCodePage from, OrvCodePage to);

} // namespace detail

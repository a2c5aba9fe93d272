// The operating system's version as text.

#pragma once

#include "orv/env/os_info.h"

namespace OrvEnvironment::detail
{

/// Enough characters for any facts.
constexpr uint32_t kWinVersionCapacity = 128;

/// Writes the terminated text of the version, the service pack if any, the product and the processor into
/// `capacity` characters.
///
/// Returns 0; ORV_E_BUFFER_TOO_SMALL when the text does not fit; ORV_E_INVALID_ARGUMENT for a capacity of 0.
OrvResult GetWinVersionString(const OsFacts &facts, wchar_t *text, uint32_t capacity);

} // namespace OrvEnvironment::detail

// What the library does when the loader attaches it to a process.

#pragma once

#include "orv/base.h"

namespace detail
{

/// Makes the library usable. A failure makes the load fail.
OrvResult AttachProcess();

} // namespace detail

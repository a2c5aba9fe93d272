// Making new GUIDs: unique ones, and random ones.

#pragma once

#include "orv/base.h"
#include "orv/text/guid.h"

namespace OrvGuidUtils
{

/// Makes a GUID from the time of day, a clock sequence and a node value, laid out as a version 1 UUID
/// (RFC 4122) and then combined with a fixed mask, so that neither time nor node appears in clear; version
/// and variant bits are masked too. No two calls give the same GUID, in whatever threads and processes: a
/// time is never given twice under the same sequence and node.
///
/// Time, sequence and node are the platform's, which reserves thousands of times at once: the process keeps
/// what is left of them for the calls that follow. When they are used up and the platform's clock has not
/// moved on, the call sleeps until it has, some milliseconds. Where the platform reserves none, the library
/// takes the system's clock, counts on while that stands still and changes the sequence when it is set back,
/// and draws sequence and node once for each process from the best source of entropy that there is.
///
/// Returns 0, or the converted status when the platform refuses, or has no times although its clock had 0.1 s
/// to move; the GUID is then as it was.
ORV_API OrvResult CreateGuid(_OrvGuid &guid);

/// Makes a version 4 UUID (RFC 4122) from OrvGenerateRandomBuffer. That generator starts alike in every
/// process, so such an identifier tells things apart within one process only.
///
/// Always returns 0.
ORV_API OrvResult CreateLuid(_OrvGuid &guid);

} // namespace OrvGuidUtils

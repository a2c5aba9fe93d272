// Making new GUIDs: unique ones, and random ones.

#pragma once

#include "orv/base.h"
#include "orv/text/guid.h"

namespace OrvGuidUtils
{

/// Makes a GUID from the time of day, a clock sequence and a node value, laid out as a version 1 UUID (RFC
/// 4122) and then combined with a fixed mask, which hides time and node; version and variant bits are masked
/// too. No two calls give the same GUID, in any thread or process: no time is used twice with the same
/// sequence and node.
///
/// The platform gives time, sequence and node. It reserves thousands of times at once; the process keeps the
/// rest of them for later calls. When they are used up and the platform's clock has not advanced, the call
/// sleeps until it has, for some milliseconds. Where the platform reserves no times, the library uses the
/// system's clock: it counts on while the clock does not advance, and changes the sequence when the clock is
/// set back. Sequence and node are then drawn once for each process, from the best source of entropy
/// available.
///
/// Returns 0, or the converted status when the platform refuses, or has no times although its clock had 0.1 s
/// to advance; the GUID is then as it was.
ORV_API OrvResult CreateGuid(_OrvGuid &guid);

/// Makes a version 4 UUID (RFC 4122) from OrvGenerateRandomBuffer. That generator starts in the same state in
/// every process, so such an identifier is good only within one process.
///
/// Always returns 0.
ORV_API OrvResult CreateLuid(_OrvGuid &guid);

} // namespace OrvGuidUtils

// Preparing the environment of the process for queries.

#pragma once

#include "orv/base.h"

/// Facts about the system, the machine and the environment of the process, and their preparation.
namespace OrvEnvironment
{

/// Makes sure that the process has what environment queries read: its parameters, and the block of variables
/// that these refer to. Loading the library does this, and so does OrvInitializeSysMini, so a caller seldom
/// has to. It may be repeated, and nothing has to be released afterwards.
///
/// Returns 0, or ORV_E_OBJECT_NOT_FOUND when the process was started without parameters.
ORV_API OrvResult InitializeEnvironment();

} // namespace OrvEnvironment

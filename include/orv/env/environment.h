// The set-up of what the library knows about the environment of its process.

#pragma once

#include "orv/base.h"

/// Facts about the system and the machine, and the set-up of what is known of them.
namespace OrvEnvironment
{

/// Makes sure that the process has what environment queries read: its parameters, with the block of variables
/// behind them. The library's load does this and OrvInitializeSysMini does it too, so a caller seldom has to.
/// It may be repeated and takes nothing that would have to be given back.
///
/// Returns 0, or ORV_E_OBJECT_NOT_FOUND when the process was started without parameters.
ORV_API OrvResult InitializeEnvironment();

} // namespace OrvEnvironment

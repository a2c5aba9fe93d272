// Constructors and destructors of static objects, in a program without a C runtime.

#pragma once

namespace detail
{

/// Runs the constructors, in the order of the linker: within a file from top to bottom.
void ConstructStaticObjects();

/// Runs what was handed to atexit, the last first; what is handed over meanwhile, too. Destructors are.
void DestroyStaticObjects();

} // namespace detail

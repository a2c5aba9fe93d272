// Constructors and destructors of static objects, in a program without a C runtime.

#pragma once

namespace detail
{

/// Runs the constructors, in the linker's order: within a file from top to bottom.
void ConstructStaticObjects();

/// Runs the functions registered with atexit, destructors among them, the last registered first; also those
/// that are registered meanwhile.
void DestroyStaticObjects();

} // namespace detail

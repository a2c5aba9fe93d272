// What the library does when the loader tells it of a process or a thread.

#pragma once

#include "orv/base.h"

namespace detail
{

/// The work of the compiler's runtime around the library's own.
struct RuntimeWork {
    OrvResult (*attachProcess)(); ///< makes the static objects
    void (*attachThread)();
    void (*detachThread)();
    void (*detachProcess)(); ///< ends the static objects
    void (*terminate)();     ///< after everything else, also when attaching failed
};

/// Makes the library usable. When it fails, which makes the load fail, all that was done is undone.
OrvResult AttachProcess(const RuntimeWork &runtime);

void AttachThread(const RuntimeWork &runtime);
void DetachThread(const RuntimeWork &runtime);

/// Why the library is detached.
enum class Detaching {
    kModule, ///< it is unloaded, and the process goes on
    kProcess ///< the process ends: all other threads are gone already, wherever they were
};

/// Gives back what AttachProcess took; does nothing unless that succeeded. At the end of the process nothing
/// is given back and no lock is taken: its holder may be among the threads that are gone, and the system
/// takes everything back.
void DetachProcess(const RuntimeWork &runtime, Detaching detaching);

} // namespace detail

// What the library does when the loader attaches it to a process or a thread, or detaches it.

#pragma once

#include "orv/base.h"

namespace detail
{

/// The compiler runtime's part of the work, as calls between the library's own steps.
struct RuntimeWork {
    OrvResult (*attachProcess)(); ///< constructs the static objects
    void (*attachThread)();
    void (*detachThread)();
    void (*detachProcess)(); ///< destroys the static objects
    void (*terminate)();     ///< after everything else, also when attaching failed
};

/// Makes the library usable. On failure everything that was done is undone, and the load fails.
OrvResult AttachProcess(const RuntimeWork &runtime);

void AttachThread(const RuntimeWork &runtime);
void DetachThread(const RuntimeWork &runtime);

/// Why the library is detached.
enum class Detaching {
    kModule, ///< the module is unloaded, and the process goes on
    kProcess ///< the process ends: all other threads have already been ended, at any point of their code
};

/// Releases what AttachProcess acquired; does nothing unless that succeeded. At the end of the process it
/// releases nothing and takes no lock: the lock's holder may be one of the ended threads, and the system
/// releases everything.
void DetachProcess(const RuntimeWork &runtime, Detaching detaching);

} // namespace detail

// Where named kernel objects are placed.

#pragma once

#include "orv/base.h"

/// For the classes that take a name. The base directory is "\BaseNamedObjects" in session 0 and
/// "\Sessions\N\BaseNamedObjects" in any other session N.
enum OrvBasWinSyncObjectNameSpace : uint32_t {
    OrvBasWinSyncGlobal = 0,  ///< "Global\" in the base directory: shared by all sessions
    OrvBasWinSyncSession = 1, ///< the base directory: the caller's session
    OrvBasWinSyncLibrary = 2, ///< "\OrvObjects", which someone else must have created
};

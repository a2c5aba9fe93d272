// Start-up and teardown by hand, for components that use the library without its load-time entry.
//
// When the loader attaches orvsys.dll to a process, all of this has happened. Start-ups are counted and only
// the first one does anything; every one is paired with a teardown, which lowers the count and releases
// nothing: what was found out about the system holds until the process ends.

#pragma once

#include "orv/base.h"

/// Counts a start-up. The first one fills the tables of optional entry points and records the facts about
/// the machine (OrvEnvironment::MachineInfo) and the operating system (OrvEnvironment::OsInfo). Any number of
/// threads may call it at once.
///
/// Returns 0; ORV_E_OBJECT_NOT_FOUND when the thread has no environment block; otherwise the converted status
/// of what the system refused to tell. The start-up counts even then, and is to be paired with
/// InternalDestroyOrvSysDll.
ORV_API OrvResult InternalInitializeOrvSysDll();

/// Takes one start-up back; does nothing when there is none.
ORV_API void InternalDestroyOrvSysDll();

/// InternalInitializeOrvSysDll, then OrvEnvironment::InitializeEnvironment. Pair it with OrvDestroySysMini.
///
/// Returns 0 or the failure of the first, which has counted all the same; when the second fails, its failure,
/// and the start-up has been taken back already.
ORV_API OrvResult OrvInitializeSysMini();

/// InternalDestroyOrvSysDll.
ORV_API void OrvDestroySysMini();

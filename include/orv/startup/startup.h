// Start-up and teardown by hand, for components that use the library without its load-time entry.
//
// When the loader attaches orvsys.dll to a process, all of this has been done. Start-ups are counted, and
// only the first one does anything. Each start-up needs a teardown, which lowers the count and releases
// nothing: the facts about the system are kept until the process ends.

#pragma once

#include "orv/base.h"

/// Counts a start-up. The first one fills the tables of optional entry points and records the facts about
/// the machine (OrvEnvironment::MachineInfo) and the operating system (OrvEnvironment::OsInfo). Any number of
/// threads may call it at once.
///
/// Returns 0; ORV_E_OBJECT_NOT_FOUND when the thread has no environment block; otherwise the converted status
/// of a query that the system refused. The start-up counts even then, and needs a call of
/// InternalDestroyOrvSysDll.
ORV_API OrvResult InternalInitializeOrvSysDll();

/// Undoes one start-up; does nothing when there is none.
ORV_API void InternalDestroyOrvSysDll();

/// InternalInitializeOrvSysDll, then OrvEnvironment::InitializeEnvironment. Each call needs one of
/// OrvDestroySysMini.
///
/// Returns 0; the failure of the first, which counts all the same; or the failure of the second, and then the
/// start-up has been undone already.
ORV_API OrvResult OrvInitializeSysMini();

/// InternalDestroyOrvSysDll.
ORV_API void OrvDestroySysMini();

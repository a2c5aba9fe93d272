// Announcing threads to the Windows subsystem server, as systems before Windows 8 expect it of whoever starts
// threads beneath their kernel32.dll.

#pragma once

#include "nt/nt.h"

namespace detail
{

/// Whether threads are announced where that is a matter of choice.
void EnableSubsystemRegistration(bool enabled);

/// Announces the thread where the system takes announcements, and the switch allows it. The thread runs
/// without one too, so there is no result.
void RegisterWithSubsystem(HANDLE thread, const CLIENT_ID &clientId);

} // namespace detail

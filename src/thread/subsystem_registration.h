// Announces threads to the Windows subsystem server. Systems before Windows 8 expect this of code that starts
// threads without kernel32.dll.

#pragma once

#include "nt/nt.h"

namespace detail
{

/// Sets whether threads are announced on systems where that is optional.
void EnableSubsystemRegistration(bool enabled);

/// Announces the thread if the system takes announcements and the switch above allows it. There is no result,
/// because the thread also runs without an announcement.
void RegisterWithSubsystem(HANDLE thread, const CLIENT_ID &clientId);

} // namespace detail

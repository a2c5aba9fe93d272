// The two ways in which a thread is announced to the subsystem server. A 32-bit process on a 64-bit Windows
// XP or Windows Server 2003 calls the service of the 64-bit side that makes the announcement, with the same
// arguments. Any other process sends the message to the server itself.

#include "thread/subsystem_registration.h"

#include "nt/teb.h"
#include "orv/env/os_info.h"
#include "orv/runtime/ntdll_entry_points.h"
#include "runtime/optional_functions.h"

namespace detail
{

namespace
{

volatile bool isEnabled; // one byte that is only ever stored and loaded

/// A message to the server: first the part that the transport fills in, then the arguments.
struct CreateThreadMessage {
    uint8_t transport[40];
    HANDLE thread;
    CLIENT_ID clientId;
};
constexpr ULONG kArgumentSize = sizeof(CreateThreadMessage) - offsetof(CreateThreadMessage, thread);
static_assert(kArgumentSize == 12);

constexpr ULONG kCreateThreadApi = 0x10001;

void SendToServer(HANDLE thread, const CLIENT_ID &clientId)
{
    // Later systems need no announcement and may lack the function.
    const auto callServer = optional::CsrClientCallServer();
    if (!callServer)
        return;
    CreateThreadMessage message = {{}, thread, clientId};
    callServer(&message, nullptr, kCreateThreadApi, kArgumentSize);
}

/// The service's calling convention: its number in eax, 0 (no shortcut) in ecx, the address of the arguments
/// in edx.
__attribute__((naked)) NTSTATUS NTAPI CallSixtyFourBitService(HANDLE, HANDLE, HANDLE)
{
    __asm__("movl $0x300A, %eax\n\t"
            "xorl %ecx, %ecx\n\t"
            "leal 4(%esp), %edx\n\t"
            "calll *%fs:0xC0\n\t"
            "retl $12");
}

bool IsWindowsXpOr2003()
{
    return OrvEnvironment::OsInfo::IsAtLeast(5, 1) && !OrvEnvironment::OsInfo::IsAtLeast(6, 0);
}

} // namespace

void EnableSubsystemRegistration(bool enabled)
{
    isEnabled = enabled;
}

void RegisterWithSubsystem(HANDLE thread, const CLIENT_ID &clientId)
{
    if (IsWindowsXpOr2003() && OrvIsWOW64Process()) {
        if (NtCurrentTeb()->WOW32Reserved)
            CallSixtyFourBitService(thread, clientId.UniqueProcess, clientId.UniqueThread);
    } else if (isEnabled && !OrvEnvironment::OsInfo::IsAtLeast(6, 2)) {
        SendToServer(thread, clientId);
    }
}

} // namespace detail

// The entry of a program without a C runtime: it sets the stack cookie, splits the command line, runs the
// constructors, OrvMain and the destructors, and ends the process.

#include "crt/static_objects.h"
#include "nt/programs.h"
#include "nt/teb.h"
#include "orv/program/program.h"
#include "program/command_line.h"

extern "C" uintptr_t __security_cookie;

namespace
{

/// The stack cookie as it is in a module's file. It keeps this value when the loader is too old to set one.
constexpr uintptr_t kCookieOfTheFile = 0xBB40E64E;

/// Makes a cookie from clocks and addresses, for loaders that set none.
uintptr_t DrawCookie()
{
    LONGLONG counter = 0;
    NtQueryPerformanceCounter(&counter, nullptr);
    const uint64_t time = ReadSharedTime(SharedUserData().SystemTime);
    const auto mix = static_cast<uintptr_t>(counter ^ counter >> 32 ^ time ^ time >> 32) * 0x9E3779B1;
    return mix ^ CurrentThreadId() ^ reinterpret_cast<uintptr_t>(&counter);
}

/// Ends the other threads, then notifies the DLLs, as in every process that ends in good order, then ends the
/// process.
[[noreturn]] void EndProcess(NTSTATUS exitCode)
{
    NtTerminateProcess(nullptr, exitCode);
    LdrShutdownProcess();
    NtTerminateProcess(NtCurrentProcess(), exitCode);
    __builtin_trap();
}

int RunProgram(int argc, wchar_t **argv)
{
    detail::ConstructStaticObjects();
    const int exitCode = OrvMain(argc, argv);
    detail::DestroyStaticObjects();
    return exitCode;
}

/// Ends the process itself: until then threads of the program's may read the arguments.
[[noreturn]] void RunProcess()
{
    const RTL_USER_PROCESS_PARAMETERS &parameters =
        *RtlNormalizeProcessParams(NtCurrentPeb()->ProcessParameters);
    if (parameters.CommandLine.Length == 0) {
        wchar_t *image[] = {parameters.ImagePathName.Buffer, nullptr};
        EndProcess(RunProgram(1, image));
    }
    const detail::CommandLine line(parameters.CommandLine.Buffer,
                                   parameters.CommandLine.Length / sizeof(wchar_t));
    EndProcess(line.IsValid() ? RunProgram(static_cast<int>(line.Count()), line.Arguments())
                              : STATUS_NO_MEMORY);
}

} // namespace

extern "C" {

// This function has no cookie check of its own, because it changes the cookie.
[[noreturn]] __attribute__((no_stack_protector)) void __cdecl mainCRTStartup()
{
    if (__security_cookie == kCookieOfTheFile)
        __security_cookie = DrawCookie();
    RunProcess();
}

[[noreturn]] void __cdecl WinMainCRTStartup()
{
    mainCRTStartup();
}

[[noreturn]] void NTAPI NtProcessStartup(PEB *)
{
    mainCRTStartup();
}

} // extern "C"

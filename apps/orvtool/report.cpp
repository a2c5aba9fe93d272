// The messages of all commands about usage and results.

#include "command.h"

#include "orv/runtime/result_name.h"

namespace orvtool
{

namespace
{

void PrintNamedResult(Stream &stream, OrvResult result)
{
    const wchar_t *const name = OrvGetResultName(result);
    stream.Print(name ? L"0x%08X (%s)\n" : L"0x%08X\n", result, name);
}

/// Whether a write failed because the reader has closed the pipe.
bool IsClosedPipe(OrvResult result)
{
    constexpr uint32_t kBrokenPipe = 109;
    constexpr uint32_t kNoData = 232;
    constexpr uint32_t kPipeNotConnected = 233;
    uint32_t win32Error = 0;
    return OrvCreateWin32CodeFromErrorCode(win32Error, result) &&
           (win32Error == kBrokenPipe || win32Error == kNoData || win32Error == kPipeNotConnected);
}

} // namespace

const wchar_t kExitCodes[] = L"\n"
                             L"Exit codes: 0 success, 1 failed, 2 wrong usage, 3 timed out.\n";

ExitCode PrintHelp(const Command &command, Console &console)
{
    console.out.Print(L"%s%s", command.help, kExitCodes);
    return kExitSuccess;
}

void PrintResult(Console &console, const wchar_t *action, OrvResult result)
{
    console.out.Print(L"%s: ", action);
    PrintNamedResult(console.out, result);
}

ExitCode UsageError(const Command &command, Console &console, const wchar_t *problem, const wchar_t *what)
{
    console.error.Print(what ? L"orvtool %s: %s '%s'" : L"orvtool %s: %s", command.name, problem, what);
    console.error.Print(L". See 'orvtool %s --help'.\n", command.name);
    return kExitUsage;
}

ExitCode UnwantedArgument(const Command &command, Console &console, const ArgumentReader &arguments)
{
    return UsageError(command, console,
                      arguments.IsAtOption() ? L"there is no option" : L"one argument too many:",
                      arguments.Peek());
}

ExitCode WrongValue(const Command &command, Console &console, const wchar_t *option, const wchar_t *value)
{
    if (!value)
        return UsageError(command, console, L"a value is missing behind", option);
    uint32_t length = 0;
    while (option[length] && option[length] != L'=')
        length++;
    console.error.Print(L"orvtool %s: '%s' is no value for '%.*s'. See 'orvtool %s --help'.\n", command.name,
                        value, length, option, command.name);
    return kExitUsage;
}

ExitCode ReportFailure(const Command &command, Console &console, const wchar_t *action, OrvResult result,
                       const wchar_t *what)
{
    console.error.Print(what ? L"orvtool %s: %s '%s' failed: " : L"orvtool %s: %s failed: ", command.name,
                        action, what);
    PrintNamedResult(console.error, result);
    return result == ORV_W_TIMEOUT ? kExitTimedOut : kExitFailed;
}

ExitCode FinishOutput(Console &console, ExitCode code)
{
    const OrvResult result = console.out.Flush();
    if (OrvSucceeded(result))
        return code;
    if (!IsClosedPipe(result)) {
        console.error.Print(L"orvtool: writing to standard output failed: ");
        PrintNamedResult(console.error, result);
    }
    return code == kExitSuccess ? kExitFailed : code;
}

} // namespace orvtool

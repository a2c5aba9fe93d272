// What commands say about usage and results.

#include "command.h"

#include "orv/runtime/result.h"

namespace orvtool
{

namespace
{

struct NamedResult {
    OrvResult result;
    const wchar_t *name;
};

#define NAMED(constant)                                                                                      \
    {                                                                                                        \
        constant, L## #constant                                                                              \
    }

constexpr NamedResult kNamedResults[] = {
    NAMED(ORV_S_OK),
    NAMED(ORV_E_OUT_OF_MEMORY),
    NAMED(ORV_E_INVALID_ARGUMENT),
    NAMED(ORV_E_FIELD_OUT_OF_RANGE),
    NAMED(ORV_E_NOT_OWNER),
    NAMED(ORV_E_KEY_NOT_FOUND),
    NAMED(ORV_E_VALUE_TYPE),
    NAMED(ORV_E_NOT_PRODUCED),
    NAMED(ORV_E_GUID_TEXT),
    NAMED(ORV_E_VIEW_ROOT),
    NAMED(ORV_E_VIEW_NOT_SUPPORTED),
    NAMED(ORV_E_NOT_PROVIDED),
    NAMED(ORV_E_FILE_NOT_FOUND),
    NAMED(ORV_E_PATH_NOT_FOUND),
    NAMED(ORV_E_INVALID_HANDLE),
    NAMED(ORV_E_EMPTY),
    NAMED(ORV_E_NOT_EMPTY),
    NAMED(ORV_E_READ_FAULT),
    NAMED(ORV_E_WRITE_FAULT),
    NAMED(ORV_E_BUFFER_TOO_SMALL),
    NAMED(ORV_E_INVALID_DATA),
    NAMED(ORV_E_NO_MORE_FILES),
    NAMED(ORV_E_DUPLICATE_NAME),
    NAMED(ORV_E_UNSUPPORTED_TYPE),
    NAMED(ORV_E_BAD_LENGTH),
    NAMED(ORV_E_CHECKSUM),
    NAMED(ORV_E_INVALID_NAME),
    NAMED(ORV_E_OBJECT_NOT_FOUND),
    NAMED(ORV_E_INVALID_ADDRESS),
    NAMED(ORV_E_INVALID_ACCESS),
    NAMED(ORV_E_ALREADY_EXISTS),
    NAMED(ORV_E_NEGATIVE_SEEK),
    NAMED(ORV_E_NO_ACCESS),
    NAMED(ORV_E_SHARING_VIOLATION),
    NAMED(ORV_E_NOT_SUPPORTED),
    NAMED(ORV_E_INVALID_OPERATION),
    NAMED(ORV_E_INVALID_FUNCTION),
    NAMED(ORV_E_ABORTED),
    NAMED(ORV_E_ACCESS_DENIED),
    NAMED(ORV_E_TIME_OUT_OF_RANGE),
    NAMED(ORV_E_DURATION_OUT_OF_RANGE),
    NAMED(ORV_E_INVALID_STATE),
    NAMED(ORV_E_THREAD_RUNNING),
    NAMED(ORV_E_DISK_FULL),
    NAMED(ORV_E_NOT_TERMINATED),
    NAMED(ORV_E_END_OF_DATA),
    NAMED(ORV_E_CONNECTION_REFUSED),
    NAMED(ORV_W_TIMEOUT),
    NAMED(ORV_W_STILL_ACTIVE),
    NAMED(ORV_W_NEGATIVE_DURATION),
    NAMED(ORV_S_ABANDONED),
    NAMED(ORV_S_OBJECT_NOT_FOUND),
    NAMED(ORV_S_ALREADY_EXISTS),
    NAMED(ORV_S_NOT_SUPPORTED),
    NAMED(ORV_S_END_OF_TIME),
    NAMED(ORV_S_NOT_SET),
    NAMED(ORV_S_END_OF_DATA),
};

#undef NAMED

void PrintNamedResult(Stream &stream, OrvResult result)
{
    const wchar_t *const name = NameOfResult(result);
    stream.Print(name ? L"0x%08X (%s)\n" : L"0x%08X\n", result, name);
}

/// Whether a write failed because the reader of a pipe has gone.
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

const wchar_t *NameOfResult(OrvResult result)
{
    for (const NamedResult &named : kNamedResults) {
        if (named.result == result)
            return named.name;
    }
    return nullptr;
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

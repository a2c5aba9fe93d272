// What a command is, and what all commands share: exit codes, usage errors, and reports of failed results.

#pragma once

#include "command_line.h"
#include "console.h"

namespace orvtool
{

enum ExitCode : int {
    kExitSuccess = 0,
    kExitFailed = 1,
    kExitUsage = 2,
    kExitTimedOut = 3,
};

struct Command {
    const wchar_t *name;
    const wchar_t *summary; ///< one line
    const wchar_t *help;    ///< what --help prints
    ExitCode (*run)(const Command &command, Console &console, ArgumentReader &arguments);
    bool readsHelp = false; ///< looks for --help itself: some arguments belong to another program
};

extern const Command kInfoCommand;
extern const Command kResultCommand;
extern const Command kEventCommand;
extern const Command kMutexCommand;
extern const Command kSemaphoreCommand;
extern const Command kLockCommand;
extern const Command kShmCommand;
extern const Command kPathCommand;
extern const Command kRegCommand;
extern const Command kBase64Command;
extern const Command kGuidCommand;
extern const Command kMatchCommand;
extern const Command kNumberCommand;
extern const Command kRandomCommand;
extern const Command kConvertCommand;
extern const Command kHashCommand;
extern const Command kDeflateCommand;
extern const Command kInflateCommand;
extern const Command kBzip2Command;
extern const Command kBunzip2Command;
extern const Command kXmlCommand;
extern const Command kTimeCommand;

/// Prints the help text of a command. Always returns kExitSuccess.
ExitCode PrintHelp(const Command &command, Console &console);

/// The last lines of every help text.
extern const wchar_t kExitCodes[];

/// Prints on standard error what is wrong with the arguments and how to get help. `what` may be null.
ExitCode UsageError(const Command &command, Console &console, const wchar_t *problem, const wchar_t *what);

/// The same for the next argument, which is not allowed there.
ExitCode UnwantedArgument(const Command &command, Console &console, const ArgumentReader &arguments);

/// The same for the value of an option; null when the value is missing. `option` is the argument as the user
/// wrote it, with or without "=VALUE".
ExitCode WrongValue(const Command &command, Console &console, const wchar_t *option, const wchar_t *value);

/// Prints on standard error what failed and with which result. Returns the exit code for that. `what`, such
/// as the name of a file, may be null.
ExitCode ReportFailure(const Command &command, Console &console, const wchar_t *action, OrvResult result,
                       const wchar_t *what = nullptr);

/// Flushes standard output at the end of the program. If not all of it could be written, prints why on
/// standard error: no command does that itself. A closed pipe is not reported, because its reader wants no
/// more. Returns `code`, or kExitFailed in place of a success when something was not written.
ExitCode FinishOutput(Console &console, ExitCode code);

/// Prints a line "action: 0x6001004F (ORV_S_ALREADY_EXISTS)" on standard output.
void PrintResult(Console &console, const wchar_t *action, OrvResult result);

} // namespace orvtool

// What a command is, and the words that all commands share: exit codes, usage errors, failed results.

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
    bool readsHelp = false; ///< looks for --help itself, since arguments of another program are among its own
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

/// Prints what --help says of a command. Always kExitSuccess.
ExitCode PrintHelp(const Command &command, Console &console);

/// The last lines of every help text.
extern const wchar_t kExitCodes[];

/// Says on standard error what is wrong with the arguments and where help is. `what` may be null.
ExitCode UsageError(const Command &command, Console &console, const wchar_t *problem, const wchar_t *what);

/// The same of the argument that stands next and has no place there.
ExitCode UnwantedArgument(const Command &command, Console &console, const ArgumentReader &arguments);

/// The same of an option's value, null when there is none. `option` is as it stands there, with "=VALUE" or
/// not.
ExitCode WrongValue(const Command &command, Console &console, const wchar_t *option, const wchar_t *value);

/// Says on standard error what failed and with which result, and gives the exit code for it. `what`, such as
/// a file's name, may be null.
ExitCode ReportFailure(const Command &command, Console &console, const wchar_t *action, OrvResult result,
                       const wchar_t *what = nullptr);

/// Flushes standard output at the end of the program, and says on standard error why not all of it could be
/// written: no command says that itself. Nobody misses what a closed pipe did not take, so that this is not
/// said. Returns `code`, or kExitFailed in place of a success when something was not written.
ExitCode FinishOutput(Console &console, ExitCode code);

/// A line "action: 0x6001004F (ORV_S_ALREADY_EXISTS)" on standard output.
void PrintResult(Console &console, const wchar_t *action, OrvResult result);

} // namespace orvtool

// What the commands for named objects share: their options, and how a step is reported.

#pragma once

#include "command.h"

#include "orv/sync/object_name_space.h"

namespace orvtool
{

/// The arguments behind an action. Every command reads all options and refuses those that it does not know.
struct ObjectOptions {
    const wchar_t *action = nullptr;
    const wchar_t *name = nullptr;
    OrvBasWinSyncObjectNameSpace nameSpace = OrvBasWinSyncSession;
    int timeoutMs = -1;
    int holdMs = 0;
    uint32_t count = 1;
    uint32_t maximum = 0x7FFFFFFF;
    bool manual = false;
    bool set = false;
    bool wait = false;
};

/// Reads "ACTION NAME" and the options. `allowed` names the options that the command has, blank-separated.
/// kExitSuccess when all is well; otherwise the error has been reported.
ExitCode ReadObjectOptions(const Command &command, Console &console, ArgumentReader &arguments,
                           const wchar_t *allowed, ObjectOptions &options);

/// Prints the result of a step and gives the exit code that it leads to.
ExitCode ReportStep(const Command &command, Console &console, const wchar_t *action, OrvResult result);

/// Keeps what the caller holds for so long.
void Hold(Console &console, int milliseconds);

/// The help texts' common part.
#define ORVTOOL_OBJECT_OPTIONS                                                                               \
    L"  --namespace global|session|orv   where the name lives (session)\n"                                   \
    L"  --timeout MS                     how long to wait (for ever)\n"                                      \
    L"  --hold MS                        keep the object open for so long before ending (0)\n"

} // namespace orvtool

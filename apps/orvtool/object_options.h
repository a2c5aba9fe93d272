// What the commands for named objects share: their options, and how a step is reported.

#pragma once

#include "command.h"

#include "orv/sync/object_name_space.h"

namespace orvtool
{

/// The arguments after an action. Every command reads all options and refuses those that it does not have.
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

/// Reads "ACTION NAME" and the options. `allowed` lists the options that the command has, separated by
/// blanks. Returns kExitSuccess, or reports the error.
ExitCode ReadObjectOptions(const Command &command, Console &console, ArgumentReader &arguments,
                           const wchar_t *allowed, ObjectOptions &options);

/// Prints the result of a step and returns its exit code.
ExitCode ReportStep(const Command &command, Console &console, const wchar_t *action, OrvResult result);

/// Waits for this long, while the caller holds its object.
void Hold(Console &console, int milliseconds);

/// The help texts' common part.
#define ORVTOOL_OBJECT_OPTIONS                                                                               \
    L"  --namespace global|session|orv   where the name lives (session)\n"                                   \
    L"  --timeout MS                     how long to wait (for ever)\n"                                      \
    L"  --hold MS                        how long to keep the object open before ending (0)\n"

} // namespace orvtool

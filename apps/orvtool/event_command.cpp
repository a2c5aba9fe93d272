// orvtool event: creates, opens, sets and waits for named events.

#include "object_options.h"

#include "orv/runtime/result.h"
#include "orv/sync/win_event.h"

namespace orvtool
{

namespace
{

ExitCode Run(const Command &command, Console &console, ArgumentReader &arguments)
{
    ObjectOptions options;
    const ExitCode usage = ReadObjectOptions(command, console, arguments,
                                             L"--namespace --timeout --hold --manual --set --wait", options);
    if (usage != kExitSuccess)
        return usage;

    const bool create = Equal(options.action, L"create");
    const bool wait = Equal(options.action, L"wait");
    const bool set = Equal(options.action, L"set");
    const bool reset = Equal(options.action, L"reset");
    if (!create && !wait && !set && !reset)
        return UsageError(command, console, L"there is no action", options.action);
    if (!create && (options.manual || options.set || options.wait))
        return UsageError(command, console, L"--manual, --set and --wait belong to create, not to",
                          options.action);

    OrvBasWinEvent event;
    ExitCode code =
        create ? ReportStep(command, console, L"create",
                            event.Create(options.manual ? OrvBasEvent::ManualReset : OrvBasEvent::AutoReset,
                                         false, options.name, options.nameSpace, nullptr))
               : ReportStep(command, console, L"open",
                            event.Open(options.name, options.nameSpace, OrvWinEventAllAccess));
    if (code == kExitSuccess && (set || options.set))
        code = ReportStep(command, console, L"set", event.Set());
    if (code == kExitSuccess && reset)
        code = ReportStep(command, console, L"reset", event.Reset());
    if (code == kExitSuccess && (wait || options.wait)) {
        console.out.Flush();
        code = ReportStep(command, console, L"wait", event.Wait(options.timeoutMs));
    }
    if (code == kExitSuccess)
        Hold(console, options.holdMs);
    return code;
}

} // namespace

const Command kEventCommand = {
    L"event",
    L"creates, opens, sets and waits for named events",
    L"Usage: orvtool event create NAME [--manual] [--set] [--wait] [OPTION...]\n"
    L"       orvtool event wait|set|reset NAME [OPTION...]\n"
    L"\n"
    L"create makes the event, or opens the one that exists (0x6001004F); the others open one that exists.\n"
    L"Each step prints its result code. An object lives as long as a process has it open.\n"
    L"\n"
    L"  --manual                         stays set until it is reset (create)\n"
    L"  --set                            set it after opening it (create)\n"
    L"  --wait                           then wait for it (create)\n" ORVTOOL_OBJECT_OPTIONS,
    Run,
};

} // namespace orvtool

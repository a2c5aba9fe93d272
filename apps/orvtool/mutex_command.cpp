// orvtool mutex: creates and acquires named mutexes.

#include "object_options.h"

#include "orv/runtime/result.h"
#include "orv/sync/win_mutex.h"

namespace orvtool
{

namespace
{

ExitCode Run(const Command &command, Console &console, ArgumentReader &arguments)
{
    ObjectOptions options;
    const ExitCode usage =
        ReadObjectOptions(command, console, arguments, L"--namespace --timeout --hold", options);
    if (usage != kExitSuccess)
        return usage;

    const bool create = Equal(options.action, L"create");
    const bool acquire = Equal(options.action, L"acquire");
    if (!create && !acquire)
        return UsageError(command, console, L"there is no action", options.action);

    OrvBasWinMutex mutex;
    ExitCode code = ReportStep(command, console, L"create",
                               mutex.Create(false, options.name, options.nameSpace, nullptr));
    if (code != kExitSuccess)
        return code;
    if (acquire) {
        console.out.Flush();
        code = ReportStep(command, console, L"acquire", mutex.Acquire(options.timeoutMs));
        if (code != kExitSuccess)
            return code;
    }
    Hold(console, options.holdMs);
    return acquire ? ReportStep(command, console, L"release", mutex.Release()) : code;
}

} // namespace

const Command kMutexCommand = {
    L"mutex",
    L"creates and acquires named mutexes",
    L"Usage: orvtool mutex create NAME [OPTION...]\n"
    L"       orvtool mutex acquire NAME [OPTION...]\n"
    L"\n"
    L"Both make the mutex, or open the one that exists (0x6001004F). acquire then takes it, keeps it for as "
    L"long\n"
    L"as --hold says, and releases it. A mutex whose owner ended without releasing it is acquired with "
    L"0x60010003.\n"
    L"Each step prints its result code.\n"
    L"\n" ORVTOOL_OBJECT_OPTIONS,
    Run,
};

} // namespace orvtool

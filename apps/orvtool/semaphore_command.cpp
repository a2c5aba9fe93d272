// orvtool semaphore: creates, releases and waits for named semaphores.

#include "object_options.h"

#include "orv/runtime/result.h"
#include "orv/sync/win_semaphore.h"

namespace orvtool
{

namespace
{

ExitCode Run(const Command &command, Console &console, ArgumentReader &arguments)
{
    ObjectOptions options;
    const ExitCode usage = ReadObjectOptions(command, console, arguments,
                                             L"--namespace --timeout --hold --count --maximum", options);
    if (usage != kExitSuccess)
        return usage;

    const bool create = Equal(options.action, L"create");
    const bool wait = Equal(options.action, L"wait");
    const bool release = Equal(options.action, L"release");
    if (!create && !wait && !release)
        return UsageError(command, console, L"there is no action", options.action);

    OrvBasWinSemaphore semaphore;
    const auto count = static_cast<int>(options.count);
    ExitCode code =
        create ? ReportStep(command, console, L"create",
                            semaphore.Create(count, static_cast<int>(options.maximum), options.name,
                                             options.nameSpace, nullptr))
               : ReportStep(command, console, L"open",
                            semaphore.Open(options.name, options.nameSpace, OrvWinSemaphoreAllAccess));
    if (code == kExitSuccess && release)
        code = ReportStep(command, console, L"release", semaphore.Release(count));
    if (code == kExitSuccess && wait) {
        console.out.Flush();
        code = ReportStep(command, console, L"wait", semaphore.Wait(options.timeoutMs));
    }
    if (code == kExitSuccess)
        Hold(console, options.holdMs);
    return code;
}

} // namespace

const Command kSemaphoreCommand = {
    L"semaphore",
    L"creates, releases and waits for named semaphores",
    L"Usage: orvtool semaphore create NAME [--count N] [--maximum N] [OPTION...]\n"
    L"       orvtool semaphore release NAME [--count N] [OPTION...]\n"
    L"       orvtool semaphore wait NAME [OPTION...]\n"
    L"\n"
    L"create makes the semaphore, or opens the one that exists (0x6001004F); the others open one that "
    L"exists.\n"
    L"release adds to its count, wait subtracts one. Each step prints its result code.\n"
    L"\n"
    L"  --count N                        the initial count, or how many to release (1)\n"
    L"  --maximum N                      the largest count (2147483647)\n" ORVTOOL_OBJECT_OPTIONS,
    Run,
};

} // namespace orvtool

// orvtool random: prints numbers from the library's generator.

#include "command.h"

#include "orv/random/random.h"

namespace orvtool
{

namespace
{

ExitCode Run(const Command &command, Console &console, ArgumentReader &arguments)
{
    uint32_t count = 1;
    while (!arguments.IsAtEnd()) {
        bool isCount = false;
        if (!TakeCount(arguments, count, isCount))
            return UsageError(command, console,
                              L"a count, a number from 0 to 4294967295, must stand behind -n", nullptr);
        if (!isCount)
            return UnwantedArgument(command, console, arguments);
    }
    while (count && OrvSucceeded(console.out.Print(L"%u\n", OrvGenerateRandomDWord())))
        count--;
    return count ? kExitFailed : kExitSuccess;
}

} // namespace

const Command kRandomCommand = {
    L"random",
    L"draws numbers from the library's generator",
    L"Usage: orvtool random [-n COUNT]\n"
    L"\n"
    L"Prints COUNT numbers (1) below 2^31. The generator starts with the same state in every process, so "
    L"the\n"
    L"numbers are the same each time.\n",
    Run,
};

} // namespace orvtool

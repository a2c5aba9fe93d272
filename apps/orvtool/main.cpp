// orvtool: the reference program of the library, a console program that needs only ntdll.dll and orvsys.dll.

#include "command.h"
#include "library_versions.h"

#include "nt/teb.h"
#include "orv/program/program.h"
#include "orv/version.h"

namespace orvtool
{

namespace
{

const Command *const kCommands[] = {
    &kInfoCommand,   &kResultCommand, &kEventCommand,   &kMutexCommand, &kSemaphoreCommand, &kLockCommand,
    &kShmCommand,    &kBase64Command, &kBunzip2Command, &kBzip2Command, &kConvertCommand,   &kDeflateCommand,
    &kGuidCommand,   &kHashCommand,   &kInflateCommand, &kMatchCommand, &kNumberCommand,    &kPathCommand,
    &kRandomCommand, &kRegCommand,    &kTimeCommand,    &kXmlCommand,
};

void PrintOverview(Stream &stream)
{
    stream.Print(L"Usage: orvtool COMMAND [ARGUMENT...]\n"
                 L"       orvtool help [COMMAND...]\n"
                 L"       orvtool --help | --version\n"
                 L"\n"
                 L"Commands:\n");
    for (const Command *command : kCommands)
        stream.Print(L"  %-10s %s\n", command->name, command->summary);
    stream.Print(L"%s", kExitCodes);
}

const Command *FindCommand(const wchar_t *name)
{
    for (const Command *command : kCommands) {
        if (Equal(command->name, name))
            return command;
    }
    return nullptr;
}

ExitCode ReportUnknownCommand(Console &console, const wchar_t *name)
{
    console.error.Print(L"orvtool: there is no command '%s'. See 'orvtool --help'.\n", name);
    return kExitUsage;
}

ExitCode ReportUnknownOption(Console &console, const wchar_t *option)
{
    console.error.Print(L"orvtool: there is no option '%s' before a command. See 'orvtool --help'.\n",
                        option);
    return kExitUsage;
}

/// Whether --help is among the options.
bool AsksForHelp(ArgumentReader arguments)
{
    while (!arguments.IsAtEnd()) {
        if (arguments.TakeOption(L"--help", L"-h"))
            return true;
        arguments.Take();
    }
    return false;
}

/// Prints the overview, or the help text of each named command.
ExitCode PrintHelp(Console &console, ArgumentReader &arguments)
{
    if (arguments.IsAtEnd() || AsksForHelp(arguments) || Equal(arguments.Peek(), L"help")) {
        PrintOverview(console.out);
        return kExitSuccess;
    }
    while (const wchar_t *const name = arguments.Take()) {
        const Command *const command = FindCommand(name);
        if (!command)
            return ReportUnknownCommand(console, name);
        console.out.Print(L"%s%s", command->help, arguments.IsAtEnd() ? kExitCodes : L"\n");
    }
    return kExitSuccess;
}

ExitCode Run(Console &console, ArgumentReader arguments)
{
    if (arguments.IsAtEnd()) {
        PrintOverview(console.error);
        return kExitUsage;
    }
    if (arguments.TakeOption(L"--version")) {
        console.out.Print(L"orvtool %u.%u.%u\n%s", OrvVersionMajor, OrvVersionMinor, OrvVersionPatch,
                          ORV_LIBRARY_VERSIONS);
        return kExitSuccess;
    }
    if (arguments.TakeOption(L"--help", L"-h"))
        return PrintHelp(console, arguments);
    if (arguments.IsAtOption())
        return ReportUnknownOption(console, arguments.Peek());
    const wchar_t *const name = arguments.Take();
    if (!name || Equal(name, L"help"))
        return PrintHelp(console, arguments);
    const Command *const command = FindCommand(name);
    if (!command)
        return ReportUnknownCommand(console, name);
    return !command->readsHelp && AsksForHelp(arguments) ? PrintHelp(*command, console)
                                                         : command->run(*command, console, arguments);
}

ExitCode RunWithStreams(ArgumentReader arguments)
{
    const RTL_USER_PROCESS_PARAMETERS &parameters = *NtCurrentPeb()->ProcessParameters;
    Stream out(parameters.StandardOutput);
    Stream error(parameters.StandardError);
    Console console = {out, error};
    return FinishOutput(console, Run(console, arguments));
}

} // namespace

} // namespace orvtool

int OrvMain(int argc, wchar_t **argv)
{
    return orvtool::RunWithStreams(orvtool::ArgumentReader(argv + 1, static_cast<uint32_t>(argc) - 1));
}

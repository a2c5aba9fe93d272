// orvtool guid: makes GUIDs.

#include "command.h"

#include "orv/random/create_guid.h"

namespace orvtool
{

namespace
{

ExitCode Run(const Command &command, Console &console, ArgumentReader &arguments)
{
    uint32_t count = 1;
    bool isRandom = false;
    while (!arguments.IsAtEnd()) {
        bool isCount = false;
        if (!TakeCount(arguments, count, isCount))
            return UsageError(command, console,
                              L"a count, a number from 0 to 4294967295, must stand behind -n", nullptr);
        if (arguments.TakeOption(L"--random"))
            isRandom = true;
        else if (!isCount)
            return UnwantedArgument(command, console, arguments);
    }
    for (; count; count--) {
        _OrvGuid guid;
        OrvResult result = isRandom ? OrvGuidUtils::CreateLuid(guid) : OrvGuidUtils::CreateGuid(guid);
        wchar_t room[40];
        _ORV_UTF16CHAR_STR text = {0, sizeof room / sizeof room[0], room};
        if (OrvSucceeded(result))
            result = OrvGuidUtils::GetString(guid, text);
        if (OrvFailed(result))
            return ReportFailure(command, console, L"making a GUID", result);
        if (OrvFailed(console.out.Print(L"%s\n", room)))
            return kExitFailed;
    }
    return kExitSuccess;
}

} // namespace

const Command kGuidCommand = {
    L"guid",
    L"makes GUIDs",
    L"Usage: orvtool guid [-n COUNT] [--random]\n"
    L"\n"
    L"Prints COUNT GUIDs (1) that no other call gives.\n"
    L"\n"
    L"  --random   random ones; the library's generator gives the same in every process\n",
    Run,
};

} // namespace orvtool

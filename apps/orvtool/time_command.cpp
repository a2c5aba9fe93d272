// orvtool time: prints the current time, and converts times from one form to another.

#include "command.h"
#include "time_forms.h"

#include "orv/runtime/result.h"
#include "orv/time/clock.h"

namespace orvtool
{

namespace
{

ExitCode PrintNow(const Command &command, Console &console, ArgumentReader &arguments)
{
    bool isUtc = true;
    while (!arguments.IsAtEnd()) {
        if (arguments.TakeOption(L"--utc"))
            isUtc = true;
        else if (arguments.TakeOption(L"--local"))
            isUtc = false;
        else
            return UnwantedArgument(command, console, arguments);
    }
    OrvTime time = 0;
    OrvResult result = isUtc ? OrvGetSystemTime(time) : OrvGetLocalTime(time);
    if (OrvSucceeded(result))
        result = PrintIsoTime(console.out, time, isUtc);
    return OrvFailed(result) ? ReportFailure(command, console, L"reading the clock", result) : kExitSuccess;
}

ExitCode Convert(const Command &command, Console &console, ArgumentReader &arguments)
{
    const wchar_t *from = L"iso";
    const wchar_t *to = L"iso";
    const wchar_t *text = nullptr;
    while (!arguments.IsAtEnd()) {
        if (arguments.TakeValueOption(L"--from", from) || arguments.TakeValueOption(L"--to", to))
            continue;
        if (arguments.IsAtOption() && !IsNegativeNumber(arguments.Peek()))
            return UnwantedArgument(command, console, arguments);
        const wchar_t *const argument = arguments.Take();
        if (argument && text)
            return UsageError(command, console, L"one argument too many:", argument);
        text = argument ? argument : text;
    }
    const TimeForm *const source = from ? FindTimeForm(from) : nullptr;
    const TimeForm *const target = to ? FindTimeForm(to) : nullptr;
    if (!source || !target)
        return UsageError(command, console, L"there is no form",
                          source ? (to ? to : L"") : (from ? from : L""));
    if (!text)
        return UsageError(command, console, L"a value is missing", nullptr);
    OrvTime time = 0;
    OrvResult result = ORV_S_OK;
    switch (source->parse(text, time, result)) {
    case TimeParse::kNotOfThisForm:
        return UsageError(command, console, L"the value is not of the form that --from says:", text);
    case TimeParse::kRefused:
        return ReportFailure(command, console, L"converting", result, text);
    case TimeParse::kDone:
        break;
    }
    if (time == OrvTimeEnd) {
        console.error.Print(
            L"orvtool time: '%s' is the end marker: it stands for no time, and has no other form\n", text);
        return kExitFailed;
    }
    result = target->print(console.out, time);
    return OrvFailed(result) ? ReportFailure(command, console, L"converting to", result, target->name)
                             : kExitSuccess;
}

ExitCode Run(const Command &command, Console &console, ArgumentReader &arguments)
{
    const bool converts = Equal(arguments.Peek(), L"convert");
    if (!converts)
        return PrintNow(command, console, arguments);
    arguments.Take();
    return Convert(command, console, arguments);
}

} // namespace

const Command kTimeCommand = {
    L"time",
    L"prints the time, and converts times",
    L"Usage: orvtool time [--utc] [--local]\n"
    L"       orvtool time convert VALUE [--from FORM] [--to FORM]\n"
    L"\n"
    L"Prints the current time, in UTC unless --local is given. convert prints VALUE in another form; "
    L"without\n"
    L"--from or --to that form is iso. FORM is one of\n"
    L"\n"
    L"  iso        2026-11-21T09:10:11.123456700Z; read without the Z it is local time\n"
    L"  orvtime    100-ns intervals since 1601, decimal, or hexadecimal after 0x\n"
    L"  filetime   the same in hexadecimal halves, 01DC5A8B:3F2A1B00; also read as one number after 0x\n"
    L"  unix       whole seconds since 1970\n"
    L"  variant    days since 1899-12-30\n"
    L"  dos        date and time of MS-DOS in hexadecimal, 5D75:4945; no zone is applied\n"
    L"\n"
    L"A time that a form cannot express is refused, and so is 0xFFFFFFFFFFFFFFFF, the library's mark for no\n"
    L"time.\n",
    Run,
};

} // namespace orvtool

// orvtool result: prints the parts of result codes.

#include "command.h"

#include "orv/runtime/result_name.h"

namespace orvtool
{

namespace
{

constexpr const wchar_t *kSeverities[] = {L"success", L"informational", L"warning", L"error"};

void Explain(Stream &out, OrvResult result)
{
    const auto bits = static_cast<uint32_t>(result);
    const uint32_t severity = bits >> 30;
    const wchar_t *const name = OrvGetResultName(result);
    out.Print(L"0x%08X  %s\n", bits, name ? name : L"(no name)");
    out.Print(L"  severity  %u, %s: %s\n", severity, kSeverities[severity],
              OrvFailed(result) ? L"a failure" : L"not a failure");
    const uint32_t facility = bits >> 16 & 0xFFF;
    out.Print(L"  facility  %u%s\n", facility,
              facility == 7    ? L", a Win32 error number"
              : bits >> 29 & 1 ? L", a code of the library's own"
                               : L"");
    out.Print(L"  code      0x%04X (%u)\n", bits & 0xFFFF, bits & 0xFFFF);
    uint32_t win32Error = 0;
    if (OrvCreateWin32CodeFromErrorCode(win32Error, result))
        out.Print(L"  Win32     %u\n", win32Error);
    else
        out.Print(L"  Win32     none\n");
}

ExitCode Run(const Command &command, Console &console, ArgumentReader &arguments)
{
    if (arguments.IsAtEnd())
        return UsageError(command, console, L"a result code is missing", nullptr);
    while (!arguments.IsAtEnd()) {
        if (arguments.IsAtOption() && !IsNegativeNumber(arguments.Peek()))
            return UnwantedArgument(command, console, arguments);
        const wchar_t *const text = arguments.Take();
        uint32_t number = 0;
        if (!text || !ParseNumber(text, number))
            return UsageError(command, console, L"this is no 32-bit number:", text ? text : L"");
        Explain(console.out, static_cast<OrvResult>(number));
    }
    return kExitSuccess;
}

} // namespace

const Command kResultCommand = {
    L"result",
    L"takes a result code apart",
    L"Usage: orvtool result CODE...\n"
    L"\n"
    L"Prints the parts of each result code, its name, and the Win32 error number that it corresponds to.\n"
    L"CODE is hexadecimal after 0x, or decimal: 0xE0010002 and -536805374 are the same.\n",
    Run,
};

} // namespace orvtool

// orvtool number: reads numbers.

#include "command.h"
#include "input.h"

#include "orv/text/number.h"

namespace orvtool
{

namespace
{

/// Prints the number. If the text is not a number, reports that and returns false. `line` is 0 for an
/// argument.
bool PrintNumber(Console &console, const wchar_t *text, int radix, uint32_t line)
{
    __int64 value = 0;
    const wchar_t *end = nullptr;
    const bool isNumber =
        *text && OrvSucceeded(OrvConvertString2Number(value, text, OrvTerminated, radix, &end));
    if (isNumber) {
        console.out.Print(L"%I64d 0x%I64X\n", value, value);
        return true;
    }
    const auto offset = static_cast<uint32_t>(end ? end - text : 0);
    if (line)
        console.error.Print(L"orvtool number: line %u is no number at offset %u: '%s'\n", line, offset, text);
    else
        console.error.Print(L"orvtool number: this is no number at offset %u: '%s'\n", offset, text);
    return false;
}

ExitCode Run(const Command &command, Console &console, ArgumentReader &arguments)
{
    constexpr uint32_t kMostRadix = 36;
    uint32_t radix = 0;
    uint32_t texts = 0;
    for (ArgumentReader options = arguments; !options.IsAtEnd();) {
        const wchar_t *value = nullptr;
        const wchar_t *const shown = options.Peek();
        if (!options.TakeValueOption(L"--radix", value)) {
            if (options.IsAtOption() && shown[1] == L'-') // "-5" is a number, not an option
                return UsageError(command, console, L"there is no option", shown);
            texts += options.Take() != nullptr;
        } else if (!value || !ParseNumber(value, radix) || radix == 1 || radix > kMostRadix)
            return UsageError(command, console, L"the radix is 2 to 36, or 0, not", value ? value : L"");
    }
    const auto print = [&console, radix](const wchar_t *text, uint32_t line) {
        return PrintNumber(console, text, static_cast<int>(radix), line);
    };
    if (texts == 0)
        return ForEachLine(command, console, print) ? kExitSuccess : kExitFailed;
    while (!arguments.IsAtEnd()) {
        const wchar_t *value = nullptr;
        if (arguments.TakeValueOption(L"--radix", value))
            continue;
        const wchar_t *const text = arguments.Take();
        if (text && !print(text, 0))
            return kExitFailed;
    }
    return kExitSuccess;
}

} // namespace

const Command kNumberCommand = {
    L"number",
    L"reads numbers",
    L"Usage: orvtool number [--radix RADIX] [TEXT...]\n"
    L"\n"
    L"Reads each TEXT, or without TEXT each line of standard input, as a 64-bit number, and prints it in\n"
    L"decimal and hexadecimal. Stops at the first text that is not a number, and prints the offset of the\n"
    L"fault.\n"
    L"\n"
    L"  --radix RADIX   2 to 36; 0, the default, means decimal, or hexadecimal after 0x\n",
    Run,
};

} // namespace orvtool

// Reads the options of the commands for named objects.

#include "object_options.h"

#include "orv/runtime/result.h"
#include "orv/sync/event.h"
#include "orv/text/string.h"

namespace orvtool
{

namespace
{

bool ParseNameSpace(const wchar_t *text, OrvBasWinSyncObjectNameSpace &nameSpace)
{
    struct {
        const wchar_t *name;
        OrvBasWinSyncObjectNameSpace value;
    } const names[] = {
        {L"global", OrvBasWinSyncGlobal},
        {L"session", OrvBasWinSyncSession},
        {L"orv", OrvBasWinSyncLibrary},
    };
    for (const auto &candidate : names) {
        if (OrvCompareString(text, candidate.name) == 0) {
            nameSpace = candidate.value;
            return true;
        }
    }
    return false;
}

/// Whether the option, up to an equals sign, is one of the blank-separated words.
bool IsAllowed(const wchar_t *words, const wchar_t *option)
{
    const uint32_t whole = OrvGetStringSizeInElements(option);
    const wchar_t *const equals = OrvFindElement(option, L'=', whole);
    const uint32_t length = equals ? static_cast<uint32_t>(equals - option) : whole;
    for (;;) {
        const wchar_t *const blank = OrvFindElement(words, L' ', OrvTerminated);
        const uint32_t wordLength =
            blank ? static_cast<uint32_t>(blank - words) : OrvGetStringSizeInElements(words);
        if (OrvCompareString(words, option, wordLength, length) == 0)
            return true;
        if (!blank)
            return false;
        words = blank + 1;
    }
}

/// Reads a number of milliseconds or objects that fits a positive int.
bool ParsePositive(const wchar_t *text, uint32_t &number)
{
    return ParseNumber(text, number) && number <= 0x7FFFFFFF && *text != L'-';
}

} // namespace

ExitCode ReadObjectOptions(const Command &command, Console &console, ArgumentReader &arguments,
                           const wchar_t *allowed, ObjectOptions &options)
{
    while (!arguments.IsAtEnd()) {
        const wchar_t *const shown = arguments.Peek();
        if (!arguments.IsAtOption()) {
            const wchar_t *const argument = arguments.Take();
            if (!argument)
                break;
            const wchar_t *&place = options.action ? options.name : options.action;
            if (place)
                return UsageError(command, console, L"one argument too many:", argument);
            place = argument;
            continue;
        }
        if (!IsAllowed(allowed, shown))
            return UsageError(command, console, L"there is no option", shown);
        const wchar_t *value = L"";
        uint32_t number = 0;
        bool understood = true;
        if (arguments.TakeOption(L"--manual")) {
            options.manual = true;
        } else if (arguments.TakeOption(L"--set")) {
            options.set = true;
        } else if (arguments.TakeOption(L"--wait")) {
            options.wait = true;
        } else if (arguments.TakeValueOption(L"--namespace", value)) {
            understood = value && ParseNameSpace(value, options.nameSpace);
        } else if (arguments.TakeValueOption(L"--timeout", value)) {
            understood = value && ParsePositive(value, number);
            options.timeoutMs = static_cast<int>(number);
        } else if (arguments.TakeValueOption(L"--hold", value)) {
            understood = value && ParsePositive(value, number);
            options.holdMs = static_cast<int>(number);
        } else if (arguments.TakeValueOption(L"--count", value)) {
            understood = value && ParsePositive(value, options.count);
        } else if (arguments.TakeValueOption(L"--maximum", value)) {
            understood = value && ParsePositive(value, options.maximum);
        } else {
            return UsageError(command, console, L"there is no option", shown);
        }
        if (!understood)
            return WrongValue(command, console, shown, value);
    }
    if (!options.action)
        return UsageError(command, console, L"an action is missing", nullptr);
    if (!options.name)
        return UsageError(command, console, L"a name is missing behind", options.action);
    return kExitSuccess;
}

ExitCode ReportStep(const Command &command, Console &console, const wchar_t *action, OrvResult result)
{
    PrintResult(console, action, result);
    return OrvFailed(result) ? ReportFailure(command, console, action, result) : kExitSuccess;
}

void Hold(Console &console, int milliseconds)
{
    if (milliseconds == 0)
        return;
    console.out.Flush();
    OrvBasEvent never;
    if (OrvSucceeded(never.Create(OrvBasEvent::ManualReset, false)))
        never.Wait(milliseconds);
}

} // namespace orvtool

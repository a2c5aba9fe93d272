// orvtool match: prints the names that match a pattern.

#include "command.h"
#include "input.h"

#include "orv/text/wildcard.h"

namespace orvtool
{

namespace
{

/// Prints the names that match, and records whether there was one.
class Matcher
{
public:
    Matcher(Stream &out, const wchar_t *pattern, bool ignoresCase)
        : out_(out), pattern_(pattern),
          matches_(ignoresCase ? OrvBasMatchWildcardsNoCase : OrvBasMatchWildcards)
    {
    }

    void Try(const wchar_t *name)
    {
        bool matches = false;
        matches_(matches, pattern_, name);
        if (matches)
            out_.Print(L"%s\n", name);
        any_ = any_ || matches;
    }

    ExitCode Outcome() const { return any_ ? kExitSuccess : kExitFailed; }

private:
    Stream &out_;
    const wchar_t *pattern_;
    decltype(&OrvBasMatchWildcards) matches_;
    bool any_ = false;
};

ExitCode Run(const Command &command, Console &console, ArgumentReader &arguments)
{
    bool ignoresCase = false;
    while (arguments.IsAtOption()) {
        if (!arguments.TakeOption(L"-i", L"--ignore-case"))
            return UnwantedArgument(command, console, arguments);
        ignoresCase = true;
    }
    const wchar_t *const pattern = arguments.Take();
    if (!pattern)
        return UsageError(command, console, L"a pattern is missing", nullptr);
    Matcher matcher(console.out, pattern, ignoresCase);
    if (!arguments.IsAtEnd()) {
        while (const wchar_t *const name = arguments.Take())
            matcher.Try(name);
        return matcher.Outcome();
    }
    return ForEachLine(command, console,
                       [&matcher](const wchar_t *line, uint32_t) {
                           matcher.Try(line);
                           return true;
                       })
               ? matcher.Outcome()
               : kExitFailed;
}

} // namespace

const Command kMatchCommand = {
    L"match",
    L"prints the names that match a pattern",
    L"Usage: orvtool match [-i] PATTERN [NAME...]\n"
    L"\n"
    L"Prints each NAME that matches PATTERN; without NAME each matching line of standard input. In PATTERN "
    L"*\n"
    L"matches any run of characters, ? one character. '*' and '*.*' match everything. Exit code 1 when\n"
    L"nothing matches.\n"
    L"\n"
    L"  -i, --ignore-case   without regard to case\n",
    Run,
};

} // namespace orvtool

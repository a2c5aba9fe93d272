// orvtool path: splits, joins and completes paths.

#include "command.h"

#include "orv/fs/path.h"

namespace orvtool
{

namespace
{

typedef OrvResult (*Operation)(OrvUtf16CharHeapBuffer &out, const wchar_t *path, uint32_t length);

struct Action {
    const wchar_t *name;
    Operation operation;
};

OrvResult Root(OrvUtf16CharHeapBuffer &out, const wchar_t *path, uint32_t)
{
    return OrvBasPath::GetPathRoot(out, path);
}

ExitCode Print(const Command &command, Console &console, const wchar_t *action, OrvResult result,
               const OrvUtf16CharHeapBuffer &text)
{
    if (OrvFailed(result))
        return ReportFailure(command, console, action, result);
    console.out.Print(L"%s\n", text.GetValue());
    return kExitSuccess;
}

ExitCode Run(const Command &command, Console &console, ArgumentReader &arguments)
{
    const Action kActions[] = {
        {L"root", Root},
        {L"directory", OrvBasPath::GetDirectoryPathFromFilenamePath},
        {L"name", OrvBasPath::GetFilename},
        {L"extension", OrvBasPath::GetFilenameExtension},
        {L"base", OrvBasPath::GetFilenameWithoutExtension},
        {L"full", OrvBasPath::GetFullPath},
        {L"normalized", OrvBasPath::GetNormalizedPath},
        {L"long", OrvBasPath::GetLongPath},
        {L"short", OrvBasPath::GetAlternatePath},
    };
    if (arguments.IsAtOption())
        return UnwantedArgument(command, console, arguments);
    const wchar_t *const action = arguments.Take();
    if (!action)
        return UsageError(command, console, L"an action is missing", nullptr);
    const wchar_t *const path = arguments.Take();
    const wchar_t *const other = arguments.Take();
    if (const wchar_t *const more = arguments.Take())
        return UsageError(command, console, L"one argument too many:", more);

    OrvUtf16CharHeapBuffer out;
    if (Equal(action, L"temp")) {
        if (path)
            return UsageError(command, console, L"one argument too many:", path);
        return Print(command, console, action, OrvBasPath::GetTempDirPath(out), out);
    }
    const bool combines = Equal(action, L"combine");
    const Action *found = nullptr;
    for (const Action &each : kActions) {
        if (Equal(each.name, action))
            found = &each;
    }
    if (!found && !combines)
        return UsageError(command, console, L"there is no action", action);
    if (!path || (combines && !other))
        return UsageError(command, console, L"a path is missing behind", path ? path : action);
    if (combines)
        return Print(command, console, action, OrvBasPath::CombinePaths(out, path, other), out);
    if (other)
        return UsageError(command, console, L"one argument too many:", other);
    return Print(command, console, action, found->operation(out, path, OrvTerminated), out);
}

} // namespace

const Command kPathCommand = {
    L"path",
    L"takes paths apart, joins and completes them",
    L"Usage: orvtool path ACTION PATH\n"
    L"       orvtool path combine DIRECTORY PATH\n"
    L"       orvtool path temp\n"
    L"\n"
    L"  root, directory, name, base, extension  that part of the path, as text; nothing needs to exist\n"
    L"  combine     what PATH means in DIRECTORY, as text\n"
    L"  full        with drive and directory, without . and ..\n"
    L"  normalized  with long names in place of short ones that exist\n"
    L"  long, short with every name as the file system has it; all must exist\n"
    L"  temp        the directory for temporary files, by TMP, TEMP or USERPROFILE\n",
    Run,
};

} // namespace orvtool

// Runs another program, and quotes the arguments for its command line.

#include "child_process.h"

#include "nt/programs.h"
#include "nt/teb.h"
#include "orv/runtime/kernel32_entry_points.h"
#include "orv/runtime/result.h"
#include "orv/sync/handle_waitable.h"

namespace orvtool
{

OrvResult AppendArgument(OrvUtf16CharHeapBuffer &line, const wchar_t *argument)
{
    OrvResult result = line.IsEmpty() ? ORV_S_OK : line.Append(L' ');
    bool mustQuote = !*argument;
    for (const wchar_t *next = argument; *next; next++)
        mustQuote = mustQuote || *next == L' ' || *next == L'\t' || *next == L'"';
    if (!mustQuote)
        return OrvSucceeded(result) ? line.Append(argument) : result;
    if (OrvSucceeded(result))
        result = line.Append(L'"');
    uint32_t backslashes = 0;
    for (const wchar_t *next = argument; OrvSucceeded(result); next++) {
        // Backslashes before a quotation mark, including the closing one, are doubled. The mark itself gets
        // one more backslash.
        const bool atQuote = *next == L'"' || !*next;
        for (; atQuote && backslashes && OrvSucceeded(result); backslashes--)
            result = line.Append(L'\\');
        if (!*next || OrvFailed(result))
            break;
        backslashes = *next == L'\\' ? backslashes + 1 : 0;
        if (*next == L'"')
            result = line.Append(L'\\');
        if (OrvSucceeded(result))
            result = line.Append(*next);
    }
    return OrvSucceeded(result) ? line.Append(L'"') : result;
}

OrvResult RunProcess(OrvUtf16CharHeapBuffer &line, int &exitCode)
{
    if (!OrvKernel32IsFnLoaded_CreateProcessW())
        return ORV_E_NOT_SUPPORTED;
    _STARTUPINFOW startup = {};
    startup.cb = sizeof startup;
    _PROCESS_INFORMATION process = {};
    OrvResult result = OrvKernel32_CreateProcessW(nullptr, line.GetBuffer(), nullptr, nullptr, true, 0,
                                                  nullptr, nullptr, &startup, &process);
    if (OrvFailed(result))
        return result;
    ZwClose(process.hThread);
    OrvBasWinHandleWaitable ended(process.hProcess, true);
    result = ended.Wait(-1);
    PROCESS_BASIC_INFORMATION information = {};
    const NTSTATUS status = NtQueryInformationProcess(process.hProcess, ProcessBasicInformation, &information,
                                                      sizeof information, nullptr);
    exitCode = information.ExitStatus;
    return NT_SUCCESS(status) ? result : OrvCreateErrorCodeFromNtStatus(status);
}

} // namespace orvtool

// orvtool lock: runs a command while a file is locked.

#include "child_process.h"
#include "command.h"

#include "orv/fs/lock_file.h"
#include "orv/fs/lock_file_resource.h"
#include "orv/runtime/result.h"

namespace orvtool
{

namespace
{

enum class Kind { Mutex, Shared, Exclusive };

struct Options {
    const wchar_t *path = nullptr;
    Kind kind = Kind::Mutex;
    int timeoutMs = -1;
    bool help = false;
};

ExitCode ReadOptions(const Command &command, Console &console, ArgumentReader &arguments, Options &options)
{
    while (arguments.IsAtOption()) {
        const wchar_t *value = nullptr;
        const wchar_t *const shown = arguments.Peek();
        if (arguments.TakeOption(L"--shared", L"-s")) {
            options.kind = Kind::Shared;
        } else if (arguments.TakeOption(L"--exclusive", L"-x")) {
            options.kind = Kind::Exclusive;
        } else if (arguments.TakeOption(L"--help", L"-h")) {
            options.help = true;
        } else if (arguments.TakeValueOption(L"--timeout", value)) {
            uint32_t number = 0;
            if (!value || *value == L'-' || !ParseNumber(value, number) || number > INT32_MAX)
                return WrongValue(command, console, shown, value);
            options.timeoutMs = static_cast<int>(number);
        } else {
            return UsageError(command, console, L"there is no option", shown);
        }
    }
    return kExitSuccess;
}

/// The lock on the file, of either kind. It is released at the end of the program at the latest.
class Lock
{
public:
    OrvResult Take(const Options &options)
    {
        const bool exclusive = options.kind == Kind::Exclusive;
        // For both kinds of lock this creates the file if it does not exist.
        OrvResult result = resource_.OpenOrCreate(options.path, nullptr, exclusive);
        if (OrvFailed(result))
            return result;
        if (options.kind == Kind::Mutex) {
            result = mutex_.Create(options.path, false);
            return OrvSucceeded(result) ? mutex_.Acquire(options.timeoutMs) : result;
        }
        return exclusive ? resource_.AcquireExclusive(options.timeoutMs)
                         : resource_.AcquireShared(options.timeoutMs);
    }

    void Release(Kind kind)
    {
        if (kind == Kind::Mutex)
            mutex_.Release();
        else
            resource_.Release();
    }

private:
    OrvBasWinLockFileResource resource_;
    OrvBasWinLockFile mutex_;
};

ExitCode Run(const Command &command, Console &console, ArgumentReader &arguments)
{
    Options options;
    ExitCode usage = ReadOptions(command, console, arguments, options);
    if (usage != kExitSuccess)
        return usage;
    options.path = arguments.Take();
    usage = ReadOptions(command, console, arguments, options); // stops at the command
    if (usage != kExitSuccess)
        return usage;
    if (options.help)
        return PrintHelp(command, console);
    if (!options.path)
        return UsageError(command, console, L"FILE is missing", nullptr);

    OrvUtf16CharHeapBuffer line;
    while (const wchar_t *const argument = arguments.Take()) {
        const OrvResult result = AppendArgument(line, argument);
        if (OrvFailed(result))
            return ReportFailure(command, console, L"reading the command", result);
    }
    if (line.IsEmpty())
        return UsageError(command, console, L"a command is missing behind --", nullptr);

    Lock lock;
    OrvResult result = lock.Take(options);
    if (OrvFailed(result))
        return ReportFailure(command, console, L"locking", result, options.path);
    int exitCode = 0;
    result = RunProcess(line, exitCode);
    lock.Release(options.kind);
    if (OrvFailed(result))
        return ReportFailure(command, console, L"starting the command", result);
    return static_cast<ExitCode>(exitCode);
}

} // namespace

const Command kLockCommand = {
    L"lock",
    L"runs a command while a file is locked",
    L"Usage: orvtool lock [OPTION...] FILE [--] COMMAND [ARGUMENT...]\n"
    L"\n"
    L"Waits until no other process has locked FILE, runs COMMAND, and releases the lock when COMMAND has\n"
    L"ended. FILE is created if it does not exist; its contents are not touched. The exit code is that of\n"
    L"COMMAND.\n"
    L"\n"
    L"  -s, --shared     keep out only processes that lock FILE exclusively\n"
    L"  -x, --exclusive  keep out processes that lock FILE shared or exclusively\n"
    L"  --timeout MS     the longest time to wait; then the exit code is 3 (for ever)\n"
    L"\n"
    L"Without -s and -x the lock is a mutex on this machine, the same for every path that leads to the "
    L"file.\n"
    L"With one of them it is a byte-range lock, which other programs and machines that share the file\n"
    L"respect. The mutex and byte-range locks do not affect each other.\n",
    Run,
    true,
};

} // namespace orvtool

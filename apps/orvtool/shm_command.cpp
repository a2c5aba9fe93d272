// orvtool shm: creates, reads and writes shared memory that is named by an id.

#include "command.h"
#include "input.h"
#include "object_options.h"

#include "orv/runtime/result.h"
#include "orv/shm/shared_memory_view.h"
#include "orv/sync/win_mutex.h"

namespace orvtool
{

namespace
{

struct Options {
    const wchar_t *action = nullptr;
    uint32_t id = 0;
    OrvBasSyncObjectNameSpace nameSpace = OrvBasSyncSession;
    uint32_t offset = 0;
    uint32_t size = 0;
    uint32_t holdMs = 0;
    bool isHoldGiven = false;
    uint32_t times = 1;
    const wchar_t *mutex = nullptr;
};

bool ParseNameSpace(const wchar_t *text, OrvBasSyncObjectNameSpace &nameSpace)
{
    nameSpace = Equal(text, L"global") ? OrvBasSyncGlobal : OrvBasSyncSession;
    return nameSpace == OrvBasSyncGlobal || Equal(text, L"session");
}

bool ParseUnsigned(const wchar_t *text, uint32_t &number)
{
    return *text != L'-' && ParseNumber(text, number);
}

ExitCode ReadOptions(const Command &command, Console &console, ArgumentReader &arguments, Options &options)
{
    bool isIdGiven = false;
    while (!arguments.IsAtEnd()) {
        const wchar_t *const shown = arguments.Peek();
        const wchar_t *value = L"";
        bool understood = true;
        if (!arguments.IsAtOption()) {
            const wchar_t *const argument = arguments.Take();
            if (!argument)
                break;
            if (!options.action)
                options.action = argument;
            else if (isIdGiven || !ParseUnsigned(argument, options.id) || options.id == 0)
                return UsageError(command, console, L"one ID, a number from 1 to 0xFFFFFFFF, is wanted, not",
                                  argument);
            else
                isIdGiven = true;
        } else if (arguments.TakeValueOption(L"--namespace", value)) {
            understood = value && ParseNameSpace(value, options.nameSpace);
        } else if (arguments.TakeValueOption(L"--offset", value)) {
            understood = value && ParseUnsigned(value, options.offset);
        } else if (arguments.TakeValueOption(L"--size", value)) {
            understood = value && ParseUnsigned(value, options.size);
        } else if (arguments.TakeValueOption(L"--hold", value)) {
            understood = value && ParseUnsigned(value, options.holdMs) && options.holdMs <= INT32_MAX;
            options.isHoldGiven = true;
        } else if (arguments.TakeValueOption(L"--times", value)) {
            understood = value && ParseUnsigned(value, options.times);
        } else if (arguments.TakeValueOption(L"--mutex", value)) {
            understood = value != nullptr;
            options.mutex = value;
        } else {
            return UsageError(command, console, L"there is no option", shown);
        }
        if (!understood)
            return WrongValue(command, console, shown, value);
    }
    if (!options.action)
        return UsageError(command, console, L"an action is missing", nullptr);
    if (!isIdGiven)
        return UsageError(command, console, L"an ID is missing behind", options.action);
    return kExitSuccess;
}

ExitCode Serve(const Command &command, Console &console, const Options &options)
{
    if (options.size == 0)
        return UsageError(command, console, L"serve wants --size BYTES", nullptr);
    OrvSharedMemoryServer server;
    const ExitCode code = ReportStep(command, console, L"create",
                                     server.Create(options.size, options.id, options.nameSpace, nullptr));
    if (code != kExitSuccess)
        return code;
    if (options.isHoldGiven) {
        Hold(console, static_cast<int>(options.holdMs));
        return code;
    }
    console.out.Flush();
    Input input;
    OrvResult result = input.Open(nullptr);
    uint8_t bytes[512];
    uint32_t count = 1;
    while (OrvSucceeded(result) && count)
        result = input.ReadSome(bytes, sizeof bytes, count);
    return code;
}

/// A view of all the memory with this id, and the part of it that the options select.
struct Part {
    OrvSharedMemoryClient client;
    OrvSharedMemoryView view;
    uint8_t *bytes = nullptr;
    uint32_t size = 0;

    ExitCode Show(const Command &command, Console &console, const Options &options, bool toWrite)
    {
        const OrvFlags<OrvAccessFlagsValues> read = OrvAccessRead;
        OrvResult result = client.Open(options.id, options.nameSpace, toWrite ? read | OrvAccessWrite : read);
        if (OrvFailed(result))
            return ReportFailure(command, console, L"opening the memory", result);
        result = view.Attach(client, 0, 0, !toWrite);
        if (OrvFailed(result))
            return ReportFailure(command, console, L"showing the memory", result);
        unsigned int whole = 0;
        view.GetSize(whole);
        if (options.offset > whole || options.size > whole - options.offset) {
            console.error.Print(L"orvtool %s: the memory has %u bytes, in whole pages\n", command.name,
                                whole);
            return kExitFailed;
        }
        bytes = static_cast<uint8_t *>(view.GetPointer()) + options.offset;
        size = options.size ? options.size : whole - options.offset;
        return kExitSuccess;
    }
};

ExitCode Read(const Command &command, Console &console, const Options &options)
{
    Part part;
    const ExitCode code = part.Show(command, console, options, false);
    if (code == kExitSuccess && OrvFailed(console.out.WriteBytes(part.bytes, part.size)))
        return kExitFailed;
    return code;
}

ExitCode Write(const Command &command, Console &console, const Options &options)
{
    Part part;
    const ExitCode code = part.Show(command, console, options, true);
    if (code != kExitSuccess)
        return code;
    Input input;
    OrvResult result = input.Open(nullptr);
    uint32_t count = 0;
    if (OrvSucceeded(result))
        result = input.Read(part.bytes, part.size, count);
    uint8_t beyond = 0;
    uint32_t more = 0;
    if (OrvSucceeded(result) && count == part.size)
        result = input.Read(&beyond, 1, more);
    if (OrvFailed(result))
        return ReportFailure(command, console, L"reading", result);
    if (more) {
        console.error.Print(L"orvtool %s: the input goes on behind the %u bytes that were written\n",
                            command.name, count);
        return kExitFailed;
    }
    console.out.Print(L"%u\n", count);
    return kExitSuccess;
}

/// Adds 1 to the number at the offset, as often as the options say: a thousand times for each acquisition of
/// the mutex. Only the mutex makes the sum right.
ExitCode Count(const Command &command, Console &console, const Options &options)
{
    constexpr uint32_t kBatch = 1000;
    Part part;
    const ExitCode code = part.Show(command, console, options, true);
    if (code != kExitSuccess)
        return code;
    if (part.size < sizeof(uint64_t) || options.offset % sizeof(uint64_t) != 0)
        return UsageError(command, console, L"the number must stand at a multiple of 8", nullptr);
    OrvBasWinMutex mutex;
    OrvResult result =
        options.mutex ? mutex.Create(false, options.mutex, OrvBasWinSyncSession, nullptr) : ORV_S_OK;
    if (OrvFailed(result))
        return ReportFailure(command, console, L"creating the mutex", result, options.mutex);
    auto *const number = reinterpret_cast<volatile uint64_t *>(part.bytes);
    uint64_t last = *number;
    for (uint32_t left = options.times; left;) {
        result = mutex.Acquire(-1); // without a mutex this returns at once and acquires nothing
        if (OrvFailed(result))
            return ReportFailure(command, console, L"acquiring the mutex", result, options.mutex);
        for (uint32_t i = 0; i < kBatch && left; i++, left--)
            *number = *number + 1;
        last = *number;
        if (options.mutex)
            mutex.Release();
    }
    console.out.Print(L"%I64u\n", last);
    return kExitSuccess;
}

ExitCode Run(const Command &command, Console &console, ArgumentReader &arguments)
{
    Options options;
    const ExitCode usage = ReadOptions(command, console, arguments, options);
    if (usage != kExitSuccess)
        return usage;
    if (Equal(options.action, L"serve"))
        return Serve(command, console, options);
    if (Equal(options.action, L"read"))
        return Read(command, console, options);
    if (Equal(options.action, L"write"))
        return Write(command, console, options);
    if (Equal(options.action, L"count"))
        return Count(command, console, options);
    return UsageError(command, console, L"there is no action", options.action);
}

} // namespace

const Command kShmCommand = {
    L"shm",
    L"makes, reads and writes shared memory",
    L"Usage: orvtool shm serve ID --size BYTES [OPTION...]\n"
    L"       orvtool shm read ID [OPTION...]\n"
    L"       orvtool shm write ID [OPTION...]\n"
    L"       orvtool shm count ID [OPTION...]\n"
    L"\n"
    L"ID is a number, such as 0x1A2B, that all processes use for the same memory. serve creates the memory,\n"
    L"filled with zeros, or opens the existing one (0x6001004F), and keeps it until standard input ends. "
    L"read\n"
    L"copies it to standard output. write copies standard input into it and prints the number of bytes.\n"
    L"count adds 1 to the 64-bit number in it and prints the sum.\n"
    L"\n"
    L"  --size BYTES                how much to make, read or write (all, in whole pages)\n"
    L"  --offset BYTES              where to start (0)\n"
    L"  --namespace global|session  where the memory's name lives (session)\n"
    L"  --hold MS                   for serve: how long to keep the memory, instead of until the input ends\n"
    L"  --times N                   for count: how often to add (1)\n"
    L"  --mutex NAME                for count: the session's mutex that guards each thousand additions "
    L"(none)\n",
    Run,
};

} // namespace orvtool

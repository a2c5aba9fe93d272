// orvtool bzip2 and orvtool bunzip2: filters over the library's bzip2 context.

#include "command.h"
#include "compression_filter.h"

#include "orv/compress/bz2_context.h"

namespace orvtool
{

namespace
{

using detail::OrvBZ2Context;

ExitCode RunBzip2(const Command &command, Console &console, ArgumentReader &arguments)
{
    int level = 9;
    const wchar_t *path = nullptr;
    while (!arguments.IsAtEnd()) {
        const int taken = TakeLevel(arguments);
        const ExitCode usage = taken ? kExitSuccess : TakePath(command, console, arguments, path);
        if (usage != kExitSuccess)
            return usage;
        level = taken ? taken : level;
    }
    Input input;
    const ExitCode opened = OpenInput(command, console, path, input);
    if (opened != kExitSuccess)
        return opened;
    const auto begin = [level](OrvBZ2Context &context, uint32_t bufferSize) {
        return context.Initialize(bufferSize, true, static_cast<unsigned char>(level));
    };
    return CompressionFilter<OrvBZ2Context, decltype(begin)>(command, console, input, begin).Compress();
}

ExitCode RunBunzip2(const Command &command, Console &console, ArgumentReader &arguments)
{
    const wchar_t *path = nullptr;
    while (!arguments.IsAtEnd()) {
        const ExitCode usage = TakePath(command, console, arguments, path);
        if (usage != kExitSuccess)
            return usage;
    }
    Input input;
    const ExitCode opened = OpenInput(command, console, path, input);
    if (opened != kExitSuccess)
        return opened;
    const auto begin = [](OrvBZ2Context &context, uint32_t bufferSize) {
        return context.Initialize(bufferSize, false);
    };
    return CompressionFilter<OrvBZ2Context, decltype(begin)>(command, console, input, begin)
        .Decompress(Streams::kSeveral);
}

} // namespace

const Command kBzip2Command = {
    L"bzip2",
    L"compresses to the bzip2 format",
    L"Usage: orvtool bzip2 [-1..-9] [FILE]\n"
    L"\n"
    L"Compresses FILE, or standard input without FILE or when it is '-', to standard output.\n"
    L"\n"
    L"  -1 .. -9   blocks of 100,000 to 900,000 bytes (-9)\n",
    RunBzip2,
};

const Command kBunzip2Command = {
    L"bunzip2",
    L"decompresses the bzip2 format",
    L"Usage: orvtool bunzip2 [FILE]\n"
    L"\n"
    L"Decompresses FILE, or standard input without FILE or when it is '-', to standard output; streams that\n"
    L"follow each other become one output. When the data is corrupt, ends too early, or is followed by\n"
    L"other data, the good part is written, and the offset is printed.\n",
    RunBunzip2,
};

} // namespace orvtool

// orvtool deflate and orvtool inflate: filters over the library's deflate context.

#include "command.h"
#include "compression_filter.h"

#include "orv/compress/deflate_context.h"

namespace orvtool
{

namespace
{

using detail::OrvDeflateContext;

/// The options of both commands.
struct Options {
    int level = OrvDeflateContext::kDefaultLevel;
    bool isRaw = false;
    const wchar_t *path = nullptr;
};

/// Takes the level if the next argument is one. Returns kExitSuccess, or reports the usage error.
ExitCode TakeLevelOption(const Command &command, Console &console, ArgumentReader &arguments, int &level,
                         bool &isTaken)
{
    const int digit = TakeLevel(arguments);
    level = digit ? digit : level;
    const wchar_t *value = nullptr;
    const bool isNamed = digit == 0 && arguments.TakeValueOption(L"--level", value);
    isTaken = digit || isNamed;
    if (!isNamed)
        return kExitSuccess;
    if (!value || *value < L'0' || *value > L'9' || value[1])
        return UsageError(command, console, L"a level is 0 to 9, not", value ? value : L"");
    level = *value - L'0';
    return kExitSuccess;
}

ExitCode ReadOptions(const Command &command, Console &console, ArgumentReader &arguments, bool hasLevel,
                     Options &options)
{
    ExitCode usage = kExitSuccess;
    while (usage == kExitSuccess && !arguments.IsAtEnd()) {
        bool isTaken = arguments.TakeOption(L"--raw");
        options.isRaw = options.isRaw || isTaken;
        if (!isTaken && hasLevel)
            usage = TakeLevelOption(command, console, arguments, options.level, isTaken);
        if (!isTaken)
            usage = TakePath(command, console, arguments, options.path);
    }
    return usage;
}

/// The function that initializes a context.
auto BeginOf(const Options &options, bool compresses)
{
    return [options, compresses](OrvDeflateContext &context, uint32_t bufferSize) {
        return context.Initialize(bufferSize, compresses, options.level, options.isRaw);
    };
}

template <bool compresses>
ExitCode Run(const Command &command, Console &console, ArgumentReader &arguments)
{
    Options options;
    const ExitCode usage = ReadOptions(command, console, arguments, compresses, options);
    if (usage != kExitSuccess)
        return usage;
    Input input;
    const ExitCode opened = OpenInput(command, console, options.path, input);
    if (opened != kExitSuccess)
        return opened;
    const auto begin = BeginOf(options, compresses);
    CompressionFilter<OrvDeflateContext, decltype(begin)> filter(command, console, input, begin);
    return compresses ? filter.Compress() : filter.Decompress(Streams::kOne);
}

} // namespace

const Command kDeflateCommand = {
    L"deflate",
    L"compresses to the zlib format",
    L"Usage: orvtool deflate [-1..-9] [--level LEVEL] [--raw] [FILE]\n"
    L"\n"
    L"Compresses FILE, or standard input without FILE or when it is '-', to standard output in the zlib "
    L"format\n"
    L"(RFC 1950).\n"
    L"\n"
    L"  -1 .. -9        from fast to small\n"
    L"  --level LEVEL   the same as a number; 0 only stores\n"
    L"  --raw           without the header and the checksum (RFC 1951)\n",
    Run<true>,
};

const Command kInflateCommand = {
    L"inflate",
    L"decompresses the zlib format",
    L"Usage: orvtool inflate [--raw] [FILE]\n"
    L"\n"
    L"Decompresses FILE, or standard input without FILE or when it is '-', to standard output. When the "
    L"data\n"
    L"is corrupt, ends too early, or is followed by other data, the good part is written, and the offset is\n"
    L"printed.\n"
    L"\n"
    L"  --raw   the data has neither header nor checksum (RFC 1951)\n",
    Run<false>,
};

} // namespace orvtool

// Splitting and reading the command line.

#include "command_line.h"

#include "nt/teb.h"
#include "orv/text/number.h"
#include "runtime/heap.h"

namespace orvtool
{

namespace
{

bool IsBlank(wchar_t character)
{
    return character == L' ' || character == L'\t';
}

/// Copies one argument. Blanks count inside quotes; backslashes are literal except before a quote, where each
/// pair stands for one and an odd one makes the quote literal.
const wchar_t *CopyArgument(const wchar_t *next, const wchar_t *last, wchar_t *&out)
{
    bool quoted = false;
    while (next != last && (quoted || !IsBlank(*next))) {
        uint32_t backslashes = 0;
        while (next != last && *next == L'\\') {
            backslashes++;
            next++;
        }
        const bool atQuote = next != last && *next == L'"';
        for (uint32_t i = 0; i < (atQuote ? backslashes / 2 : backslashes); i++)
            *out++ = L'\\';
        if (!atQuote) {
            if (next != last && (quoted || !IsBlank(*next)))
                *out++ = *next++;
            continue;
        }
        if (backslashes % 2)
            *out++ = L'"';
        else
            quoted = !quoted;
        next++;
    }
    *out++ = 0;
    return next;
}

} // namespace

CommandLine::CommandLine()
{
    const UNICODE_STRING &line = NtCurrentPeb()->ProcessParameters->CommandLine;
    const uint32_t length = line.Length / sizeof(wchar_t);
    // No argument is longer than its text, and every second character at most starts one.
    const uint32_t mostArguments = length / 2 + 1;
    auto *const block = static_cast<uint8_t *>(detail::AllocateBytes(
        mostArguments * sizeof(wchar_t *) + (length + mostArguments) * sizeof(wchar_t)));
    if (!block)
        return;
    arguments_ = reinterpret_cast<const wchar_t **>(block);
    auto *out = reinterpret_cast<wchar_t *>(block + mostArguments * sizeof(wchar_t *));
    const wchar_t *next = line.Buffer;
    const wchar_t *const last = next + length;
    bool isProgram = true;
    for (;;) {
        while (next != last && IsBlank(*next))
            next++;
        if (next == last)
            return;
        wchar_t *const argument = out;
        next = CopyArgument(next, last, out);
        if (!isProgram)
            arguments_[count_++] = argument;
        isProgram = false;
    }
}

CommandLine::~CommandLine()
{
    detail::FreeBytes(arguments_);
}

const wchar_t *ArgumentReader::Take()
{
    if (!optionsEnded_ && next_ != last_ && Equal(*next_, L"--")) {
        optionsEnded_ = true;
        next_++;
    }
    return next_ == last_ ? nullptr : *next_++;
}

bool ArgumentReader::IsAtOption() const
{
    return !optionsEnded_ && next_ != last_ && **next_ == L'-' && (*next_)[1] && !Equal(*next_, L"--");
}

bool ArgumentReader::TakeOption(const wchar_t *name, const wchar_t *otherName)
{
    if (!IsAtOption() || !(Equal(*next_, name) || (otherName && Equal(*next_, otherName))))
        return false;
    next_++;
    return true;
}

bool ArgumentReader::TakeValueOption(const wchar_t *name, const wchar_t *&value)
{
    if (!IsAtOption())
        return false;
    const wchar_t *argument = *next_;
    while (*name && *argument == *name) {
        argument++;
        name++;
    }
    if (*name || (*argument && *argument != L'='))
        return false;
    next_++;
    if (*argument)
        value = argument + 1;
    else
        value = next_ == last_ ? nullptr : *next_++;
    return true;
}

bool TakeCount(ArgumentReader &arguments, uint32_t &count, bool &isTaken)
{
    const wchar_t *value = nullptr;
    isTaken = arguments.TakeValueOption(L"-n", value);
    return !isTaken || (value && *value != L'-' && ParseNumber(value, count));
}

bool ParseNumber(const wchar_t *text, uint32_t &number)
{
    __int64 value = 0;
    const wchar_t *end = nullptr;
    if (!*text || OrvFailed(OrvConvertString2Number(value, text, OrvTerminated, 0, &end)))
        return false;
    number = static_cast<uint32_t>(value);
    return value >= INT32_MIN && value <= UINT32_MAX;
}

} // namespace orvtool

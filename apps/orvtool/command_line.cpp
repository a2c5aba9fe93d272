// Splitting and reading the command line.

#include "command_line.h"

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

/// Skips the program's name, in which a backslash means nothing: up to the next quotation mark when it starts
/// with one, else up to a blank.
const wchar_t *SkipProgram(const wchar_t *next, const wchar_t *last)
{
    if (next == last)
        return next;
    const bool quoted = *next == L'"';
    if (quoted)
        next++;
    while (next != last && (quoted ? *next != L'"' : !IsBlank(*next)))
        next++;
    return next != last && quoted ? next + 1 : next;
}

/// Copies one argument. Two backslashes in front of a quotation mark stand for one, and an odd one makes the
/// mark a character of the argument; all others are what they are. Blanks count inside quotation marks. Of
/// the marks in a run, with the one that is open, each three stand for one character; a single one that is
/// left opens, two have opened and closed.
const wchar_t *CopyArgument(const wchar_t *next, const wchar_t *last, wchar_t *&out)
{
    bool quoted = false;
    while (next != last && (quoted || !IsBlank(*next))) {
        if (*next != L'\\' && *next != L'"') {
            *out++ = *next++;
            continue;
        }
        uint32_t backslashes = 0;
        for (; next != last && *next == L'\\'; next++)
            backslashes++;
        const bool atMark = next != last && *next == L'"';
        for (uint32_t i = 0; i < (atMark ? backslashes / 2 : backslashes); i++)
            *out++ = L'\\';
        if (atMark && backslashes % 2)
            *out++ = *next++;
        uint32_t marks = quoted ? 1 : 0;
        for (; next != last && *next == L'"'; next++)
            marks++;
        for (uint32_t i = 0; i < marks / 3; i++)
            *out++ = L'"';
        quoted = marks % 3 == 1;
    }
    *out++ = 0;
    return next;
}

} // namespace

CommandLine::CommandLine(const wchar_t *line, uint32_t length)
{
    // No argument is longer than its text, and every second character at most starts one.
    const uint32_t mostArguments = length / 2 + 1;
    auto *const block = static_cast<uint8_t *>(detail::AllocateBytes(
        mostArguments * sizeof(wchar_t *) + (length + mostArguments) * sizeof(wchar_t)));
    if (!block)
        return;
    arguments_ = reinterpret_cast<const wchar_t **>(block);
    auto *out = reinterpret_cast<wchar_t *>(block + mostArguments * sizeof(wchar_t *));
    const wchar_t *const last = line + length;
    const wchar_t *next = SkipProgram(line, last);
    for (;;) {
        while (next != last && IsBlank(*next))
            next++;
        if (next == last)
            return;
        arguments_[count_++] = out;
        next = CopyArgument(next, last, out);
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

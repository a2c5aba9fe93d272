// Splits a command line into its arguments, by the rules of the platform's CommandLineToArgvW.

#include "program/command_line.h"

namespace detail
{

namespace
{

bool IsBlank(wchar_t character)
{
    return character == L' ' || character == L'\t';
}

/// Copies the program's name. It ends at the next quotation mark when it starts with one, else at a blank; a
/// backslash in it has no special meaning.
const wchar_t *CopyProgram(const wchar_t *next, const wchar_t *last, wchar_t *&out)
{
    const bool quoted = next != last && *next == L'"';
    if (quoted)
        next++;
    while (next != last && (quoted ? *next != L'"' : !IsBlank(*next)))
        *out++ = *next++;
    *out++ = 0;
    return next != last && quoted ? next + 1 : next;
}

/// Copies one argument. Before a quotation mark, two backslashes give one, and an odd one makes the mark a
/// character of the argument; elsewhere a backslash is an ordinary character. Inside quotation marks, blanks
/// belong to the argument. In a run of marks, counted together with a mark that is already open, every three
/// give one character. If one mark is left over, quoting is on after the run; otherwise it is off.
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
    // No argument is longer than its text, and at most every second character starts an argument. The
    // program's name and the null pointer that ends the array are added.
    const uint32_t mostArguments = length / 2 + 2;
    arguments_.Reset(static_cast<wchar_t **>(
        AllocateBytes((mostArguments + 1) * sizeof(wchar_t *) + (length + mostArguments) * sizeof(wchar_t))));
    wchar_t **const arguments = arguments_.Get();
    if (!arguments)
        return;
    auto *out = reinterpret_cast<wchar_t *>(arguments + mostArguments + 1);
    const wchar_t *const last = line + length;
    arguments[count_++] = out;
    const wchar_t *next = CopyProgram(line, last, out);
    for (;;) {
        while (next != last && IsBlank(*next))
            next++;
        if (next == last)
            break;
        arguments[count_++] = out;
        next = CopyArgument(next, last, out);
    }
    arguments[count_] = nullptr;
}

} // namespace detail

// Splitting a command line.

#include "program/command_line.h"

namespace detail
{

namespace
{

bool IsBlank(wchar_t character)
{
    return character == L' ' || character == L'\t';
}

/// Copies the program's name, in which a backslash means nothing: up to the next quotation mark when it
/// starts with one, else up to a blank.
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
    // No argument is longer than its text, and every second character at most starts one. The name comes on
    // top, and the pointer that ends the array.
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

// The runner: which cases run, what is printed, and the exit code.

#include "harness/test.h"

#include "harness/memory.h"
#include "harness/program.h"

namespace
{

#if defined(ORV_HOST)
extern "C" const test::Case *const __start_orv_tests[];
extern "C" const test::Case *const __stop_orv_tests[];
const test::Case *const *const kFirst = __start_orv_tests;
const test::Case *const *const kLast = __stop_orv_tests;
#else
#pragma section(".orvt$a", read)
#pragma section(".orvt$z", read)
__declspec(allocate(".orvt$a")) const test::Case *const kBefore = nullptr;
__declspec(allocate(".orvt$z")) const test::Case *const kAfter = nullptr;
const test::Case *const *const kFirst = &kBefore;
const test::Case *const *const kLast = &kAfter;
#endif

constexpr uint32_t kMostFailuresShown = 20;

const test::Case *current;
uint32_t failures;
const char *noteText;
uint64_t noteValue;
test::Edge guardedEdge;
bool isEdgeAskedFor;

template <typename... Texts>
void Print(const Texts *...texts)
{
    (program::Print(texts), ...);
}

void PrintNumber(uint64_t number, uint32_t radix)
{
    char digits[24];
    char *first = digits + sizeof digits;
    *--first = 0;
    do
        *--first = "0123456789abcdef"[number % radix];
    while (number /= radix);
    Print(first);
}

template <typename T>
void PrintText(const T *text)
{
    if (!text) {
        Print("null");
        return;
    }
    Print("\"");
    for (uint32_t i = 0; text[i] && i < 200; i++) {
        const auto character = static_cast<uint32_t>(text[i]) & (sizeof(T) == 1 ? 0xFFu : 0xFFFFu);
        const char plain[2] = {static_cast<char>(character), 0};
        if (character >= 32 && character < 127) {
            Print(plain);
        } else {
            Print("\\x");
            PrintNumber(character, 16);
        }
    }
    Print("\"");
}

void Print(const test::Shown &shown)
{
    switch (shown.kind) {
    case test::Shown::kBytes:
        return PrintText(static_cast<const char *>(shown.text));
    case test::Shown::kWide:
        return PrintText(static_cast<const wchar_t *>(shown.text));
    default:
        const bool isNegative = shown.kind == test::Shown::kSigned && static_cast<int64_t>(shown.number) < 0;
        Print(isNegative ? "-" : "");
        PrintNumber(isNegative ? 0 - shown.number : shown.number, 10);
        Print(" (0x");
        PrintNumber(isNegative ? static_cast<uint32_t>(shown.number) : shown.number, 16);
        Print(")");
    }
}

bool Contains(const char *text, const char *part)
{
    for (; *text; text++) {
        uint32_t i = 0;
        while (part[i] && text[i] == part[i])
            i++;
        if (!part[i])
            return true;
    }
    return false;
}

bool IsDigit(char character)
{
    return character >= '0' && character <= '9';
}

bool Selected(const test::Case &testCase, uint32_t count, const char *const *parts)
{
    for (uint32_t i = 0; i < count; i++) {
        if (Contains(testCase.name, parts[i]))
            return true;
    }
    return count == 0;
}

bool StartReport(const char *file, int line, const char *expression)
{
    if (++failures > kMostFailuresShown)
        return false;
    Print(file, ":");
    PrintNumber(static_cast<uint32_t>(line), 10);
    Print(": ", current->name, ": ", expression);
    if (noteText) {
        Print(" [", noteText, " ");
        PrintNumber(noteValue, 10);
        Print("]");
    }
    if (guardedEdge == test::Edge::kStart)
        Print(" (behind an unmapped page)");
    return true;
}

void Run(const test::Case &testCase)
{
    isEdgeAskedFor = false;
    testCase.run();
    if (!isEdgeAskedFor)
        return;
    guardedEdge = test::Edge::kStart;
    testCase.run();
    guardedEdge = test::Edge::kEnd;
}

} // namespace

namespace test
{

void Report(const char *file, int line, const char *expression)
{
    if (StartReport(file, line, expression))
        Print(" does not hold\n");
}

void Report(const char *file, int line, const char *expression, Shown actual, Shown expected)
{
    if (!StartReport(file, line, expression))
        return;
    Print(" is ");
    Print(actual);
    Print(", not ");
    Print(expected);
    Print("\n");
}

void Note(const char *what, uint64_t value)
{
    noteText = what;
    noteValue = value;
}

Edge GuardedEdge()
{
    isEdgeAskedFor = true;
    return guardedEdge;
}

} // namespace test

const char *program::CurrentWork()
{
    return current ? current->name : "start-up";
}

int program::Main(uint32_t count, const char *const *arguments)
{
    uint32_t passed = 0, failed = 0, repeats = 0;
    if (count && IsDigit(**arguments)) {
        for (const char *digit = *arguments; IsDigit(*digit); digit++)
            repeats = repeats * 10 + static_cast<uint32_t>(*digit - '0');
        count--;
        arguments++;
    }
    for (const test::Case *const *entry = kFirst; entry != kLast; entry++) {
        if (!*entry || !Selected(**entry, count, arguments)) // a linker may pad the section
            continue;
        current = *entry;
        failures = 0;
        noteText = nullptr;
        Run(*current);
        for (uint32_t i = 1; i < repeats && !failures; i++)
            Run(*current);
        (failures ? failed : passed)++;
    }
    PrintNumber(passed, 10);
    Print(" passed, ");
    PrintNumber(failed, 10);
    Print(" failed\n");
    return failed || !passed;
}

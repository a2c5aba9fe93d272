// How a program's command line is split: as the rules say, and as the platform itself does it, over every
// short line of the characters that matter.

#include "program/command_line.h"

#include "harness/memory.h"
#include "harness/test.h"
#include "nt/programs.h"

namespace
{

using Splitter = wchar_t **(__stdcall *)(const wchar_t *line, int *count);

Splitter PlatformSplitter()
{
    UNICODE_STRING library;
    RtlInitUnicodeString(&library, L"shell32.dll");
    PVOID module = nullptr;
    PVOID address = nullptr;
    char text[] = "CommandLineToArgvW";
    const ANSI_STRING name = {sizeof(text) - 1, sizeof(text), text};
    if (NT_SUCCESS(LdrLoadDll(nullptr, nullptr, &library, &module)))
        LdrGetProcedureAddress(module, &name, 0, &address);
    return reinterpret_cast<Splitter>(address);
}

/// Whether the texts are these, which end with a null pointer.
bool SameTexts(const detail::CommandLine &actual, const wchar_t *const *expected)
{
    bool same = true;
    for (uint32_t i = 0; same && i < actual.Count(); i++)
        same = CHECK(expected[i]) && CHECK_TEXT(actual.Arguments()[i], expected[i]);
    return same && CHECK(!expected[actual.Count()]);
}

} // namespace

TEST_CASE(LinesAreSplitAsThePlatformSplitsThem)
{
    static const wchar_t kCharacters[] = {L'a', L' ', L'"', L'\\'};
    constexpr uint32_t kLongest = 8;
    const Splitter split = PlatformSplitter();
    if (!CHECK(split))
        return;
    wchar_t *const line = test::GuardedArray<wchar_t>(kLongest + 1);
    for (uint32_t length = 1; length <= kLongest; length++) {
        for (uint32_t number = 0; number < 1u << 2 * length; number++) {
            wchar_t *const text = line + kLongest - length;
            for (uint32_t i = 0; i < length; i++)
                text[i] = kCharacters[number >> 2 * i & 3];
            int count = 0;
            wchar_t **const expected = // never freed: a few megabytes, and tests are short
                split(text, &count);
            const detail::CommandLine actual(text, length);
            test::Note("line, two bits a character, the lowest first", number);
            if (!CHECK_EQUAL(actual.Count(), static_cast<uint32_t>(count)) || !SameTexts(actual, expected))
                return;
        }
    }
}

TEST_CASE(TabsSeparateAndAnEmptyLineIsOneEmptyArgument)
{
    static const wchar_t *const kExpected[] = {L"p", L"a", L"b", nullptr};
    static const wchar_t *const kEmpty[] = {L"", nullptr};
    const detail::CommandLine actual(L"p  a\tb ", 7);
    CHECK(SameTexts(actual, kExpected) && !actual.Arguments()[3]);
    CHECK(SameTexts(detail::CommandLine(L"", 0), kEmpty));
}

// The tool's splitting of a command line, held against the platform's own over every short line of the
// characters that matter.

#include "orvtool/command_line.h"

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
            const orvtool::CommandLine actual(text, length);
            test::Note("line, two bits a character, the lowest first", number);
            bool same =
                CHECK(actual.IsValid()) && CHECK_EQUAL(actual.Count(), static_cast<uint32_t>(count - 1));
            for (uint32_t i = 0; same && i < actual.Count(); i++)
                same = CHECK_TEXT(actual.Arguments()[i], expected[i + 1]);
            if (!same)
                return;
        }
    }
    CHECK_EQUAL(orvtool::CommandLine(nullptr, 0).Count(), 0u);
}

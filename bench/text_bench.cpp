// The string primitives, compared with the C functions that ntdll.dll exports.

#include "bench.h"

#include "nt/programs.h"
#include "nt/teb.h"
#include "orv/orv.h"

namespace
{

constexpr uint32_t kLongest = 0x10000;
constexpr uint32_t kLengths[] = {8, 100, kLongest};

/// Two equal terminated texts whose last character occurs nowhere else in them.
template <typename T>
struct Texts {
    T a[kLongest + 1];
    T b[kLongest + 1];
    T target[kLongest + 1];

    void SetLength(uint32_t length)
    {
        for (uint32_t i = 0; i < length; i++)
            a[i] = b[i] = 'a' + i % 7;
        a[length - 1] = b[length - 1] = 'z';
        a[length] = b[length] = 0;
    }
};

Texts<wchar_t> wide;
Texts<char> bytes;

} // namespace

BENCHMARK(TextMeasure)
{
    for (const uint32_t length : kLengths) {
        wide.SetLength(length);
        bytes.SetLength(length);
        bench::Compare(
            {"measure UTF-16", length, "wcslen"}, [] { bench::Use(OrvGetStringSizeInElements(wide.a)); },
            [] { bench::Use(wcslen(wide.a)); });
        bench::Compare(
            {"measure bytes", length, "strlen"}, [] { bench::Use(OrvGetStringSizeInElements(bytes.a)); },
            [] { bench::Use(strlen(bytes.a)); });
    }
}

BENCHMARK(TextFind)
{
    for (const uint32_t length : kLengths) {
        wide.SetLength(length);
        bytes.SetLength(length);
        bench::Compare(
            {"find in UTF-16", length, "wcschr"}, [] { bench::Use(OrvFindElement(wide.a, L'z')); },
            [] { bench::Use(wcschr(wide.a, L'z')); });
        bench::Compare(
            {"find in counted UTF-16", length, "wcschr"},
            [length] { bench::Use(OrvFindElement(wide.a, L'z', length)); },
            [] { bench::Use(wcschr(wide.a, L'z')); });
        bench::Compare(
            {"find in bytes", length, "strchr"}, [] { bench::Use(OrvFindElement(bytes.a, 'z')); },
            [] { bench::Use(strchr(bytes.a, 'z')); });
        bench::Compare(
            {"find from right in UTF-16", length, "wcsrchr"},
            [] { bench::Use(OrvFindElementFromRight(wide.a, L'y')); },
            [] { bench::Use(wcsrchr(wide.a, L'y')); });
        bench::Compare(
            {"find substring in UTF-16", length, "wcsstr"},
            [] { bench::Use(OrvFindSubString(wide.a, L"abcz")); },
            [] { bench::Use(wcsstr(wide.a, L"abcz")); });
        bench::Compare(
            {"find substring in bytes", length, "strstr"},
            [] { bench::Use(OrvFindSubString(bytes.a, "abcz")); },
            [] { bench::Use(strstr(bytes.a, "abcz")); });
    }
}

BENCHMARK(TextFindInRepetition)
{
    constexpr uint32_t kTextLength = 10000;
    constexpr uint32_t kNeedleLength = 1000;
    static wchar_t text[kTextLength + 1];
    static wchar_t needle[kNeedleLength + 1];
    for (wchar_t *unit = text; unit != text + kTextLength; unit++)
        *unit = L'a';
    for (wchar_t *unit = needle; unit != needle + kNeedleLength; unit++)
        *unit = L'a';
    needle[kNeedleLength / 2] = L'b';
    bench::Compare(
        {"find substring in repetition", kTextLength, "wcsstr"},
        [] { bench::Use(OrvFindSubString(text, needle)); }, [] { bench::Use(wcsstr(text, needle)); });
    bench::Compare(
        {"find substring from right in repetition", kTextLength, "wcsstr"},
        [] { bench::Use(OrvFindSubStringFromRight(text, needle)); },
        [] { bench::Use(wcsstr(text, needle)); });
}

BENCHMARK(TextCompare)
{
    for (const uint32_t length : kLengths) {
        wide.SetLength(length);
        bytes.SetLength(length);
        bench::Compare(
            {"compare counted UTF-16", length, "memcmp"},
            [length] { bench::Use(OrvCompareString(wide.a, wide.b, length, length)); },
            [length] { bench::Use(memcmp(wide.a, wide.b, length * sizeof(wchar_t))); });
        bench::Compare(
            {"compare UTF-16", length, "wcscmp"}, [] { bench::Use(OrvCompareString(wide.a, wide.b)); },
            [] { bench::Use(wcscmp(wide.a, wide.b)); });
        bench::Compare(
            {"compare counted bytes", length, "memcmp"},
            [length] { bench::Use(OrvCompareString(bytes.a, bytes.b, length, length)); },
            [length] { bench::Use(memcmp(bytes.a, bytes.b, length)); });
        bench::Compare(
            {"compare bytes", length, "strcmp"}, [] { bench::Use(OrvCompareString(bytes.a, bytes.b)); },
            [] { bench::Use(strcmp(bytes.a, bytes.b)); });
        OrvUpperASCIIString(wide.b);
        bench::Compare(
            {"compare case-blind", length, "_wcsicmp"},
            [] { bench::Use(OrvCompareStringNoCase(OrvCodePageDefault, wide.a, wide.b)); },
            [] { bench::Use(_wcsicmp(wide.a, wide.b)); });
    }
}

BENCHMARK(TextCopy)
{
    for (const uint32_t length : kLengths) {
        wide.SetLength(length);
        bytes.SetLength(length);
        bench::Compare(
            {"copy counted UTF-16", length, "memmove"},
            [length] { bench::Use(OrvCopyString(wide.target, kLongest + 1, wide.a, length)); },
            [length] { bench::Use(memmove(wide.target, wide.a, (length + 1) * sizeof(wchar_t))); });
        bench::Compare(
            {"copy UTF-16", length, "wcscpy"},
            [] { bench::Use(OrvCopyString(wide.target, kLongest + 1, wide.a)); },
            [] { bench::Use(wcscpy(wide.target, wide.a)); });
        bench::Compare(
            {"copy bytes", length, "strcpy"},
            [] { bench::Use(OrvCopyString(bytes.target, kLongest + 1, bytes.a)); },
            [] { bench::Use(strcpy(bytes.target, bytes.a)); });
    }
}

BENCHMARK(HeapBuffer)
{
    // The peer does the least that is needed: it allocates a block, copies the characters, and frees the block.
    const wchar_t *const text = wide.a;
    for (const uint32_t length : kLengths) {
        wide.SetLength(length);
        bench::Compare(
            {"assign to a heap buffer", length, "RtlAllocateHeap, memmove"},
            [text, length] {
                OrvUtf16CharHeapBuffer buffer;
                buffer.Assign(text, length);
                bench::Use(buffer);
            },
            [text, length] {
                PVOID block = RtlAllocateHeap(NtCurrentPeb()->ProcessHeap, 0, (length + 2) * sizeof(wchar_t));
                memmove(block, text, (length + 1) * sizeof(wchar_t));
                bench::Use(block);
                RtlFreeHeap(NtCurrentPeb()->ProcessHeap, 0, block);
            });
    }
}

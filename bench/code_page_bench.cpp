// UTF-8 to UTF-16 and back beside the platform's own conversions.

#include "bench.h"

#include "nt/programs.h"
#include "orv/orv.h"

namespace
{

constexpr uint32_t kLongest = 0x10000;
constexpr uint32_t kLengths[] = {12, 200, kLongest};

char bytes[kLongest * 3 + 1];
wchar_t text[kLongest + 1];
char bytesTarget[kLongest * 3 + 1];
wchar_t textTarget[kLongest + 1];
uint32_t byteCount;

struct Sample {
    const char *decode;
    const char *encode;
    const wchar_t *words; ///< repeated
};

const Sample kSamples[] = {
    {"ASCII from UTF-8", "ASCII to UTF-8", L"the quick brown fox jumps over the lazy dog, "},
    {"Latin from UTF-8", "Latin to UTF-8",
     L"\x00E0 c\x00F4t\x00E9 d'un c\x0153ur na\x00EFf, d\x00E9j\x00E0 fatigu\x00E9 "},
    {"Chinese from UTF-8", "Chinese to UTF-8", L"\x5929\x5730\x7384\x9EC4\x5B87\x5B99\x6D2A\x8352\xFF0C"},
};

void Prepare(const wchar_t *words, uint32_t length)
{
    const uint32_t period = OrvGetStringSizeInElements(words);
    for (uint32_t i = 0; i < length; i++)
        text[i] = words[i % period];
    OrvConvertUtf162MbString(bytes, sizeof bytes, text, OrvCodePageUtf8, &byteCount, length);
}

} // namespace

BENCHMARK(Utf8)
{
    for (const Sample &sample : kSamples) {
        for (const uint32_t length : kLengths) {
            Prepare(sample.words, length);
            bench::Compare(
                {sample.decode, length, "RtlUTF8ToUnicodeN"},
                [] {
                    bench::Use(OrvConvertMb2Utf16String(textTarget, kLongest + 1, bytes, OrvCodePageUtf8,
                                                        nullptr, byteCount));
                },
                [] {
                    ULONG written = 0;
                    bench::Use(RtlUTF8ToUnicodeN(textTarget, sizeof textTarget, &written, bytes, byteCount));
                });
            bench::Compare(
                {sample.encode, length, "RtlUnicodeToUTF8N"},
                [length] {
                    bench::Use(OrvConvertUtf162MbString(bytesTarget, sizeof bytesTarget, text,
                                                        OrvCodePageUtf8, nullptr, length));
                },
                [length] {
                    ULONG written = 0;
                    bench::Use(RtlUnicodeToUTF8N(bytesTarget, sizeof bytesTarget, &written, text,
                                                 length * sizeof(wchar_t)));
                });
        }
    }
}

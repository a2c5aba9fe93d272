// UTF-8 to UTF-16 and back, compared with the platform's own conversions.

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

/// Words of random length, because the speed of a conversion depends on how predictable its runs are.
struct Sample {
    const char *decode;
    const char *encode;
    wchar_t first;     ///< the first of the letters
    uint32_t letters;  ///< how many letters follow from there
    uint32_t accented; ///< how many in a hundred are from Latin-1 instead
    uint32_t wordLength;
};

const Sample kSamples[] = {
    {"ASCII from UTF-8", "ASCII to UTF-8", L'a', 26, 0, 12},
    {"Latin from UTF-8", "Latin to UTF-8", L'a', 26, 10, 12},
    {"Cyrillic from UTF-8", "Cyrillic to UTF-8", 0x0430, 32, 0, 12},
    {"Chinese from UTF-8", "Chinese to UTF-8", 0x4E00, 0x5000, 0, 40},
};

void Prepare(const Sample &sample, uint32_t length)
{
    uint32_t state = 1;
    const auto below = [&state](uint32_t limit) {
        state = state * 1664525 + 1013904223;
        return static_cast<uint32_t>(uint64_t(state) * limit >> 32);
    };
    for (uint32_t i = 0, word = 1; i < length; i++, word--) {
        if (word == 0)
            word = 2 + below(sample.wordLength);
        const uint32_t letter = sample.first + below(sample.letters);
        text[i] = static_cast<wchar_t>(word == 1                      ? L' '
                                       : below(100) < sample.accented ? 0xE0 + below(30)
                                                                      : letter);
    }
    OrvConvertUtf162MbString(bytes, sizeof bytes, text, OrvCodePageUtf8, &byteCount, length);
}

} // namespace

BENCHMARK(Utf8)
{
    for (const Sample &sample : kSamples) {
        for (const uint32_t length : kLengths) {
            Prepare(sample, length);
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

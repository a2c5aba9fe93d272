// Numbers and formatted text, compared with the C functions that ntdll.dll exports.

#include "bench.h"

#include "nt/programs.h"
#include "orv/orv.h"

namespace
{

struct {
    __int64 value;
    const wchar_t *text;
    uint32_t digits;
} const kNumbers[] = {
    {7, L"7", 1},
    {1234567, L"1234567", 7},
    {-9223372036854775807, L"-9223372036854775807", 19},
};

wchar_t target[256];

} // namespace

BENCHMARK(NumberToText)
{
    for (const auto &number : kNumbers) {
        const __int64 value = number.value;
        bench::Compare(
            {"number to text, digits", number.digits, "_i64tow"},
            [value] { bench::Use(OrvConvertNumber2String(target, 256, value, 10)); },
            [value] { bench::Use(_i64tow(value, target, 10)); });
    }
}

BENCHMARK(TextToNumber)
{
    for (const auto &number : kNumbers) {
        const wchar_t *const text = number.text;
        bench::Compare(
            {"text to number, digits", number.digits, "_wtoi64"},
            [text] {
                __int64 value = 0;
                bench::Use(OrvConvertString2Number(value, text, OrvTerminated, 10));
                bench::Use(value);
            },
            [text] { bench::Use(_wtoi64(text)); });
    }
}

BENCHMARK(Format)
{
    bench::Compare(
        {"format an object's name", 0, "_snwprintf"},
        [] {
            bench::Use(OrvFormatString(OrvCodePageDefault, target, 256, nullptr,
                                       L"\\Sessions\\%d\\BaseNamedObjects\\%s_%x", 1, L"Component", 0xBEEF));
        },
        [] {
            bench::Use(
                _snwprintf(target, 256, L"\\Sessions\\%d\\BaseNamedObjects\\%s_%x", 1, L"Component", 0xBEEF));
        });
    bench::Compare(
        {"format ten padded numbers", 0, "_snwprintf"},
        [] {
            bench::Use(OrvFormatString(OrvCodePageDefault, target, 256, nullptr,
                                       L"%02x%02x%02x%02x-%5d-%-5d-%05d-%u%u%u", 1, 2, 3, 4, 55555, 6, 7, 88,
                                       9, 10));
        },
        [] {
            bench::Use(_snwprintf(target, 256, L"%02x%02x%02x%02x-%5d-%-5d-%05d-%u%u%u", 1, 2, 3, 4, 55555, 6,
                                  7, 88, 9, 10));
        });
}

// Base64: the loops that the library chooses on this processor, compared with its own plain ones.

#include "bench.h"

#include "orv/orv.h"
#include "text/base64_blocks.h"

namespace
{

constexpr uint32_t kMostBytes = 0xC000;
constexpr uint32_t kMostCharacters = kMostBytes / 3 * 4;
constexpr uint32_t kSizes[] = {12, 96, kMostBytes};

uint8_t data[kMostBytes];
wchar_t text[kMostCharacters + 1];

} // namespace

BENCHMARK(Base64)
{
    for (uint32_t i = 0; i < kMostBytes; i++)
        data[i] = static_cast<uint8_t>(i * 167);
    for (const uint32_t size : kSizes) {
        bench::Compare(
            {"encode Base64, bytes", size, "the plain loop"},
            [size] {
                _ORV_UTF16CHAR_STR out = {0, kMostCharacters + 1, text};
                bench::Use(OrvBase64Encode(out, data, size));
            },
            [size] {
                detail::plain::EncodeBase64Groups(text, data, size / 3);
                bench::Use(text);
            });
        bench::Compare(
            {"decode Base64, bytes", size, "the plain loop"},
            [size] {
                bench::Use(
                    OrvBase64Decode(data, kMostBytes, text, size / 3 * 4, nullptr, OrvBase64IgnoreNothing));
            },
            [size] { bench::Use(detail::plain::DecodeBase64Groups(data, text, size / 3)); });
    }
}

// The inner loops of Base64. They convert whole groups: three bytes to four characters and back. Each loop
// exists in plain code and for SSSE3; both must give the same results. Text may be at any address.

#pragma once

#include <stdint.h>

#include "runtime/cpu.h"

namespace detail
{

constexpr uint32_t kBase64GroupBytes = 3;
constexpr uint32_t kBase64GroupCharacters = 4;

constexpr char kBase64Alphabet[] = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";

constexpr uint8_t kNotBase64 = 0xFF;

/// The value of each code unit; kNotBase64 outside the alphabet. Units from 127 on are outside.
struct Base64Values {
    uint8_t of[127];

    constexpr Base64Values() : of{}
    {
        for (uint8_t &value : of)
            value = kNotBase64;
        for (uint8_t i = 0; i < 64; i++)
            of[static_cast<uint8_t>(kBase64Alphabet[i])] = i;
    }
};

inline constexpr Base64Values kBase64Values;

inline uint32_t Base64Value(wchar_t character)
{
    return character < sizeof kBase64Values.of ? kBase64Values.of[character] : kNotBase64;
}

namespace plain
{

void EncodeBase64Groups(wchar_t *text, const uint8_t *data, uint32_t groups);
uint32_t DecodeBase64Groups(uint8_t *data, const wchar_t *text, uint32_t groups);

} // namespace plain

// May be called only if CpuHas(kCpuSsse3).
namespace ssse3
{

void EncodeBase64Groups(wchar_t *text, const uint8_t *data, uint32_t groups);
uint32_t DecodeBase64Groups(uint8_t *data, const wchar_t *text, uint32_t groups);

} // namespace ssse3

/// Encodes whole groups.
inline void EncodeBase64Groups(wchar_t *text, const uint8_t *data, uint32_t groups)
{
    if (CpuHas(kCpuSsse3))
        ssse3::EncodeBase64Groups(text, data, groups);
    else
        plain::EncodeBase64Groups(text, data, groups);
}

/// Decodes whole groups up to the first one with a character that is not in the alphabet. Returns their
/// number; nothing is written after their bytes.
inline uint32_t DecodeBase64Groups(uint8_t *data, const wchar_t *text, uint32_t groups)
{
    return CpuHas(kCpuSsse3) ? ssse3::DecodeBase64Groups(data, text, groups)
                             : plain::DecodeBase64Groups(data, text, groups);
}

} // namespace detail

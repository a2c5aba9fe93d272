// The messages that the hash tests take, and a digest printed.

#pragma once

#include <stdint.h>

namespace test
{

constexpr uint32_t kMessageBytes = 300;

/// Bytes that look like nothing in particular, at every length.
struct Message {
    uint8_t bytes[kMessageBytes];

    constexpr Message() : bytes{}
    {
        for (uint32_t i = 0; i < kMessageBytes; i++)
            bytes[i] = static_cast<uint8_t>(i * i * 7 + i * 31 + 5);
    }
};

inline constexpr Message kMessage;

/// Hexadecimal digits.
template <uint32_t size>
struct Hexadecimal {
    char text[2 * size + 1];

    explicit Hexadecimal(const uint8_t *bytes) : text{}
    {
        for (uint32_t i = 0; i < size; i++) {
            text[2 * i] = "0123456789abcdef"[bytes[i] >> 4];
            text[2 * i + 1] = "0123456789abcdef"[bytes[i] & 15];
        }
    }
};

} // namespace test

// A table's byte text in UTF-16, for tests that run every row in both widths.

#pragma once

#include "harness/memory.h"

namespace test
{

/// The length of terminated text.
inline uint32_t LengthOf(const char *text)
{
    uint32_t length = 0;
    while (text[length])
        length++;
    return length;
}

/// Each byte as the unit of the same value, and a terminator, at an unmapped page.
struct Wide {
    wchar_t *text;

    explicit Wide(const char *bytes) : text(GuardedArray<wchar_t>(LengthOf(bytes) + 1))
    {
        for (uint32_t i = 0; bytes[i]; i++)
            text[i] = static_cast<uint8_t>(bytes[i]);
    }
};

/// The bytes and their terminator, at an unmapped page.
inline const char *Guarded(const char *bytes)
{
    return GuardedCopy(bytes, LengthOf(bytes) + 1);
}

} // namespace test

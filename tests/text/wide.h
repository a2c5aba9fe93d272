// A table's byte text in UTF-16, for tests that run every row in both widths.

#pragma once

#include <stdint.h>

namespace test
{

/// Each byte as the unit of the same value.
struct Wide {
    wchar_t text[1024];

    explicit Wide(const char *bytes)
    {
        uint32_t i = 0;
        do
            text[i] = static_cast<uint8_t>(bytes[i]);
        while (bytes[i++]);
    }
};

} // namespace test

// Texts for tests: one test body for both character widths, texts laid against an unmapped page at any
// alignment, and generated texts.

#pragma once

#include "harness/memory.h"
#include "harness/test.h"

namespace test
{

/// Calls `body` with a unit of each width; what it needs is the unit's type.
template <typename Body>
void ForBothWidths(Body body)
{
    body(char());
    body(wchar_t());
}

/// ASCII text in either width.
template <typename T>
struct Ascii {
    T units[64] = {};

    Ascii(const char *text)
    {
        for (uint32_t i = 0; text[i]; i++)
            units[i] = static_cast<T>(text[i]);
    }
    operator const T *() const { return units; }
    operator T *() { return units; }
};

/// Numbers that look random and are the same in every run.
class Generator
{
public:
    uint32_t Below(uint32_t limit)
    {
        state_ = state_ * 1664525 + 1013904223;
        return static_cast<uint32_t>(uint64_t(state_) * limit >> 32);
    }

private:
    uint32_t state_ = 1;
};

/// A page before an unmapped one.
class GuardedPage
{
public:
    static constexpr uint32_t kSize = 0x1000;

    /// Where `count` units end `slack` bytes before the unmapped page. UTF-16 stands at odd addresses too, so
    /// units are written with `Set`.
    template <typename T>
    T *Place(uint32_t count, uint32_t slack)
    {
        return reinterpret_cast<T *>(bytes_ + kSize - slack - count * sizeof(T));
    }

    void Fill(uint8_t byte)
    {
        for (uint32_t i = 0; i < kSize; i++)
            bytes_[i] = byte;
    }

private:
    uint8_t *bytes_ = GuardedArray<uint8_t>(kSize);
};

template <typename T>
void Set(T *text, uint32_t index, T unit)
{
    auto *const bytes = reinterpret_cast<uint8_t *>(text + index);
    for (uint32_t i = 0; i < sizeof(T); i++)
        bytes[i] = static_cast<uint8_t>(static_cast<uint32_t>(unit) >> 8 * i);
}

template <typename T>
T Get(const T *text, uint32_t index)
{
    const auto *const bytes = reinterpret_cast<const uint8_t *>(text + index);
    uint32_t unit = 0;
    for (uint32_t i = 0; i < sizeof(T); i++)
        unit |= uint32_t(bytes[i]) << 8 * i;
    return static_cast<T>(unit);
}

} // namespace test

// Texts for tests: one test body for both character widths, texts laid against an unmapped page at any
// alignment, and generated texts.

#pragma once

#include "harness/memory.h"
#include "harness/test.h"
#include "text/vector.h"

namespace test
{

/// Calls `body` with a unit of each width; what it needs is the unit's type.
template <typename Body>
void ForBothWidths(Body body)
{
    body(char());
    body(wchar_t());
}

/// ASCII text in either width; without text, zeros.
template <typename T>
struct Ascii {
    T units[64] = {};

    Ascii(const char *text)
    {
        for (uint32_t i = 0; text && text[i]; i++)
            units[i] = static_cast<T>(text[i]);
    }
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

constexpr uint32_t kSlacks = 17; ///< bytes between a text and the unmapped page: every alignment

/// A page before an unmapped one. UTF-16 text may stand at odd addresses there, so it is written by
/// StoreUnit.
class GuardedPage
{
public:
    /// Where `count` units end `slack` bytes before the unmapped page.
    template <typename T>
    T *Place(uint32_t count, uint32_t slack)
    {
        return reinterpret_cast<T *>(bytes_ + kSize - slack - count * sizeof(T));
    }

    /// A place with `unitAt(i)` for every unit, and a terminator behind them.
    template <typename T, typename UnitAt>
    T *Make(uint32_t length, uint32_t slack, UnitAt unitAt)
    {
        T *const text = Place<T>(length + 1, slack);
        for (uint32_t i = 0; i < length; i++)
            detail::StoreUnit(text + i, static_cast<T>(unitAt(i)));
        detail::StoreUnit(text + length, T(0));
        return text;
    }

    void Fill(uint8_t byte)
    {
        for (uint32_t i = 0; i < kSize; i++)
            bytes_[i] = byte;
    }

private:
    static constexpr uint32_t kSize = 0x1000;

    uint8_t *bytes_ = GuardedArray<uint8_t>(kSize);
};

} // namespace test

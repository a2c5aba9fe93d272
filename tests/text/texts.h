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

/// Each byte of a text as the unit of the same value, in either width, and a terminator, at an unmapped page;
/// null text is empty.
template <typename T>
struct Ascii {
    T *units;

    /// With at least so many units.
    explicit Ascii(const char *text, uint32_t capacity = 0)
    {
        uint32_t length = 0;
        while (text && text[length])
            length++;
        units = GuardedArray<T>(capacity > length ? capacity : length + 1);
        for (uint32_t i = 0; i < length; i++)
            units[i] = static_cast<T>(static_cast<uint8_t>(text[i]));
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

/// Pages for texts. UTF-16 text may stand at odd addresses there, so it is written by StoreUnit.
class TextPages : public GuardedPages
{
public:
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
};

} // namespace test

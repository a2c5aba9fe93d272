// The command line, read argument by argument.

#pragma once

#include "orv/text/string.h"

namespace orvtool
{

/// Reads arguments from left to right. "--name=VALUE" and "--name VALUE" are the same; "--" ends the options,
/// and "-" alone is not an option.
class ArgumentReader
{
public:
    ArgumentReader(const wchar_t *const *arguments, uint32_t count)
        : next_(arguments), last_(arguments + count)
    {
    }

    bool IsAtEnd() const { return next_ == last_; }

    /// Takes the next argument, of any kind. Null after the last one.
    const wchar_t *Take();

    /// Takes the next argument if it is an option with one of these names (with its dashes).
    bool TakeOption(const wchar_t *name, const wchar_t *otherName = nullptr);

    /// The same for an option with a value. `value` is null when the value is missing.
    bool TakeValueOption(const wchar_t *name, const wchar_t *&value);

    /// Whether the next argument looks like an option.
    bool IsAtOption() const;

    /// The next argument, for error messages; empty at the end.
    const wchar_t *Peek() const { return next_ == last_ ? L"" : *next_; }

private:
    const wchar_t *const *next_;
    const wchar_t *const *last_;
    bool optionsEnded_ = false;
};

/// Whether two terminated texts are equal.
inline bool Equal(const wchar_t *left, const wchar_t *right)
{
    return OrvCompareString(left, right) == 0;
}

/// Whether an argument is a negative number, which is not an option.
inline bool IsNegativeNumber(const wchar_t *argument)
{
    return argument[0] == L'-' && argument[1] >= L'0' && argument[1] <= L'9';
}

/// Takes "-n COUNT" if that comes next; `isTaken` tells whether it did. False when the count is missing or
/// not a number.
bool TakeCount(ArgumentReader &arguments, uint32_t &count, bool &isTaken);

/// Reads a decimal number, or a hexadecimal one after 0x. The text must contain nothing else. A minus sign
/// negates the number within 32 bits.
bool ParseNumber(const wchar_t *text, uint32_t &number);

} // namespace orvtool

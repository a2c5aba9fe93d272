// The command line, read argument by argument.

#pragma once

#include "orv/text/string.h"

namespace orvtool
{

/// Reads arguments from left to right. "--name=VALUE" and "--name VALUE" are the same; "--" ends the options,
/// and a lone "-" is no option.
class ArgumentReader
{
public:
    ArgumentReader(const wchar_t *const *arguments, uint32_t count)
        : next_(arguments), last_(arguments + count)
    {
    }

    bool IsAtEnd() const { return next_ == last_; }

    /// Takes the next argument, whatever it is; null behind the last one.
    const wchar_t *Take();

    /// Takes the next argument if it is an option by this name (with its dashes) or by the other one.
    bool TakeOption(const wchar_t *name, const wchar_t *otherName = nullptr);

    /// The same for an option with a value. `value` is null when the value is missing.
    bool TakeValueOption(const wchar_t *name, const wchar_t *&value);

    /// Whether the next argument looks like an option.
    bool IsAtOption() const;

    /// What stands next, for error messages.
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

/// Whether an argument is a number below zero, which is no option.
inline bool IsNegativeNumber(const wchar_t *argument)
{
    return argument[0] == L'-' && argument[1] >= L'0' && argument[1] <= L'9';
}

/// Takes "-n COUNT" if it stands next, and says so in `isTaken`. False when the count is missing or none.
bool TakeCount(ArgumentReader &arguments, uint32_t &count, bool &isTaken);

/// A decimal number, or a hexadecimal one behind 0x; nothing else may stand in the text. A minus sign negates
/// it within 32 bits.
bool ParseNumber(const wchar_t *text, uint32_t &number);

} // namespace orvtool

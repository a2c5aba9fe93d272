// Reads the command line, and numbers in it.

#include "command_line.h"

#include "orv/text/number.h"

namespace orvtool
{

const wchar_t *ArgumentReader::Take()
{
    if (!optionsEnded_ && next_ != last_ && Equal(*next_, L"--")) {
        optionsEnded_ = true;
        next_++;
    }
    return next_ == last_ ? nullptr : *next_++;
}

bool ArgumentReader::IsAtOption() const
{
    return !optionsEnded_ && next_ != last_ && **next_ == L'-' && (*next_)[1] && !Equal(*next_, L"--");
}

bool ArgumentReader::TakeOption(const wchar_t *name, const wchar_t *otherName)
{
    if (!IsAtOption() || !(Equal(*next_, name) || (otherName && Equal(*next_, otherName))))
        return false;
    next_++;
    return true;
}

bool ArgumentReader::TakeValueOption(const wchar_t *name, const wchar_t *&value)
{
    if (!IsAtOption())
        return false;
    const wchar_t *argument = *next_;
    while (*name && *argument == *name) {
        argument++;
        name++;
    }
    if (*name || (*argument && *argument != L'='))
        return false;
    next_++;
    if (*argument)
        value = argument + 1;
    else
        value = next_ == last_ ? nullptr : *next_++;
    return true;
}

bool TakeCount(ArgumentReader &arguments, uint32_t &count, bool &isTaken)
{
    const wchar_t *value = nullptr;
    isTaken = arguments.TakeValueOption(L"-n", value);
    return !isTaken || (value && *value != L'-' && ParseNumber(value, count));
}

bool ParseNumber(const wchar_t *text, uint32_t &number)
{
    __int64 value = 0;
    const wchar_t *end = nullptr;
    if (!*text || OrvFailed(OrvConvertString2Number(value, text, OrvTerminated, 0, &end)))
        return false;
    number = static_cast<uint32_t>(value);
    return value >= INT32_MIN && value <= UINT32_MAX;
}

} // namespace orvtool

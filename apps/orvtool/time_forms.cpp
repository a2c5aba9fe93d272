// Reads and prints the forms of a time. The library makes every conversion; this file handles only the text
// around the numbers.

#include "time_forms.h"

#include "orv/runtime/result.h"
#include "orv/text/number.h"
#include "orv/text/string.h"
#include "orv/time/clock.h"
#include "orv/time/foreign_time.h"
#include "orv/time/time.h"

namespace orvtool
{

namespace
{

/// Whether the text is one number and nothing else. `value` receives the number.
template <typename Number>
bool ParseWhole(const wchar_t *text, uint32_t length, int radix, Number &value)
{
    const wchar_t *end = nullptr;
    return length && OrvSucceeded(OrvConvertString2Number(value, text, length, radix, &end));
}

/// Reads two hexadecimal numbers with a colon between them.
template <typename Number>
bool ParseHexadecimalPair(const wchar_t *text, Number &left, Number &right)
{
    const wchar_t *const colon = OrvFindElement(text, L':');
    return colon && *text != L'-' && colon[1] != L'-' &&
           ParseWhole(text, static_cast<uint32_t>(colon - text), 16, left) &&
           ParseWhole(colon + 1, OrvGetStringSizeInElements(colon + 1), 16, right);
}

TimeParse Outcome(OrvResult result)
{
    return OrvFailed(result) ? TimeParse::kRefused : TimeParse::kDone;
}

TimeParse ParseOrvTime(const wchar_t *text, OrvTime &time, OrvResult & /*result*/)
{
    const bool isNumber = ParseWhole(text, OrvGetStringSizeInElements(text), 0, time);
    return isNumber ? TimeParse::kDone : TimeParse::kNotOfThisForm;
}

OrvResult PrintOrvTime(Stream &out, OrvTime time)
{
    out.Print(L"%I64u\n", time);
    return ORV_S_OK;
}

TimeParse ParseFileTime(const wchar_t *text, OrvTime &time, OrvResult &result)
{
    unsigned long high = 0;
    unsigned long low = 0;
    if (!ParseHexadecimalPair(text, high, low)) {
        const bool isHexadecimal = text[0] == L'0' && (text[1] | 0x20) == L'x';
        uint64_t whole = 0;
        if (!isHexadecimal || !ParseWhole(text, OrvGetStringSizeInElements(text), 16, whole))
            return TimeParse::kNotOfThisForm;
        high = static_cast<unsigned long>(whole >> 32);
        low = static_cast<unsigned long>(whole);
    }
    result = OrvConvertWin32FileTimeToOrvTime(time, high, low);
    return Outcome(result);
}

OrvResult PrintFileTime(Stream &out, OrvTime time)
{
    uint32_t high = 0;
    uint32_t low = 0;
    const OrvResult result = OrvConvertOrvTimeToWin32FileTime(high, low, time);
    if (OrvSucceeded(result))
        out.Print(L"%08X:%08X\n", high, low);
    return result;
}

TimeParse ParseUnix(const wchar_t *text, OrvTime &time, OrvResult &result)
{
    int64_t seconds = 0;
    if (!ParseWhole(text, OrvGetStringSizeInElements(text), 10, seconds))
        return TimeParse::kNotOfThisForm;
    // Seconds outside the range of OrvTime would wrap.
    constexpr int64_t kFirst = -static_cast<int64_t>(OrvTimeFloor / OrvTimeUnitsPerSecond);
    constexpr auto kLast = static_cast<int64_t>((OrvTimeEnd - OrvTimeFloor) / OrvTimeUnitsPerSecond);
    result = seconds < kFirst || seconds > kLast ? ORV_E_TIME_OUT_OF_RANGE
                                                 : OrvConvertTimeTToOrvTime(time, seconds);
    return Outcome(result);
}

OrvResult PrintUnix(Stream &out, OrvTime time)
{
    int64_t seconds = 0;
    const OrvResult result = OrvConvertOrvTimeToTimeT(seconds, time);
    if (OrvSucceeded(result))
        out.Print(L"%I64d\n", seconds);
    return result;
}

TimeParse ParseVariant(const wchar_t *text, OrvTime &time, OrvResult &result)
{
    double days = 0;
    const wchar_t *end = nullptr;
    const uint32_t length = OrvGetStringSizeInElements(text);
    if (length == 0 || OrvFailed(OrvConvertString2Double(days, text, length, &end)))
        return TimeParse::kNotOfThisForm;
    result = OrvConvertVariantTimeToOrvTime(time, days);
    return Outcome(result);
}

OrvResult PrintVariant(Stream &out, OrvTime time)
{
    constexpr int kAllDigits = 17;
    wchar_t text[40];
    double days = 0;
    OrvResult result = OrvConvertOrvTimeToVariantTime(days, time);
    // From 2^63 units after its epoch on, the number has the wrong sign.
    if (OrvSucceeded(result) && days < 0)
        result = ORV_E_TIME_OUT_OF_RANGE;
    if (OrvSucceeded(result))
        result = OrvConvertDouble2String(text, sizeof text / sizeof text[0], days, kAllDigits);
    if (OrvSucceeded(result))
        out.Print(L"%s\n", text);
    return result;
}

TimeParse ParseDos(const wchar_t *text, OrvTime &time, OrvResult &result)
{
    uint16_t date = 0;
    uint16_t timeOfDay = 0;
    if (!ParseHexadecimalPair(text, date, timeOfDay))
        return TimeParse::kNotOfThisForm;
    result = OrvConvertDosDateTimeToOrvTime(time, date, timeOfDay);
    return Outcome(result);
}

OrvResult PrintDos(Stream &out, OrvTime time)
{
    uint16_t date = 0;
    uint16_t timeOfDay = 0;
    const OrvResult result = OrvConvertOrvTimeToDosDateTime(date, timeOfDay, time);
    if (OrvSucceeded(result))
        out.Print(L"%04X:%04X\n", date, timeOfDay);
    return result;
}

/// Reads an instant from left to right. After the first missing part all later calls fail.
class IsoReader
{
public:
    explicit IsoReader(const wchar_t *text) : next_(text) {}

    /// Takes a number of `least` to `most` digits.
    uint32_t Digits(uint32_t least, uint32_t most)
    {
        uint32_t value = 0;
        uint32_t count = 0;
        for (; isGood_ && count < most && IsDigit(); count++)
            value = value * 10 + (*next_++ - L'0');
        isGood_ = isGood_ && count >= least;
        return value;
    }

    void Expect(wchar_t character) { isGood_ = isGood_ && Take(character); }

    bool Take(wchar_t character)
    {
        const bool isThere = *next_ == character;
        next_ += isThere;
        return isThere;
    }

    /// Takes a point and the digits of a fraction of a second, if they are there, as nanoseconds.
    uint32_t Fraction()
    {
        uint32_t nanoseconds = 0;
        if (!isGood_ || !Take(L'.'))
            return nanoseconds;
        isGood_ = IsDigit();
        for (uint32_t unit = 100000000; unit && IsDigit(); unit /= 10)
            nanoseconds += (*next_++ - L'0') * unit;
        return nanoseconds;
    }

    bool IsDone() const { return isGood_ && *next_ == 0; }

private:
    bool IsDigit() const { return *next_ >= L'0' && *next_ <= L'9'; }

    const wchar_t *next_;
    bool isGood_ = true;
};

TimeParse ParseIso(const wchar_t *text, OrvTime &time, OrvResult &result)
{
    IsoReader reader(text);
    OrvTimeStruct parts;
    const uint32_t year = reader.Digits(4, 5);
    parts.year = static_cast<uint16_t>(year);
    reader.Expect(L'-');
    parts.month = static_cast<OrvMonth>(reader.Digits(2, 2));
    reader.Expect(L'-');
    parts.day = static_cast<uint16_t>(reader.Digits(2, 2));
    reader.Expect(L'T');
    parts.hour = static_cast<uint16_t>(reader.Digits(2, 2));
    reader.Expect(L':');
    parts.minute = static_cast<uint16_t>(reader.Digits(2, 2));
    reader.Expect(L':');
    parts.second = static_cast<uint16_t>(reader.Digits(2, 2));
    const uint32_t nanoseconds = reader.Fraction();
    parts.millisecond = static_cast<uint16_t>(nanoseconds / 1000000);
    parts.microsecond = static_cast<uint16_t>(nanoseconds / 1000 % 1000);
    parts.nanosecond = static_cast<uint16_t>(nanoseconds % 1000);
    const bool isUtc = reader.Take(L'Z');
    if (!reader.IsDone())
        return TimeParse::kNotOfThisForm;
    result = year <= UINT16_MAX ? OrvConvertStructToOrvTime(time, parts) : ORV_E_TIME_OUT_OF_RANGE;
    // In the structure this date is the end marker, but as text it is an ordinary day.
    if (result == ORV_S_END_OF_TIME)
        result = ORV_E_TIME_OUT_OF_RANGE;
    if (OrvSucceeded(result) && !isUtc)
        result = OrvConvertLocalTimeToSystemTime(time);
    return Outcome(result);
}

OrvResult PrintIso(Stream &out, OrvTime time)
{
    return PrintIsoTime(out, time, true);
}

constexpr TimeForm kForms[] = {
    {L"iso", ParseIso, PrintIso},
    {L"orvtime", ParseOrvTime, PrintOrvTime},
    {L"filetime", ParseFileTime, PrintFileTime},
    {L"unix", ParseUnix, PrintUnix},
    {L"variant", ParseVariant, PrintVariant},
    {L"dos", ParseDos, PrintDos},
};

} // namespace

const TimeForm *FindTimeForm(const wchar_t *name)
{
    for (const TimeForm &form : kForms) {
        if (OrvCompareString(form.name, name) == 0)
            return &form;
    }
    return nullptr;
}

OrvResult PrintIsoTime(Stream &out, OrvTime time, bool isUtc)
{
    OrvTimeStruct parts;
    const OrvResult result = OrvConvertOrvTimeToStruct(parts, time);
    if (result != ORV_S_OK)
        return result;
    out.Print(L"%04u-%02u-%02uT%02u:%02u:%02u.%03u%03u%03u%s\n", parts.year, parts.month, parts.day,
              parts.hour, parts.minute, parts.second, parts.millisecond, parts.microsecond, parts.nanosecond,
              isUtc ? L"Z" : L"");
    return ORV_S_OK;
}

} // namespace orvtool

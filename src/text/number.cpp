// Conversion of numbers to text and back: for each direction one worker for all value types and both
// character types.

#include "orv/text/number.h"

#include "orv/runtime/result.h"
#include "text/decimal_to_double.h"
#include "text/divide.h"
#include "text/double_parts.h"
#include "text/format_float.h"
#include "text/integer_digits.h"
#include "text/length.h"

namespace
{

constexpr int kLeastRadix = 2;
constexpr int kMostRadix = 36;

/// The limits of a value type that the parser needs.
struct Limits {
    uint64_t positive;
    uint64_t positiveHexadecimal; // hexadecimal text may contain the bits of a negative value
    uint64_t negative;            // the magnitude of the lowest value
};

template <typename V>
constexpr Limits LimitsOf()
{
    constexpr uint64_t kAllBits = UINT64_MAX >> (64 - 8 * sizeof(V));
    constexpr bool kSigned = static_cast<V>(-1) < 0;
    return kSigned ? Limits{kAllBits >> 1, kAllBits, (kAllBits >> 1) + 1} : Limits{kAllBits, kAllBits, 0};
}

/// Writes characters to a caller's array: as many as fit, and a terminator if there is room.
template <typename T>
class Target
{
public:
    Target(T *characters, uint32_t capacity) : characters_(characters), capacity_(capacity) {}

    template <typename C>
    void Write(const C *text, uint32_t count)
    {
        for (uint32_t i = 0; i < count && length_ < capacity_; i++)
            characters_[length_++] = static_cast<T>(text[i]);
    }

    void Fill(char character, uint32_t count)
    {
        for (uint32_t i = 0; i < count && length_ < capacity_; i++)
            characters_[length_++] = static_cast<T>(character);
    }

    OrvResult Finish(unsigned int *written)
    {
        if (written)
            *written = length_;
        if (length_ == capacity_)
            return ORV_E_BUFFER_TOO_SMALL;
        characters_[length_] = 0;
        return ORV_S_OK;
    }

private:
    T *characters_;
    uint32_t capacity_;
    uint32_t length_ = 0;
};

template <typename T>
__declspec(noinline) OrvResult WriteNumber(T *characters, uint32_t capacity, bool negative,
                                           uint64_t magnitude, int radix, unsigned int *written)
{
    if (!characters || radix < kLeastRadix || radix > kMostRadix)
        return ORV_E_INVALID_ARGUMENT;
    T storage[detail::kMostIntegerDigits + 1];
    T *const end = storage + sizeof storage / sizeof(T);
    T *first = end;
    if (magnitude)
        first = detail::WriteDigits(end, magnitude, static_cast<uint32_t>(radix), false);
    else
        *--first = '0';
    if (negative)
        *--first = '-';
    Target<T> target(characters, capacity);
    target.Write(first, static_cast<uint32_t>(end - first));
    return target.Finish(written);
}

template <typename T, typename V>
OrvResult NumberToString(T *target, uint32_t capacity, V value, int radix, unsigned int *written)
{
    const bool negative = value < 0;
    const auto bits = static_cast<uint64_t>(static_cast<__int64>(value)); // sign-extended
    return WriteNumber(target, capacity, negative, negative ? 0 - bits : bits, radix, written);
}

/// The value of a digit or letter; at least 36 for any other character.
template <typename T>
uint32_t DigitValue(T character)
{
    const uint32_t code = sizeof(T) == 1 ? static_cast<uint8_t>(character) : static_cast<uint32_t>(character);
    if (code - '0' < 10)
        return code - '0';
    const uint32_t letter = (code | 0x20) - 'a';
    return letter < 26 && code < 0x80 ? letter + 10 : UINT32_MAX;
}

/// Reads a text of digits from left to right. A terminated text is not measured first, because its terminator
/// is no digit.
template <typename T>
struct DigitText {
    DigitText(const T *text, uint32_t length)
        : next(text), last(length == OrvTerminated && text ? nullptr
                           : text                          ? text + length
                                                           : text)
    {
    }

    bool IsAtEnd() const { return next == last || (!last && *next == 0); }

    /// The value of the next digit, or a number that is not below any radix.
    uint32_t Peek() const { return next == last ? UINT32_MAX : DigitValue(*next); }

    const T *next;
    const T *last; ///< null for a terminated text and for a null text
};

/// Reports where reading stopped. To stop before the end is a failure only if the caller asks for the
/// position.
template <typename T>
OrvResult Finish(const T *next, bool isAtEnd, const T **end)
{
    if (isAtEnd || !end)
        return ORV_S_OK;
    *end = next;
    return ORV_E_INVALID_ARGUMENT;
}

/// Reads the digits of a number, and stops before a digit that would take it above `limit`. Most numbers fit
/// into 32 bits, and a 64-bit multiplication costs three of 32 bits, so the sum is widened only when needed.
/// Only the last digits have to be compared with the limit.
template <typename T>
uint64_t ReadDigits(DigitText<T> &text, uint32_t radix, uint64_t limit)
{
    // While the sum is below a 64th of the limit, another digit of any radix keeps it within the limit. For
    // negative numbers of an unsigned type the limit is 0.
    const auto narrowLimit = static_cast<uint32_t>(limit > UINT32_MAX ? UINT32_MAX : limit) / 64;
    uint32_t narrow = 0;
    uint32_t digit = text.Peek();
    for (; digit < radix && narrow < narrowLimit; digit = text.Peek()) {
        narrow = narrow * radix + digit;
        text.next++;
    }
    uint64_t value = narrow;
    const auto wideLimit = static_cast<uint32_t>(limit >> 38); // a 64th of the limit's upper half
    for (; digit < radix && value >> 32 < wideLimit; digit = text.Peek()) {
        value = value * radix + digit;
        text.next++;
    }
    if (digit >= radix)
        return value;
    uint64_t whole = limit;
    const uint32_t part = detail::DivideInPlace(whole, radix);
    for (; digit < radix && (value < whole || (value == whole && digit <= part)); digit = text.Peek()) {
        value = value * radix + digit;
        text.next++;
    }
    return value;
}

/// Reads a number of any value type. The caller cuts `bits` to the type's width.
template <typename T>
__declspec(noinline) OrvResult ReadNumber(uint64_t &bits, const Limits &limits, const T *characters,
                                          uint32_t length, int radix, const T **end)
{
    DigitText<T> text(characters, length);
    const bool negative = !text.IsAtEnd() && *text.next == '-';
    text.next += negative;
    if ((radix == 0 || radix == 16) && text.Peek() == 0) {
        DigitText<T> behind = text;
        behind.next++;
        if (!behind.IsAtEnd() && (*behind.next == 'x' || *behind.next == 'X')) {
            behind.next++;
            if (radix == 16 || !behind.IsAtEnd()) {
                radix = 16;
                text = behind;
            }
        }
    }
    if (radix == 0)
        radix = 10;
    const uint64_t limit = negative      ? limits.negative
                           : radix == 16 ? limits.positiveHexadecimal
                                         : limits.positive;
    bits = ReadDigits(text, static_cast<uint32_t>(radix), limit);
    if (negative)
        bits = 0 - bits;
    return Finish(text.next, text.IsAtEnd(), end);
}

template <typename T, typename V>
OrvResult StringToNumber(V &value, const T *text, uint32_t length, int radix, const T **end)
{
    static constexpr Limits kLimits = LimitsOf<V>();
    if (end)
        *end = nullptr;
    if (radix != 0 && (radix < kLeastRadix || radix > kMostRadix))
        return ORV_E_INVALID_ARGUMENT;
    uint64_t bits = 0;
    const OrvResult result = ReadNumber(bits, kLimits, text, length, radix, end);
    value = static_cast<V>(bits);
    return result;
}

template <typename T>
__declspec(noinline) OrvResult
    DoubleToString(T *characters, uint32_t capacity, double value, int digits, unsigned int *written)
{
    if (!characters)
        return ORV_E_INVALID_ARGUMENT;
    detail::FormatDirective directive = {};
    directive.conversion = 'e';
    directive.precisionGiven = digits > 0;
    directive.precision = static_cast<uint32_t>(digits) - 1;
    const detail::FloatText number(directive, value);
    Target<T> target(characters, capacity);
    target.Write(&number.sign, number.sign ? 1 : 0);
    for (uint32_t i = 0; i < number.pieceCount; i++) {
        const detail::FloatText::Piece &piece = number.pieces[i];
        if (piece.text)
            target.Write(piece.text, piece.length);
        else
            target.Fill('0', piece.length);
    }
    return target.Finish(written);
}

template <typename T>
OrvResult StringToDouble(double &value, const T *text, uint32_t length, const T **end,
                         OrvString2DoubleMode mode)
{
    if (end)
        *end = nullptr;
    if (mode != OrvString2DoubleDecimal)
        return ORV_E_INVALID_ARGUMENT;
    length = detail::ResolveLength(text, length);
    const T *const next = detail::ParseDouble(text, length, value);
    return Finish(next, next == text + length, end);
}

} // namespace

// The public overloads, one value type after another.

#define ORV_DEFINE_NUMBER(T, V)                                                                              \
    OrvResult OrvConvertNumber2String(T *target, uint32_t capacity, V value, int radix,                      \
                                      unsigned int *written)                                                 \
    {                                                                                                        \
        return NumberToString(target, capacity, value, radix, written);                                      \
    }                                                                                                        \
    OrvResult OrvConvertString2Number(V &value, const T *text, uint32_t length, int radix, const T **end)    \
    {                                                                                                        \
        return StringToNumber(value, text, length, radix, end);                                              \
    }

#define ORV_DEFINE_NUMBERS(T)                                                                                \
    ORV_DEFINE_NUMBER(T, signed char)                                                                        \
    ORV_DEFINE_NUMBER(T, unsigned char)                                                                      \
    ORV_DEFINE_NUMBER(T, short)                                                                              \
    ORV_DEFINE_NUMBER(T, unsigned short)                                                                     \
    ORV_DEFINE_NUMBER(T, int)                                                                                \
    ORV_DEFINE_NUMBER(T, unsigned long)                                                                      \
    ORV_DEFINE_NUMBER(T, __int64)                                                                            \
    ORV_DEFINE_NUMBER(T, unsigned __int64)                                                                   \
    OrvResult OrvConvertSize2String(T *target, uint32_t capacity, unsigned int value, int radix,             \
                                    unsigned int *written)                                                   \
    {                                                                                                        \
        return NumberToString(target, capacity, value, radix, written);                                      \
    }                                                                                                        \
    OrvResult OrvConvertFileSize2String(T *target, uint32_t capacity, __int64 value, int radix,              \
                                        unsigned int *written)                                               \
    {                                                                                                        \
        return NumberToString(target, capacity, value, radix, written);                                      \
    }                                                                                                        \
    OrvResult OrvConvertString2Size(unsigned int &value, const T *text, uint32_t length, int radix,          \
                                    const T **end)                                                           \
    {                                                                                                        \
        return StringToNumber(value, text, length, radix, end);                                              \
    }                                                                                                        \
    OrvResult OrvConvertString2FileSize(__int64 &value, const T *text, uint32_t length, int radix,           \
                                        const T **end)                                                       \
    {                                                                                                        \
        return StringToNumber(value, text, length, radix, end);                                              \
    }                                                                                                        \
    OrvResult OrvConvertDouble2String(T *target, uint32_t capacity, double value, int digits,                \
                                      unsigned int *written)                                                 \
    {                                                                                                        \
        return DoubleToString(target, capacity, value, digits, written);                                     \
    }                                                                                                        \
    OrvResult OrvConvertString2Double(double &value, const T *text, uint32_t length, const T **end,          \
                                      OrvString2DoubleMode mode)                                             \
    {                                                                                                        \
        return StringToDouble(value, text, length, end, mode);                                               \
    }

ORV_DEFINE_NUMBERS(char)
ORV_DEFINE_NUMBERS(wchar_t)

double OrvModf(double value, double &integral)
{
    const detail::DoubleParts parts(value);
    if (!parts.IsFinite()) {
        integral = value;
        return parts.IsNan() ? value : detail::MakeDouble(parts.negative, 0);
    }
    // The bits of the fraction are those worth less than 1.
    const int fractionBits = -parts.Exponent();
    if (fractionBits <= 0) {
        integral = value;
        return detail::MakeDouble(parts.negative, 0);
    }
    if (fractionBits > detail::kMantissaBits) {
        integral = detail::MakeDouble(parts.negative, 0);
        return value;
    }
    uint64_t bits = 0;
    __builtin_memcpy(&bits, &value, sizeof bits);
    integral = detail::MakeDouble(parts.negative, bits & ~((uint64_t{1} << fractionBits) - 1));
    const double fraction = value - integral; // exact: the difference needs no bit that `value` does not have
    return fraction == 0 ? detail::MakeDouble(parts.negative, 0) : fraction;
}

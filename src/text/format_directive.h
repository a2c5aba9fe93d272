// The grammar of a format directive: flags, width, precision, size modifier and conversion, and their parser.

#pragma once

#include <stdint.h>

namespace detail
{

enum class SizeModifier : uint8_t {
    kNone,
    kWide,     // w
    kByte,     // hh
    kShort,    // h
    kLong,     // l
    kPointer,  // I, z
    kInt32,    // I32
    kInt64,    // I64
    kLongLong, // ll
};

struct FormatDirective {
    bool leftJustify;
    bool plus;
    bool zeroPad;
    bool space;
    bool alternate;
    bool upperCase;
    bool precisionGiven;
    bool widthFromArgument;
    bool precisionFromArgument;
    SizeModifier modifier;
    char conversion;
    uint32_t width;
    uint32_t precision;
};

struct SizeModifierText {
    char text[4];
    SizeModifier modifier;
};

/// In the order in which they are tried: a longer modifier precedes one that is its beginning.
constexpr SizeModifierText kSizeModifiers[] = {
    {"I32", SizeModifier::kInt32}, {"I64", SizeModifier::kInt64}, {"ll", SizeModifier::kLongLong},
    {"hh", SizeModifier::kByte},   {"l", SizeModifier::kLong},    {"h", SizeModifier::kShort},
    {"w", SizeModifier::kWide},    {"I", SizeModifier::kPointer}, {"z", SizeModifier::kPointer},
};

/// Parses decimal digits. A value beyond 32 bits becomes the largest one.
template <typename T>
const T *ParseDecimal(const T *next, uint32_t &value)
{
    uint64_t sum = 0;
    for (; *next >= '0' && *next <= '9'; next++) {
        sum = sum * 10 + static_cast<uint32_t>(*next - '0');
        if (sum > UINT32_MAX)
            sum = UINT32_MAX;
    }
    value = static_cast<uint32_t>(sum);
    return next;
}

/// Parses a number, or a star, which takes the number from an argument.
template <typename T>
const T *ParseCount(const T *next, uint32_t &value, bool &fromArgument)
{
    if (*next != '*')
        return ParseDecimal(next, value);
    fromArgument = true;
    return next + 1;
}

template <typename T>
const T *ParseFlags(const T *next, FormatDirective &directive)
{
    for (;; next++) {
        switch (*next) {
        case ' ':
            directive.space = true;
            break;
        case '#':
            directive.alternate = true;
            break;
        case '+':
            directive.plus = true;
            break;
        case '-':
            directive.leftJustify = true;
            break;
        case '0':
            directive.zeroPad = true;
            break;
        default:
            return next;
        }
    }
}

/// Parses a size modifier. It counts only when a character follows it; otherwise its first character may be
/// the conversion.
template <typename T>
const T *ParseModifier(const T *next, FormatDirective &directive)
{
    for (const SizeModifierText &candidate : kSizeModifiers) {
        uint32_t length = 0;
        while (candidate.text[length] && next[length] == static_cast<T>(candidate.text[length]))
            length++;
        if (!candidate.text[length] && next[length]) {
            directive.modifier = candidate.modifier;
            return next + length;
        }
    }
    return next;
}

/// Parses the directive after a percent sign in a terminated format. Returns the end of the directive, or
/// null when there is no directive.
template <typename T>
__declspec(noinline) const T *ParseDirective(const T *next, FormatDirective &directive)
{
    directive = {};
    next = ParseFlags(next, directive);
    next = ParseCount(next, directive.width, directive.widthFromArgument);
    if (*next == '.') {
        directive.precisionGiven = true;
        next = ParseCount(next + 1, directive.precision, directive.precisionFromArgument);
    }
    next = ParseModifier(next, directive);
    // This includes the terminator, and every byte above 127, which is negative as a signed char.
    if (*next < 32 || *next > 127)
        return nullptr;
    directive.conversion = static_cast<char>(*next);
    directive.upperCase =
        directive.conversion == 'X' || directive.conversion == 'E' || directive.conversion == 'G';
    return next + 1;
}

} // namespace detail

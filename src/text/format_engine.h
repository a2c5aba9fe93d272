// The format engine: one loop for every target and both character types, as a template over the sink.
//
// Each piece of output is written as soon as it is known: literal runs and strings directly from their own
// memory, numbers from a small array on the stack. Nothing is measured twice. Memory is allocated only for a
// text of the other character type that is too long for an array on the stack.

#pragma once

#include <stdarg.h>

#include "nt/nt.h"
#include "orv/base.h"
#include "orv/runtime/result.h"
#include "orv/text/code_page.h"
#include "orv/text/string.h"
#include "text/converted_text.h"
#include "text/format_directive.h"
#include "text/format_field.h"
#include "text/format_float.h"
#include "text/format_number.h"

namespace detail
{

/// The page of byte strings, and whether the caller gave one: only then do the modifiers l and h of strings
/// have a meaning.
struct FormatCodePage {
    OrvCodePage page;
    bool given;
};

/// The platform's counted string for a character type.
template <typename T>
struct CountedStringOf;
template <>
struct CountedStringOf<wchar_t> {
    typedef UNICODE_STRING Type;
};
template <>
struct CountedStringOf<char> {
    typedef ANSI_STRING Type;
};

template <typename T>
struct OtherWidth;
template <>
struct OtherWidth<wchar_t> {
    typedef char Type;
};
template <>
struct OtherWidth<char> {
    typedef wchar_t Type;
};

template <typename Sink>
class FormatEngine
{
public:
    typedef typename Sink::Character T;
    typedef typename OtherWidth<T>::Type Other;

    FormatEngine(Sink &sink, FormatCodePage codePage, va_list arguments) : sink_(sink), codePage_(codePage)
    {
        va_copy(arguments_, arguments);
    }
    FormatEngine(const FormatEngine &) = delete;
    FormatEngine &operator=(const FormatEngine &) = delete;
    ~FormatEngine() { va_end(arguments_); }

    OrvResult Run(const T *format)
    {
        for (;;) {
            const T *percent = format;
            while (*percent && *percent != '%')
                percent++;
            OrvResult result = Write(format, percent);
            if (OrvFailed(result))
                return result;
            if (!*percent)
                return ORV_S_OK; // also when the target returned another success code
            FormatDirective directive;
            const T *const next = ParseDirective(percent + 1, directive);
            result = next ? WriteDirective(directive, percent, next) : Write(percent, percent + 1);
            if (OrvFailed(result))
                return result;
            format = next ? next : percent + 1;
        }
    }

private:
    static constexpr bool kUtf16 = sizeof(T) == sizeof(wchar_t);

    OrvResult Write(const T *first, const T *last)
    {
        return first == last ? ORV_S_OK : sink_.Write(first, static_cast<uint32_t>(last - first));
    }

    OrvResult Fill(char character, uint32_t count)
    {
        return count ? sink_.Fill(static_cast<T>(character), count) : ORV_S_OK;
    }

    __declspec(noinline) OrvResult WriteDirective(FormatDirective &directive, const T *first, const T *last)
    {
        switch (directive.conversion) {
        case '%':
            TakeCounts(directive);
            return Fill('%', 1);
        case 'd':
        case 'i':
        case 'u':
        case 'o':
        case 'x':
        case 'X':
            return directive.modifier == SizeModifier::kWide ? ORV_S_OK : WriteInteger(directive);
        case 'p':
            TakeCounts(directive);
            return WriteNumber(directive, FormatPointer<T>(directive, va_arg(arguments_, uint32_t)));
        case 'e':
        case 'E':
        case 'f':
        case 'g':
        case 'G':
            return WriteFloat(directive);
        case 'c': {
            TakeCounts(directive);
            const auto character = static_cast<T>(va_arg(arguments_, uint32_t));
            return WritePadded(directive, &character, 1);
        }
        case 's':
            if (directive.modifier == SizeModifier::kNone ||
                (codePage_.given && IsOwnWidth(directive.modifier)))
                return WriteTerminated(directive);
            if (codePage_.given && IsOtherWidth(directive.modifier))
                return WriteTerminatedOther(directive);
            break;
        case 'Z':
            if (directive.modifier == SizeModifier::kWide)
                return kUtf16 ? WriteCounted(directive) : WriteCountedOther(directive);
            if (directive.modifier == SizeModifier::kNone)
                return kUtf16 ? WriteCountedOther(directive) : WriteCounted(directive);
            break;
        default:
            break;
        }
        return Write(first, last);
    }

    static bool IsOwnWidth(SizeModifier modifier)
    {
        return modifier == (kUtf16 ? SizeModifier::kLong : SizeModifier::kShort);
    }

    static bool IsOtherWidth(SizeModifier modifier)
    {
        return modifier == (kUtf16 ? SizeModifier::kShort : SizeModifier::kLong);
    }

    /// Takes width and precision from the arguments when they were given as stars.
    void TakeCounts(FormatDirective &directive)
    {
        if (directive.widthFromArgument) {
            const auto width = va_arg(arguments_, int32_t);
            directive.leftJustify |= width < 0;
            directive.width = width < 0 ? 0u - static_cast<uint32_t>(width) : static_cast<uint32_t>(width);
        }
        if (directive.precisionFromArgument) {
            const auto precision = va_arg(arguments_, int32_t);
            directive.precisionGiven = precision >= 0;
            directive.precision = static_cast<uint32_t>(precision);
        }
    }

    OrvResult WriteInteger(FormatDirective &directive)
    {
        TakeCounts(directive);
        const bool isSigned = directive.conversion == 'd' || directive.conversion == 'i';
        uint64_t value = 0;
        switch (directive.modifier) {
        case SizeModifier::kInt64:
        case SizeModifier::kLongLong:
            value = va_arg(arguments_, uint64_t);
            break;
        case SizeModifier::kByte: {
            const auto narrow = static_cast<uint8_t>(va_arg(arguments_, uint32_t));
            value = isSigned ? static_cast<uint64_t>(static_cast<int8_t>(narrow)) : narrow;
            break;
        }
        case SizeModifier::kShort: {
            const auto narrow = static_cast<uint16_t>(va_arg(arguments_, uint32_t));
            value = isSigned ? static_cast<uint64_t>(static_cast<int16_t>(narrow)) : narrow;
            break;
        }
        default: {
            const auto word = va_arg(arguments_, uint32_t);
            value = isSigned ? static_cast<uint64_t>(static_cast<int32_t>(word)) : word;
            break;
        }
        }
        if (isSigned)
            return WriteNumber(directive, FormatSigned<T>(directive, static_cast<int64_t>(value)));
        return WriteNumber(directive, FormatUnsigned<T>(directive, value));
    }

    __declspec(noinline) OrvResult WriteNumber(const FormatDirective &directive, const NumberText<T> &number)
    {
        uint32_t zeros = number.zeros;
        const uint32_t length = number.prefixLength + zeros + number.digitCount;
        const uint32_t padding = directive.width > length ? directive.width - length : 0;
        const bool padWithZeros = directive.zeroPad && !directive.leftJustify;
        if (padWithZeros)
            zeros += padding;
        FormatField<Sink> field(sink_);
        if (!padWithZeros && !directive.leftJustify)
            field.Fill(' ', padding);
        field.Write(number.prefix, number.prefixLength);
        field.Fill('0', zeros);
        field.Write(number.Digits(), number.digitCount);
        if (directive.leftJustify)
            field.Fill(' ', padding);
        return field.Finish();
    }

    __declspec(noinline) OrvResult WriteFloat(FormatDirective &directive)
    {
        TakeCounts(directive);
        const FloatText number(directive, va_arg(arguments_, double));
        const uint64_t length = number.length + (number.sign ? 1 : 0);
        const uint32_t padding =
            directive.width > length ? directive.width - static_cast<uint32_t>(length) : 0;
        const bool padWithZeros = directive.zeroPad && !directive.leftJustify && number.isNumber;
        FormatField<Sink> field(sink_);
        if (!padWithZeros && !directive.leftJustify)
            field.Fill(' ', padding);
        field.WriteNarrow(&number.sign, number.sign ? 1 : 0);
        if (padWithZeros)
            field.Fill('0', padding);
        for (uint32_t i = 0; i < number.pieceCount; i++) {
            const FloatText::Piece &piece = number.pieces[i];
            if (piece.text)
                field.WriteNarrow(piece.text, piece.length);
            else
                field.Fill('0', piece.length);
        }
        if (directive.leftJustify)
            field.Fill(' ', padding);
        return field.Finish();
    }

    OrvResult WriteTerminated(FormatDirective &directive)
    {
        TakeCounts(directive);
        const T *const text = va_arg(arguments_, const T *);
        if (!text)
            return WriteNull(directive);
        // The text is read only up to the precision; it need not be terminated there.
        const uint32_t length = directive.precisionGiven
                                    ? OrvGetStringSizeInElements(text, directive.precision)
                                    : OrvGetStringSizeInElements(text);
        return WritePadded(directive, text, length);
    }

    OrvResult WriteCounted(FormatDirective &directive)
    {
        TakeCounts(directive);
        const auto *const string = va_arg(arguments_, const typename CountedStringOf<T>::Type *);
        if (!string || (!string->Buffer && string->Length))
            return WriteNull(directive);
        uint32_t length = string->Length / sizeof(T);
        if (directive.precisionGiven && directive.precision < length)
            length = directive.precision;
        return WritePadded(directive, string->Buffer, length);
    }

    OrvResult WriteTerminatedOther(FormatDirective &directive)
    {
        TakeCounts(directive);
        const Other *const text = va_arg(arguments_, const Other *);
        return text ? WriteConverted(directive, text, OrvGetStringSizeInElements(text))
                    : WriteNull(directive);
    }

    OrvResult WriteCountedOther(FormatDirective &directive)
    {
        TakeCounts(directive);
        const auto *const string = va_arg(arguments_, const typename CountedStringOf<Other>::Type *);
        if (!string || (!string->Buffer && string->Length))
            return WriteNull(directive);
        return WriteConverted(directive, string->Buffer, string->Length / sizeof(Other));
    }

    /// Writes text of the other character type. The precision counts characters of the output, because a cut
    /// in the source could be inside a character. An empty text prints nothing, not even padding.
    __declspec(noinline) OrvResult
        WriteConverted(const FormatDirective &directive, const Other *text, uint32_t length)
    {
        if (length == 0)
            return ORV_S_OK;
        ConvertedText<T> converted;
        const OrvResult result = converted.Convert(text, codePage_.page, length);
        if (OrvFailed(result))
            return result;
        const bool cut = directive.precisionGiven && directive.precision < converted.Length();
        return WritePadded(directive, converted.Get(), cut ? directive.precision : converted.Length());
    }

    OrvResult WriteNull(const FormatDirective &directive)
    {
        static constexpr T kNull[] = {'(', 'n', 'u', 'l', 'l', ')'};
        uint32_t length = sizeof kNull / sizeof(T);
        if (directive.precisionGiven && directive.precision < length)
            length = directive.precision;
        return WritePadded(directive, kNull, length);
    }

    /// Writes text padded with spaces.
    __declspec(noinline) OrvResult
        WritePadded(const FormatDirective &directive, const T *text, uint32_t length)
    {
        const uint32_t padding = directive.width > length ? directive.width - length : 0;
        if (padding == 0)
            return Write(text, text + length);
        FormatField<Sink> field(sink_);
        if (!directive.leftJustify)
            field.Fill(' ', padding);
        field.Write(text, length);
        if (directive.leftJustify)
            field.Fill(' ', padding);
        return field.Finish();
    }

    Sink &sink_;
    const FormatCodePage codePage_;
    va_list arguments_;
};

} // namespace detail

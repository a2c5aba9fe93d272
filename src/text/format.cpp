// The public formatting functions: each makes a sink for its target, runs the format engine, and after a
// failure leaves the target in the promised state.

#include "orv/text/format.h"

#include "orv/runtime/result.h"
#include "text/format_engine.h"
#include "text/format_sinks.h"

namespace
{

using detail::FormatCodePage;

// Functions without a code page convert counted strings with the platform's own page.
constexpr FormatCodePage kNoCodePage = {OrvCodePageDefault, false};

template <typename Sink>
OrvResult Format(Sink &sink, FormatCodePage codePage, const typename Sink::Character *format,
                 va_list arguments)
{
    return detail::FormatEngine<Sink>(sink, codePage, arguments).Run(format);
}

template <typename T>
OrvResult FormatArray(OrvCodePage codePage, T *buffer, uint32_t capacity, const T *format, uint32_t *written,
                      va_list arguments)
{
    if (!buffer || capacity == 0 || !format)
        return ORV_E_INVALID_ARGUMENT;
    detail::ArraySink<T> sink(buffer, capacity - 1);
    const OrvResult result = Format(sink, {codePage, true}, format, arguments);
    const uint32_t length = sink.Terminate();
    if (written)
        *written = length;
    return result;
}

template <typename T>
OrvResult FormatBehind(detail::ReferenceSink<T> &sink, uint32_t length, const T *format, va_list arguments)
{
    const OrvResult result = Format(sink, kNoCodePage, format, arguments);
    if (OrvFailed(result))
        sink.Resize(length); // shrinking needs no memory
    return result;
}

template <typename T>
OrvResult FormatAppendable(OrvBasAppendable<T> &target, const T *format, va_list arguments)
{
    if (!format)
        return ORV_E_INVALID_ARGUMENT;
    detail::AppendableSink<T> sink(target);
    return Format(sink, kNoCodePage, format, arguments);
}

} // namespace

OrvResult OrvFormatStringV(OrvCodePage codePage, wchar_t *buffer, uint32_t capacity, const wchar_t *format,
                           uint32_t *written, va_list arguments)
{
    return FormatArray(codePage, buffer, capacity, format, written, arguments);
}

OrvResult OrvFormatStringV(OrvCodePage codePage, char *buffer, uint32_t capacity, const char *format,
                           uint32_t *written, va_list arguments)
{
    return FormatArray(codePage, buffer, capacity, format, written, arguments);
}

OrvResult OrvFormatStringV(OrvCodePage codePage, _ORV_UTF16CHAR_STR &target, const wchar_t *format,
                           va_list arguments)
{
    uint32_t length = 0;
    const OrvResult result =
        FormatArray(codePage, target.characters, target.capacity, format, &length, arguments);
    if (OrvSucceeded(result))
        target.length = length;
    return result;
}

OrvResult OrvFormatStringV(OrvCodePage codePage, OrvUtf16CharHeapBuffer &target, const wchar_t *format,
                           va_list arguments)
{
    if (!format)
        return ORV_E_INVALID_ARGUMENT;
    constexpr uint32_t kFirstSize = 256;
    constexpr uint32_t kLargestSize = 0x40000000; // twice as many characters exceed the address space
    uint32_t size = target.GetCapacity() <= kFirstSize ? kFirstSize : target.GetCapacity() - 1;
    OrvResult result = target.ReserveElements(size + 1);
    if (OrvFailed(result))
        return result; // nothing has been written yet
    for (;;) {
        uint32_t length = 0;
        result = FormatArray(codePage, target.GetBuffer(), target.GetCapacity(), format, &length, arguments);
        if (OrvSucceeded(result)) {
            target.GetInternal().length = length;
            return result;
        }
        if (result == ORV_E_BUFFER_TOO_SMALL) {
            size *= 2;
            result = size > kLargestSize ? ORV_E_OUT_OF_MEMORY : target.ReserveElements(size + 1);
        }
        if (OrvFailed(result)) {
            target.Resize(0); // the previous text is already overwritten
            return result;
        }
    }
}

OrvResult OrvAppendFormatStringV(OrvCodePage codePage, OrvUtf16CharHeapBuffer &target, const wchar_t *format,
                                 va_list arguments)
{
    return OrvFormatStringV(codePage, target, format, arguments);
}

OrvResult OrvFormatStringV(const OrvMutableStringRefBase2<wchar_t, 0> &target, const wchar_t *format,
                           va_list arguments)
{
    if (!format)
        return ORV_E_INVALID_ARGUMENT;
    detail::ReferenceSink<wchar_t> sink(target);
    const OrvResult result = sink.Resize(0);
    return OrvFailed(result) ? result : FormatBehind(sink, 0, format, arguments);
}

OrvResult OrvAppendFormatStringV(const OrvMutableStringRefBase2<wchar_t, 0> &target, const wchar_t *format,
                                 va_list arguments)
{
    if (!format)
        return ORV_E_INVALID_ARGUMENT;
    detail::ReferenceSink<wchar_t> sink(target);
    return FormatBehind(sink, target.view.length, format, arguments);
}

OrvResult OrvBasAppendFormatV(OrvBasAppendable<char> &target, const char *format, va_list arguments)
{
    return FormatAppendable(target, format, arguments);
}

OrvResult OrvBasAppendFormatV(OrvBasAppendable<wchar_t> &target, const wchar_t *format, va_list arguments)
{
    return FormatAppendable(target, format, arguments);
}

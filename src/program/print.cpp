// OrvPrint and OrvPrintError: formatted output to the standard streams.

#include "nt/teb.h"
#include "orv/program/program.h"
#include "orv/runtime/result.h"
#include "orv/text/code_page.h"
#include "orv/text/format.h"
#include "program/standard_stream.h"

namespace
{

OrvResult PrintTo(HANDLE stream, const wchar_t *format, va_list arguments)
{
    OrvUtf16CharHeapBuffer text;
    OrvResult result = OrvFormatStringV(OrvCodePageUtf8, text, format, arguments);
    if (OrvFailed(result))
        return result;
    const OrvCodePage page = detail::IsConsole(stream) ? OrvCodePageOem : OrvCodePageUtf8;
    const uint32_t length = text.GetInternal().length;
    uint32_t size = 0;
    OrvMbCharHeapBuffer bytes;
    result = OrvGetUtf162MbStringSize(size, text.GetValue(), page, length);
    if (OrvSucceeded(result))
        result = bytes.ReserveElements(size);
    if (OrvSucceeded(result))
        result = OrvConvertUtf162MbString(bytes.GetBuffer(), bytes.GetCapacity(), text.GetValue(), page,
                                          &size, length);
    return OrvFailed(result) ? result : detail::WriteToStream(stream, bytes.GetBuffer(), size);
}

} // namespace

OrvResult OrvPrint(const wchar_t *format, ...)
{
    va_list arguments;
    va_start(arguments, format);
    const OrvResult result = PrintTo(NtCurrentPeb()->ProcessParameters->StandardOutput, format, arguments);
    va_end(arguments);
    return result;
}

OrvResult OrvPrintError(const wchar_t *format, ...)
{
    va_list arguments;
    va_start(arguments, format);
    const OrvResult result = PrintTo(NtCurrentPeb()->ProcessParameters->StandardError, format, arguments);
    va_end(arguments);
    return result;
}

// OrvPrint and its sister.

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
    OrvMbCharHeapBuffer bytes;
    result = OrvConvertT2MbString(bytes, text.GetValue(), page, text.GetInternal().length);
    return OrvFailed(result) ? result
                             : detail::WriteToStream(stream, bytes.GetValue(), bytes.GetInternal().length);
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

// Decodes the bytes of a file in the registry editor's text format.

#include "reg_file_text.h"

#include "crt/memory.h"
#include "orv/runtime/result.h"
#include "text_bounds.h"

namespace orvtool
{

namespace
{

uint32_t LineOf(const char *bytes, uint32_t offset)
{
    uint32_t line = 1;
    for (uint32_t i = 0; i < offset; i++)
        line += bytes[i] == '\n';
    return line;
}

} // namespace

OrvResult DecodeRegFile(const char *bytes, uint32_t size, OrvUtf16CharHeapBuffer &text, uint32_t &line)
{
    if (size >= 2 && memcmp(bytes, "\xFF\xFE", 2) == 0) {
        line = LineOf(bytes, size);
        OrvResult result =
            size % sizeof(wchar_t) ? ORV_E_INVALID_DATA : text.Resize(size / sizeof(wchar_t) - 1);
        if (OrvSucceeded(result) && size > 2)
            memcpy(text.GetBuffer(), bytes + 2, size - 2);
        return result;
    }
    if (size >= 3 && memcmp(bytes, "\xEF\xBB\xBF", 3) == 0) {
        bytes += 3;
        size -= 3;
    }
    uint32_t units = 0;
    OrvResult result = text.Resize(size); // a text never has more UTF-16 units than UTF-8 bytes
    if (OrvSucceeded(result) && size)
        result = OrvConvertMb2Utf16String(text.GetBuffer(), text.GetCapacity(), bytes, OrvCodePageUtf8,
                                          &units, size);
    if (result == ORV_E_INVALID_DATA)
        line = LineOf(bytes, FindFault(bytes, size, OrvCodePageUtf8));
    return OrvSucceeded(result) ? text.Resize(units) : result;
}

} // namespace orvtool

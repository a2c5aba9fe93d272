// A text converted to another page or width for the time of a call: on the stack when it is short, else on
// the heap.

#pragma once

#include "orv/runtime/result.h"
#include "orv/text/code_page.h"
#include "runtime/small_array.h"

namespace detail
{

/// T is the character type of the result; the source has the other one.
template <typename T>
class ConvertedText
{
public:
    /// Returns the results of the conversion of a text, and ORV_E_OUT_OF_MEMORY.
    template <typename Source>
    OrvResult Convert(const Source *source, OrvCodePage page, uint32_t count)
    {
        uint32_t size = 0;
        OrvResult result = ConvertInto(text_.Get(), text_.Capacity(), source, page, size, count);
        if (result == ORV_E_BUFFER_TOO_SMALL) {
            if (!text_.Reserve(size))
                return ORV_E_OUT_OF_MEMORY;
            result = ConvertInto(text_.Get(), size, source, page, size, count);
        }
        if (OrvSucceeded(result))
            length_ = size;
        return result;
    }

    const T *Get() const { return text_.Get(); }
    uint32_t Length() const { return length_; }

private:
    static OrvResult ConvertInto(wchar_t *target, uint32_t capacity, const char *source, OrvCodePage page,
                                 uint32_t &size, uint32_t count)
    {
        return OrvConvertMb2Utf16String(target, capacity, source, page, &size, count);
    }

    static OrvResult ConvertInto(char *target, uint32_t capacity, const wchar_t *source, OrvCodePage page,
                                 uint32_t &size, uint32_t count)
    {
        return OrvConvertUtf162MbString(target, capacity, source, page, &size, count);
    }

    SmallArray<T, 256> text_;
    uint32_t length_ = 0;
};

} // namespace detail

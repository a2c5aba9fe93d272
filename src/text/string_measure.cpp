// Measures terminated text. All functions that take a terminated text measure it here.

#include "orv/text/string.h"
#include "text/vector.h"

namespace
{

template <typename T>
uint32_t Measure(const T *text, uint32_t limit)
{
    return text ? detail::ScanTerminated(text, limit, detail::IsTerminator<T>()) : 0;
}

} // namespace

uint32_t OrvGetStringSizeInElements(const char *text)
{
    return Measure(text, UINT32_MAX);
}

uint32_t OrvGetStringSizeInElements(const wchar_t *text)
{
    return Measure(text, UINT32_MAX);
}

uint32_t OrvGetStringSizeInElements(const char *text, uint32_t limit)
{
    return Measure(text, limit);
}

uint32_t OrvGetStringSizeInElements(const wchar_t *text, uint32_t limit)
{
    return Measure(text, limit);
}

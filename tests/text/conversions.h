// Conversions between code pages under one name, by the widths of target and source, and what each of them
// promises whatever the pages and the capacity.

#pragma once

#include "harness/test.h"
#include "orv/runtime/result.h"
#include "orv/text/code_page.h"
#include "text/vector.h"

namespace test
{

/// The pages of byte text; UTF-16 text has none.
struct Pages {
    OrvCodePage from;
    OrvCodePage to;
};

inline OrvResult Convert(wchar_t *target, uint32_t capacity, const char *source, Pages pages, uint32_t *size,
                         uint32_t count)
{
    return OrvConvertMb2Utf16String(target, capacity, source, pages.from, size, count);
}

inline OrvResult Convert(char *target, uint32_t capacity, const wchar_t *source, Pages pages, uint32_t *size,
                         uint32_t count)
{
    return OrvConvertUtf162MbString(target, capacity, source, pages.to, size, count);
}

inline OrvResult Convert(char *target, uint32_t capacity, const char *source, Pages pages, uint32_t *size,
                         uint32_t count)
{
    return OrvConvertMb2MbString(target, capacity, source, pages.from, pages.to, size, count);
}

inline OrvResult Measure(uint32_t &size, const char *source, Pages pages, uint32_t count, const wchar_t *)
{
    return OrvGetMb2Utf16StringSize(size, source, pages.from, count);
}

inline OrvResult Measure(uint32_t &size, const wchar_t *source, Pages pages, uint32_t count, const char *)
{
    return OrvGetUtf162MbStringSize(size, source, pages.to, count);
}

inline OrvResult Measure(uint32_t &size, const char *source, Pages pages, uint32_t count, const char *)
{
    return OrvGetMb2MbStringSize(size, source, pages.from, pages.to, count);
}

/// Measures and converts. `failure` is what the text is refused with, or 0. A target that is too small is
/// emptied, or holds the beginning of a text that is converted in pieces.
template <typename Target, typename Source>
void CheckConversion(Target *target, uint32_t capacity, const Source *source, uint32_t count, Pages pages,
                     const Target *expected, uint32_t length, OrvResult failure = 0)
{
    constexpr uint32_t kUntouched = 77;
    constexpr uint32_t kOnePiece = 21844; // whatever its characters take
    uint32_t size = kUntouched;
    CHECK_EQUAL(Measure(size, source, pages, count, expected), failure);
    CHECK_EQUAL(size, failure ? kUntouched : length);
    size = kUntouched;
    const bool fits = capacity > length;
    const OrvResult expectedResult = failure ? failure : fits ? ORV_S_OK : ORV_E_BUFFER_TOO_SMALL;
    CHECK_EQUAL(Convert(target, capacity, source, pages, &size, count), expectedResult);
    CHECK_EQUAL(size, failure ? kUntouched : fits ? length : length + 1);
    const auto unitAt = [target](uint32_t i) { return detail::LoadUnit(target + i); };
    const uint32_t kept = [&] {
        uint32_t i = 0;
        const bool isEmptied = failure || (!fits && count < kOnePiece);
        while (!isEmptied && i < length && i < capacity && unitAt(i) == expected[i])
            i++;
        return i;
    }();
    if (expectedResult == ORV_S_OK)
        CHECK_EQUAL(kept, length);
    if (capacity != 0)
        CHECK(kept < capacity && unitAt(kept) == 0);
}

} // namespace test

// Any bytes in each of the library's own pages, to each other one: the measured size is the size that fits
// and no smaller one does, and what reaches UTF-16 comes back as the same text.

#include "fuzz.h"

#include "orv/runtime/result.h"
#include "orv/text/code_page.h"

#include <string.h>

namespace
{

constexpr OrvCodePage kPages[] = {OrvCodePageUtf7, OrvCodePageUtf8, OrvCodePageUtf16};

void CheckToUtf16(const char *source, uint32_t size, OrvCodePage page)
{
    uint32_t needed = 0;
    const OrvResult measured = OrvGetMb2Utf16StringSize(needed, source, page, size);
    if (OrvFailed(measured)) {
        REQUIRE(measured == ORV_E_INVALID_DATA);
        return;
    }
    ExactArray<wchar_t> text(needed + 1);
    uint32_t written = 0;
    REQUIRE(OrvConvertMb2Utf16String(text, needed + 1, source, page, &written, size) == ORV_S_OK);
    REQUIRE(written == needed && text[needed] == 0);
    ExactArray<wchar_t> small(needed);
    uint32_t required = 0;
    REQUIRE(OrvConvertMb2Utf16String(small, needed, source, page, &required, size) == ORV_E_BUFFER_TOO_SMALL);
    REQUIRE(required == needed + 1);

    // There and back: the bytes may differ (UTF-7 has many forms), the text may not.
    uint32_t backSize = 0;
    REQUIRE(OrvGetUtf162MbStringSize(backSize, text, page, needed) == ORV_S_OK);
    ExactArray<char> back(backSize + 1);
    REQUIRE(OrvConvertUtf162MbString(back, backSize + 1, text, page, &written, needed) == ORV_S_OK);
    REQUIRE(written == backSize);
    if (page != OrvCodePageUtf7)
        REQUIRE(backSize == size && memcmp(back, source, size) == 0);
    ExactArray<wchar_t> again(needed + 1);
    REQUIRE(OrvConvertMb2Utf16String(again, needed + 1, back, page, &written, backSize) == ORV_S_OK);
    REQUIRE(written == needed && memcmp(again, text, needed * sizeof(wchar_t)) == 0);
}

void CheckBetween(const char *source, uint32_t size, OrvCodePage from, OrvCodePage to)
{
    uint32_t needed = 0;
    const OrvResult measured = OrvGetMb2MbStringSize(needed, source, from, to, size);
    if (OrvFailed(measured))
        return;
    ExactArray<char> target(needed + 1);
    uint32_t written = 0;
    const OrvResult result = OrvConvertMb2MbString(target, needed + 1, source, from, to, &written, size);
    REQUIRE(result == ORV_S_OK ? written == needed : from == to || result == ORV_E_INVALID_DATA);
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    ExactArray<char> source(size);
    memcpy(source, data, size);
    for (const OrvCodePage from : kPages) {
        CheckToUtf16(source, static_cast<uint32_t>(size), from);
        for (const OrvCodePage to : kPages)
            CheckBetween(source, static_cast<uint32_t>(size), from, to);
    }
    return 0;
}

#include "orv/orv.h"

int OrvMain(int, wchar_t **)
{
    // Convert bytes of any code page to UTF-16 where they come in.
    const char name[] = "  M\xC3\xBCnchen\t";
    OrvUtf16CharHeapBuffer city;
    OrvResult result = OrvConvertMb2TString(city, name, OrvCodePageUtf8);
    if (OrvSucceeded(result))
        result = OrvTrimString(city.GetInternal(), city.GetValue(), city.GetInternal().length);
    if (OrvFailed(result))
        return 1;
    OrvPrint(L"'%s' has %u characters\n", city.GetValue(), city.GetInternal().length);

    const bool same = OrvCompareStringNoCase(OrvCodePageDefault, city.GetValue(), L"M\u00DCNCHEN") == 0;
    OrvPrint(L"in any case it is the same: %s\n", same ? L"yes" : L"no");

    // Build a text in one buffer; if you know its length, reserve it first.
    OrvUtf16CharHeapBuffer line;
    result = line.ReserveElements(64);
    const wchar_t *const parts[] = {L"to ", city.GetValue(), L" by train"};
    for (const wchar_t *part : parts) {
        if (OrvSucceeded(result))
            result = line.Append(part);
    }
    const wchar_t *const by = OrvFindSubString(line.GetValue(), L" by ");
    if (OrvFailed(result) || !by)
        return 1;
    OrvPrint(L"%s: ' by ' stands at %u\n", line.GetValue(), static_cast<uint32_t>(by - line.GetValue()));

    // An array of the caller: a text that does not fit is refused, and the required size is returned.
    wchar_t characters[8];
    _ORV_UTF16CHAR_STR small = {0, 8, characters};
    uint32_t required = 0;
    result = OrvCopyString(small, line.GetValue(), OrvTerminated, &required);
    OrvPrint(L"%08X, %u characters are required\n", result, required);

    // Bytes to hexadecimal digits, and back.
    const uint8_t key[] = {0x0F, 0xA5};
    uint8_t read[2];
    OrvUtf16CharHeapBuffer digits;
    result = OrvConvertBytes2HexString(digits, key, sizeof key);
    if (OrvSucceeded(result))
        result = OrvConvertHexString2Bytes(read, sizeof read, digits.GetValue());
    OrvPrint(L"%s, %08X\n", digits.GetValue(), result);

    bool matches = false;
    result = OrvBasMatchWildcardsNoCase(matches, L"*.h??", L"Index.HTM");
    OrvPrint(L"*.h?? matches Index.HTM: %s\n", matches ? L"yes" : L"no");
    return OrvFailed(result) ? 1 : 0;
}

// Any text as a GUID. An accepted text gives a GUID whose printed text gives the same GUID; a refused text
// leaves the GUID unchanged; the text's form alone decides which of the two happens.

#include "fuzz.h"

#include "orv/runtime/result.h"
#include "orv/text/guid.h"

namespace
{

constexpr uint32_t kLength = 36;

bool IsHexadecimal(wchar_t c)
{
    return (c >= L'0' && c <= L'9') || (c >= L'a' && c <= L'f') || (c >= L'A' && c <= L'F');
}

bool IsDash(uint32_t position)
{
    return position == 8 || position == 13 || position == 18 || position == 23;
}

/// Digits and dashes where they belong, and nothing else.
bool IsCanonical(const wchar_t *text, uint32_t length)
{
    bool isCanonical = length == kLength;
    for (uint32_t i = 0; isCanonical && i < length; i++)
        isCanonical = IsDash(i) ? text[i] == L'-' : IsHexadecimal(text[i]);
    return isCanonical;
}

bool HasForm(const wchar_t *text, uint32_t length)
{
    return length == kLength && text[8] == L'-' && text[13] == L'-' && text[18] == L'-' && text[23] == L'-';
}

/// Prints the one text that says the same.
void CheckPrint(const _OrvGuid &guid, wchar_t (&printed)[kLength + 1])
{
    ExactArray<wchar_t> room(kLength + 1);
    _ORV_UTF16CHAR_STR text = {77, kLength + 1, room};
    REQUIRE(OrvGuidUtils::GetString(guid, text) == ORV_S_OK && text.length == kLength && room[kLength] == 0);
    REQUIRE(IsCanonical(room, kLength));
    memcpy(printed, room, sizeof printed);
    _OrvGuid again = {};
    REQUIRE(OrvGuidUtils::Parse(again, printed) == ORV_S_OK);
    REQUIRE(memcmp(&again, &guid, sizeof guid) == 0);
}

void CheckParse(const wchar_t *text, uint32_t length)
{
    _OrvGuid before;
    memset(&before, 0x5A, sizeof before);
    _OrvGuid guid = before;
    const OrvResult result = OrvGuidUtils::Parse(guid, {text, length});
    if (OrvFailed(result)) {
        REQUIRE(result == (HasForm(text, length) ? ORV_E_INVALID_ARGUMENT : ORV_E_GUID_TEXT));
        REQUIRE(!IsCanonical(text, length) && memcmp(&guid, &before, sizeof guid) == 0);
        return;
    }
    REQUIRE(result == ORV_S_OK && HasForm(text, length));
    wchar_t printed[kLength + 1];
    CheckPrint(guid, printed);
    for (uint32_t i = 0; i < kLength && IsCanonical(text, length); i++)
        REQUIRE(printed[i] == (IsDash(i) ? L'-' : (text[i] | 0x20)));
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    const auto count = static_cast<uint32_t>(size);
    ExactArray<wchar_t> text(count);
    for (uint32_t i = 0; i < count; i++) // a high byte now and then
        text[i] = static_cast<wchar_t>(data[i] < 0xF8 ? data[i] : 0x0130 + data[i]);
    CheckParse(text, count);
    if (count >= kLength) {
        for (uint32_t i = 0; i < kLength; i++) {
            if (IsDash(i))
                text[i] = L'-';
        }
        ExactArray<wchar_t> dashed(text, kLength);
        CheckParse(dashed, kLength);
    }
    if (count >= sizeof(_OrvGuid)) {
        _OrvGuid guid;
        wchar_t printed[kLength + 1];
        OrvGuidUtils::Assign(guid, data);
        CheckPrint(guid, printed);
    }
    return 0;
}

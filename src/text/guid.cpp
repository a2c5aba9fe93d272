// GUIDs as bytes and as text. The function that creates them is in src/random/create_guid.cpp, with the
// generators.

#include "orv/text/guid.h"

#include "orv/runtime/result.h"
#include "orv/text/format.h"
#include "orv/text/number.h"
#include "text/hexadecimal_digit.h"
#include "text/length.h"
#include "text/vector.h"

namespace
{

constexpr uint32_t kTextLength = 36;
constexpr uint32_t kDashes[] = {8, 13, 18, 23};

/// The complete text, so that an owner is resized once and not for every digit.
struct GuidText {
    wchar_t characters[kTextLength + 1];

    explicit GuidText(const _OrvGuid &guid)
    {
        const uint8_t *const b = guid.bytes;
        OrvFormatString(OrvCodePageDefault, characters, kTextLength + 1, nullptr,
                        L"%02x%02x%02x%02x-%02x%02x-%02x%02x-%02x%02x-%02x%02x%02x%02x%02x%02x", b[0], b[1],
                        b[2], b[3], b[4], b[5], b[6], b[7], b[8], b[9], b[10], b[11], b[12], b[13], b[14],
                        b[15]);
    }
};

/// Reads the groups after the first one. A group may have a 0x prefix and ends at the first character that is
/// no digit. Remembers whether a group started with a dash.
class GroupReader
{
public:
    explicit GroupReader(const wchar_t *text) : text_(text) {}

    uint32_t Read(uint32_t position, uint32_t count)
    {
        const uint32_t end = position + count;
        if (At(position) == L'-')
            startsWithDash_ = true;
        else if (At(position) == L'0' && (At(position + 1) | 0x20) == L'x')
            position += 2;
        uint32_t value = 0;
        uint32_t digit = 0;
        for (; position < end && (digit = detail::HexadecimalDigit(At(position))) < 16; position++)
            value = value << 4 | digit;
        return value;
    }

    bool IsRefused() const { return startsWithDash_; }

private:
    wchar_t At(uint32_t position) const { return detail::LoadUnit(text_ + position); }

    const wchar_t *text_;
    bool startsWithDash_ = false;
};

} // namespace

namespace OrvGuidUtils
{

void Assign(_OrvGuid &guid, uint32_t data1, uint16_t data2, uint16_t data3, uint8_t b0, uint8_t b1,
            uint8_t b2, uint8_t b3, uint8_t b4, uint8_t b5, uint8_t b6, uint8_t b7)
{
    guid = {{static_cast<uint8_t>(data1 >> 24), static_cast<uint8_t>(data1 >> 16),
             static_cast<uint8_t>(data1 >> 8), static_cast<uint8_t>(data1), static_cast<uint8_t>(data2 >> 8),
             static_cast<uint8_t>(data2), static_cast<uint8_t>(data3 >> 8), static_cast<uint8_t>(data3), b0,
             b1, b2, b3, b4, b5, b6, b7}};
}

void Assign(_OrvGuid &guid, const _OrvGuid &other)
{
    guid = other;
}

void Assign(_OrvGuid &guid, const uint8_t *const bytes)
{
    detail::MoveBytes(guid.bytes, bytes, sizeof guid.bytes);
}

OrvResult GetString(const _OrvGuid &guid, _ORV_UTF16CHAR_STR &text)
{
    return OrvFormatString(OrvCodePageDefault, text, L"%s", GuidText(guid).characters);
}

OrvResult GetString(const _OrvGuid &guid, const OrvMutableStringRefBase2<wchar_t> &text)
{
    return OrvFormatString(text, L"%s", GuidText(guid).characters);
}

OrvResult GetStringAppend(const _OrvGuid &guid, const OrvMutableStringRefBase2<wchar_t> &text)
{
    return OrvAppendFormatString(text, L"%s", GuidText(guid).characters);
}

OrvResult Parse(_OrvGuid &guid, const OrvStringRefBase<wchar_t> &text)
{
    if (detail::ResolveLengthUpTo(text.characters, text.length, kTextLength + 1) != kTextLength)
        return ORV_E_GUID_TEXT;
    for (const uint32_t dash : kDashes) {
        if (detail::LoadUnit(text.characters + dash) != L'-')
            return ORV_E_GUID_TEXT;
    }
    unsigned long data1 = 0;
    const wchar_t *end = nullptr;
    const OrvResult result = OrvConvertString2Number(data1, text.characters, kDashes[0], 16, &end);
    if (OrvFailed(result))
        return result;

    GroupReader reader(text.characters);
    const auto word = [&reader](uint32_t position) {
        return static_cast<uint16_t>(reader.Read(position, 4));
    };
    const auto byte = [&reader](uint32_t position) { return static_cast<uint8_t>(reader.Read(position, 2)); };
    _OrvGuid read;
    Assign(read, data1, word(9), word(14), byte(19), byte(21), byte(24), byte(26), byte(28), byte(30),
           byte(32), byte(34));
    if (reader.IsRefused())
        return ORV_E_INVALID_ARGUMENT;
    guid = read;
    return ORV_S_OK;
}

} // namespace OrvGuidUtils

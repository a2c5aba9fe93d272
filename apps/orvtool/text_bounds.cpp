// Finds where byte strings of a code page can be cut, and where they are malformed.

#include "text_bounds.h"

namespace orvtool
{

namespace
{

constexpr uint32_t kLongestCharacter = 4;

/// The length of a shift of UTF-7 that starts at a plus sign, including its closing minus sign.
uint32_t ShiftLength(const char *bytes, uint32_t count)
{
    uint32_t length = 1;
    while (length < count && IsBase64Digit(bytes[length]))
        length++;
    return length < count && bytes[length] == '-' ? length + 1 : length;
}

/// The length of the first character of the text; 0 when the text does not start with a character.
uint32_t Utf7CharacterLength(const char *bytes, uint32_t count)
{
    if (*bytes != '+')
        return static_cast<uint8_t>(*bytes) < 0x80 ? 1 : 0;
    uint32_t length = ShiftLength(bytes, count);
    // The two halves of a surrogate pair may be in two shifts.
    if (!IsText(bytes, length, OrvCodePageUtf7) && length < count && bytes[length] == '+')
        length += ShiftLength(bytes + length, count - length);
    return IsText(bytes, length, OrvCodePageUtf7) ? length : 0;
}

uint32_t CharacterLength(const char *bytes, uint32_t count, OrvCodePage page)
{
    if (page == OrvCodePageUtf7)
        return Utf7CharacterLength(bytes, count);
    for (uint32_t length = 1; length <= kLongestCharacter && length <= count; length++) {
        if (IsText(bytes, length, page))
            return length;
    }
    return 0;
}

} // namespace

bool IsBase64Digit(char c)
{
    return (c >= 'A' && c <= 'Z') || (c >= 'a' && c <= 'z') || (c >= '0' && c <= '9') || c == '+' || c == '/';
}

bool IsText(const char *bytes, uint32_t count, OrvCodePage page)
{
    // The target must be another page: a conversion to the same page would only copy.
    const OrvCodePage other = page == OrvCodePageUtf16 ? OrvCodePageUtf8 : OrvCodePageUtf16;
    uint32_t size = 0;
    return OrvSucceeded(OrvGetMb2MbStringSize(size, bytes, page, other, count));
}

uint32_t CutBehindCharacter(const char *bytes, uint32_t count, OrvCodePage page)
{
    if (page == OrvCodePageUtf16) {
        count &= ~1u;
        const bool splitsPair = count && (bytes[count - 1] & 0xFC) == 0xD8;
        return splitsPair ? count - 2 : count;
    }
    if (page != OrvCodePageUtf8)
        return 0;
    // The last character is left out if it is not ASCII: it may be incomplete.
    uint32_t cut = count;
    while (cut && count - cut < kLongestCharacter && (bytes[cut - 1] & 0xC0) == 0x80)
        cut--;
    const bool isLead = cut && (bytes[cut - 1] & 0xC0) == 0xC0;
    return isLead ? cut - 1 : count;
}

uint32_t CutBehindLine(const char *bytes, uint32_t count, OrvCodePage page)
{
    if (page != OrvCodePageUtf16) {
        while (count && bytes[count - 1] != '\n')
            count--;
        return count;
    }
    count &= ~1u;
    while (count && (bytes[count - 2] != '\n' || bytes[count - 1] != 0))
        count -= 2;
    return count;
}

uint32_t FindFault(const char *bytes, uint32_t count, OrvCodePage page)
{
    constexpr uint32_t kBlock = 4096;
    uint32_t at = 0;
    while (count - at > kBlock) { // most of the text in few calls
        const uint32_t block = CutBehindCharacter(bytes + at, kBlock, page);
        if (block == 0 || !IsText(bytes + at, block, page))
            break;
        at += block;
    }
    while (at < count) {
        const uint32_t length = CharacterLength(bytes + at, count - at, page);
        if (length == 0)
            return at;
        at += length;
    }
    return count;
}

} // namespace orvtool

// Conversion between bytes and hexadecimal digits. A text is checked before anything is written, so that a
// malformed text changes nothing.

#include "orv/text/hexadecimal.h"

#include "orv/runtime/result.h"
#include "text/hexadecimal_digit.h"
#include "text/length.h"
#include "text/vector.h"

namespace
{

/// Checks the arguments: the bytes, their number and the case of the letters.
OrvResult CheckBytes(const void *bytes, uint32_t count, OrvHexCase letters)
{
    constexpr uint32_t kMostBytes = 0x7FFFFFFE; // the number of digits and a terminator fits into 32 bits
    if ((!bytes && count) || letters > OrvHexUpperCase)
        return ORV_E_INVALID_ARGUMENT;
    return count > kMostBytes ? ORV_E_BAD_LENGTH : ORV_S_OK;
}

void WriteDigits(wchar_t *target, const void *bytes, uint32_t count, OrvHexCase letters)
{
    const char *const digits = letters == OrvHexUpperCase ? "0123456789ABCDEF" : "0123456789abcdef";
    const auto *const first = static_cast<const uint8_t *>(bytes);
    for (uint32_t i = 0; i < count; i++) {
        detail::StoreUnit(target++, static_cast<wchar_t>(digits[first[i] >> 4]));
        detail::StoreUnit(target++, static_cast<wchar_t>(digits[first[i] & 0xF]));
    }
    detail::StoreUnit(target, L'\0');
}

bool AreDigits(const wchar_t *text, uint32_t count)
{
    for (uint32_t i = 0; i < count; i++) {
        if (detail::HexadecimalDigit(detail::LoadUnit(text + i)) > 0xF)
            return false;
    }
    return count % 2 == 0;
}

void ReadDigits(uint8_t *target, const wchar_t *text, uint32_t byteCount)
{
    for (uint32_t i = 0; i < byteCount; i++) {
        const uint32_t high = detail::HexadecimalDigit(detail::LoadUnit(text + 2 * i));
        const uint32_t low = detail::HexadecimalDigit(detail::LoadUnit(text + 2 * i + 1));
        target[i] = static_cast<uint8_t>(high << 4 | low);
    }
}

} // namespace

OrvResult OrvConvertBytes2HexString(_ORV_UTF16CHAR_STR &target, const void *bytes, uint32_t count,
                                    OrvHexCase letters, uint32_t *requiredSize)
{
    const OrvResult result = CheckBytes(bytes, count, letters);
    if (OrvFailed(result))
        return result;
    if (!target.characters || target.capacity <= 2 * count) {
        if (requiredSize)
            *requiredSize = 2 * count + 1;
        return ORV_E_BUFFER_TOO_SMALL;
    }
    WriteDigits(target.characters, bytes, count, letters);
    target.length = 2 * count;
    return ORV_S_OK;
}

OrvResult OrvConvertBytes2HexString(OrvUtf16CharHeapBuffer &target, const void *bytes, uint32_t count,
                                    OrvHexCase letters)
{
    OrvResult result = CheckBytes(bytes, count, letters);
    if (OrvSucceeded(result))
        result = target.Resize(2 * count);
    if (OrvSucceeded(result))
        WriteDigits(target.GetBuffer(), bytes, count, letters);
    return result;
}

OrvResult OrvConvertBytes2HexString(const OrvMutableStringRefBase2<wchar_t> &target, const void *bytes,
                                    uint32_t count, OrvHexCase letters)
{
    OrvResult result = CheckBytes(bytes, count, letters);
    if (OrvSucceeded(result))
        result = target.operations->resize(target.view, 2 * count, target.owner);
    if (OrvSucceeded(result) && count) // the owner of an empty text may have no array
        WriteDigits(target.view.characters, bytes, count, letters);
    return result;
}

OrvResult OrvConvertHexString2Bytes(void *target, uint32_t capacity, const wchar_t *text, uint32_t *size,
                                    uint32_t count)
{
    count = detail::ResolveLength(text, count);
    if (!AreDigits(text, count))
        return ORV_E_INVALID_DATA;
    if (size)
        *size = count / 2;
    if (count / 2 > (target ? capacity : 0))
        return ORV_E_BUFFER_TOO_SMALL;
    ReadDigits(static_cast<uint8_t *>(target), text, count / 2);
    return ORV_S_OK;
}

OrvResult OrvConvertHexString2Bytes(IOrvBuffer<unsigned char> &target, const wchar_t *text, uint32_t count)
{
    count = detail::ResolveLength(text, count);
    if (!AreDigits(text, count))
        return ORV_E_INVALID_DATA;
    const OrvResult result = target.Resize(count / 2);
    if (OrvSucceeded(result))
        ReadDigits(target.GetElements(), text, count / 2);
    return result;
}

// Base64: decoding an encoded text returns its bytes, any text is decoded as by a plain decoder, and the wide
// loops give the same as the plain ones. Hexadecimal digits: decoding encoded bytes returns them.

#include "fuzz.h"

#include "orv/runtime/result.h"
#include "orv/text/base64.h"
#include "orv/text/hexadecimal.h"
#include "text/base64_blocks.h"

namespace
{

constexpr uint32_t kUntouched = 0xABCDEF;

void CheckEncode(const uint8_t *data, uint32_t count, uint32_t pick)
{
    const uint32_t capacity = OrvBase64EncodeNecessaryBufferCapacity(count);
    ExactArray<wchar_t> text(capacity);
    _ORV_UTF16CHAR_STR encoded = {kUntouched, capacity, text};
    REQUIRE(OrvBase64Encode(encoded, data, count) == ORV_S_OK);
    REQUIRE(encoded.length == capacity - 1 && text[encoded.length] == 0);
    ExactArray<wchar_t> plain(capacity);
    detail::plain::EncodeBase64Groups(plain, data, count / 3);
    REQUIRE(memcmp(plain, text, count / 3 * 4 * sizeof(wchar_t)) == 0);

    if (encoded.length) {
        const uint32_t tooFew = pick % encoded.length; // the terminator is not counted
        ExactArray<wchar_t> small(tooFew);
        _ORV_UTF16CHAR_STR part = {kUntouched, tooFew, small};
        REQUIRE(OrvBase64Encode(part, data, count) == ORV_E_BUFFER_TOO_SMALL && part.length == kUntouched);
    }

    const uint32_t room = OrvBase64DecodeNecessaryBufferCapacity(encoded.length);
    ExactArray<uint8_t> decoded(room);
    uint32_t length = kUntouched;
    REQUIRE(OrvBase64Decode(decoded, room, text, encoded.length, &length, OrvBase64IgnoreNothing) ==
            ORV_S_OK);
    REQUIRE(length == count && memcmp(decoded, data, count) == 0);
    if (room) {
        const uint32_t tooFew = pick % room;
        ExactArray<uint8_t> small(tooFew);
        REQUIRE(OrvBase64Decode(small, tooFew, text, encoded.length, nullptr, OrvBase64IgnoreNothing) ==
                ORV_E_BUFFER_TOO_SMALL);
    }
}

/// The same for hexadecimal digits, which share the input.
void CheckDigits(const uint8_t *data, uint32_t count, uint32_t pick)
{
    ExactArray<wchar_t> text(2 * count + 1);
    _ORV_UTF16CHAR_STR digits = {kUntouched, 2 * count + 1, text};
    const OrvHexCase letters = pick % 2 ? OrvHexUpperCase : OrvHexLowerCase;
    REQUIRE(OrvConvertBytes2HexString(digits, data, count, letters) == ORV_S_OK);
    REQUIRE(digits.length == 2 * count && text[2 * count] == 0);
    ExactArray<uint8_t> bytes(count);
    uint32_t size = kUntouched;
    REQUIRE(OrvConvertHexString2Bytes(bytes, count, text, &size, 2 * count) == ORV_S_OK);
    REQUIRE(size == count && memcmp(bytes, data, count) == 0);
    if (count) {
        ExactArray<uint8_t> small(pick % count);
        REQUIRE(OrvConvertHexString2Bytes(small, pick % count, text, &size) == ORV_E_BUFFER_TOO_SMALL);
    }
}

/// Character by character. False when the text breaks the format.
bool DecodePlainly(const wchar_t *text, uint32_t count, bool skips, uint8_t *out, uint32_t &length)
{
    uint32_t bits = 0;
    uint32_t symbols = 0;
    uint32_t padding = 0;
    length = 0;
    for (uint32_t i = 0; i < count; i++) {
        const wchar_t c = text[i];
        if (skips && (c == L' ' || c == L'\t' || c == L'\r' || c == L'\n'))
            continue;
        const char *const digit =
            c && c < 0x80 ? strchr(detail::kBase64Alphabet, static_cast<char>(c)) : nullptr;
        const bool isPadding = c == L'=' && (symbols % 4 >= 2 || padding);
        if ((!digit && !isPadding) || (digit && padding) || padding + isPadding > 2 ||
            (isPadding && symbols % 4 == 0))
            return false;
        padding += isPadding;
        bits = bits << 6 | (digit ? static_cast<uint32_t>(digit - detail::kBase64Alphabet) : 0);
        if (++symbols % 4)
            continue;
        for (uint32_t byte = 0; byte < 3 - padding; byte++)
            out[length++] = static_cast<uint8_t>(bits >> (16 - 8 * byte));
    }
    return symbols % 4 == 0;
}

void CheckDecode(const wchar_t *text, uint32_t count, OrvBase64Ignored mode)
{
    const uint32_t room = OrvBase64DecodeNecessaryBufferCapacity(count);
    ExactArray<uint8_t> bytes(room);
    ExactArray<uint8_t> expected(room);
    uint32_t expectedLength = 0;
    const bool isValid =
        DecodePlainly(text, count, mode == OrvBase64IgnoreWhiteSpace, expected, expectedLength);
    uint32_t length = kUntouched;
    const OrvResult result = OrvBase64Decode(bytes, room, text, count, &length, mode);
    REQUIRE(result == (isValid ? ORV_S_OK : ORV_E_INVALID_DATA));
    REQUIRE(length == (isValid ? expectedLength : kUntouched));
    REQUIRE(!isValid || memcmp(bytes, expected, length) == 0);

    const uint32_t groups = count / 4;
    ExactArray<uint8_t> plain(groups * 3);
    ExactArray<uint8_t> wide(groups * 3);
    const uint32_t whole = detail::plain::DecodeBase64Groups(plain, text, groups);
    REQUIRE(detail::DecodeBase64Groups(wide, text, groups) == whole);
    REQUIRE(memcmp(plain, wide, whole * 3) == 0);
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    Input input(data, size);
    const uint32_t pick = input.Below(0x10000);
    const uint32_t count = input.Left();
    ExactArray<uint8_t> bytes(input.Bytes(count), count);
    CheckEncode(bytes, count, pick);
    CheckDigits(bytes, count, pick);

    // As text: each byte a character, and each pair of bytes one.
    ExactArray<wchar_t> text(count);
    for (uint32_t i = 0; i < count; i++)
        text[i] = bytes[i];
    CheckDecode(text, count, OrvBase64IgnoreNothing);
    CheckDecode(text, count, OrvBase64IgnoreWhiteSpace);
    ExactArray<wchar_t> pairs(count / 2);
    memcpy(pairs, bytes, count / 2 * sizeof(wchar_t));
    CheckDecode(pairs, count / 2, OrvBase64IgnoreWhiteSpace);
    return 0;
}

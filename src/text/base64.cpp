// Base64: the block loops convert whole groups; the padded last group and groups with white space in them are
// converted character by character.

#include "orv/text/base64.h"

#include "orv/runtime/result.h"
#include "text/base64_blocks.h"
#include "text/vector.h"

namespace
{

using detail::kBase64GroupBytes;
using detail::kBase64GroupCharacters;

// The sizes of the results. Unlike the public formulas, these do not wrap at 32 bits. An incomplete group
// counts as a whole one.

/// The length of the text, without a terminator.
uint64_t EncodedLength(uint32_t byteCount)
{
    const uint32_t groups = byteCount / kBase64GroupBytes + (byteCount % kBase64GroupBytes != 0);
    return uint64_t(groups) * kBase64GroupCharacters;
}

/// The room that the decoder requires; it always fits into 32 bits.
uint32_t DecodedCapacity(uint32_t charCount)
{
    const uint32_t groups = charCount / kBase64GroupCharacters + (charCount % kBase64GroupCharacters != 0);
    return groups * kBase64GroupBytes;
}

/// Encodes a last group of one or two bytes, with padding.
void EncodeLastGroup(wchar_t *text, const uint8_t *data, uint32_t count)
{
    const uint32_t bits = uint32_t(data[0]) << 16 | (count > 1 ? uint32_t(data[1]) << 8 : 0);
    const auto put = [text](uint32_t at, char character) {
        detail::StoreUnit(text + at, static_cast<wchar_t>(character));
    };
    put(0, detail::kBase64Alphabet[bits >> 18]);
    put(1, detail::kBase64Alphabet[bits >> 12 & 0x3F]);
    put(2, count > 1 ? detail::kBase64Alphabet[bits >> 6 & 0x3F] : '=');
    put(3, '=');
}

OrvResult Encode(wchar_t *text, uint32_t capacity, const uint8_t *data, uint32_t byteCount, uint32_t &length)
{
    const uint64_t necessary = EncodedLength(byteCount);
    if (capacity < necessary || !text)
        return ORV_E_BUFFER_TOO_SMALL;
    if (!data && byteCount)
        return ORV_E_INVALID_ARGUMENT;
    length = static_cast<uint32_t>(necessary);
    detail::StoreUnit(text + length, wchar_t{0});
    const uint32_t groups = byteCount / kBase64GroupBytes;
    detail::EncodeBase64Groups(text, data, groups);
    if (const uint32_t rest = byteCount % kBase64GroupBytes)
        EncodeLastGroup(text + groups * kBase64GroupCharacters, data + groups * kBase64GroupBytes, rest);
    return ORV_S_OK;
}

bool IsWhiteSpace(wchar_t character)
{
    return character == L' ' || character == L'\t' || character == L'\r' || character == L'\n';
}

/// Reads a text group by group.
class Decoder
{
public:
    Decoder(uint8_t *out, const wchar_t *text, uint32_t count, bool skipsWhiteSpace)
        : out_(out), next_(text), last_(text + count), skipsWhiteSpace_(skipsWhiteSpace)
    {
    }

    /// False when the text breaks the format.
    bool Run()
    {
        for (;;) {
            const auto left = static_cast<uint32_t>(last_ - next_);
            const uint32_t groups = detail::DecodeBase64Groups(out_, next_, left / kBase64GroupCharacters);
            out_ += groups * kBase64GroupBytes;
            next_ += groups * kBase64GroupCharacters;
            if (!DecodeGroup())
                return false;
            if (hasEnded_)
                return true;
        }
    }

    const uint8_t *End() const { return out_; }

private:
    /// Reads the next character that is not skipped. False at the end of the text.
    bool Take(wchar_t &character)
    {
        while (next_ != last_) {
            character = detail::LoadUnit(next_++);
            if (!skipsWhiteSpace_ || !IsWhiteSpace(character))
                return true;
        }
        return false;
    }

    /// Decodes one group character by character: one with white space in it, the padded one, or none because
    /// the text has ended.
    bool DecodeGroup()
    {
        uint32_t bits = 0;
        uint32_t padding = 0;
        wchar_t character = 0;
        for (uint32_t symbols = 0; symbols < kBase64GroupCharacters; symbols++) {
            if (!Take(character)) {
                hasEnded_ = true;
                return symbols == 0;
            }
            uint32_t value = detail::Base64Value(character);
            if (character == L'=' && symbols >= 2) {
                padding++;
                value = 0;
            } else if (value == detail::kNotBase64 || padding) {
                return false;
            }
            bits = bits << 6 | value;
        }
        for (uint32_t i = 0; i < kBase64GroupBytes - padding; i++)
            *out_++ = static_cast<uint8_t>(bits >> (16 - 8 * i));
        return padding == 0 || IsAtEnd();
    }

    /// Whether only skipped characters follow; the text has then ended.
    bool IsAtEnd()
    {
        wchar_t character = 0;
        hasEnded_ = !Take(character);
        return hasEnded_;
    }

    uint8_t *out_;
    const wchar_t *next_;
    const wchar_t *const last_;
    const bool skipsWhiteSpace_;
    bool hasEnded_ = false;
};

} // namespace

uint32_t OrvBase64EncodeNecessaryBufferCapacity(uint32_t byteCount)
{
    return (byteCount + 2) / kBase64GroupBytes * kBase64GroupCharacters + 1;
}

uint32_t OrvBase64DecodeNecessaryBufferCapacity(uint32_t charCount)
{
    return (charCount + 3) / kBase64GroupCharacters * kBase64GroupBytes;
}

OrvResult OrvBase64Encode(_ORV_UTF16CHAR_STR &out, const uint8_t *data, uint32_t byteCount)
{
    return Encode(out.characters, out.capacity, data, byteCount, out.length);
}

OrvResult OrvBase64EncodeAppend(_ORV_UTF16CHAR_STR &out, const uint8_t *data, uint32_t byteCount)
{
    if (out.length > out.capacity || !out.characters)
        return ORV_E_BUFFER_TOO_SMALL;
    uint32_t added = 0;
    const OrvResult result =
        Encode(out.characters + out.length, out.capacity - out.length, data, byteCount, added);
    out.length += added;
    return result;
}

OrvResult OrvBase64Decode(uint8_t *out, uint32_t outCapacity, const wchar_t *text, uint32_t charCount,
                          uint32_t *outLength, OrvBase64Ignored mode)
{
    if (mode != OrvBase64IgnoreNothing && mode != OrvBase64IgnoreWhiteSpace)
        return ORV_E_NOT_PROVIDED;
    uint32_t length = 0;
    if (charCount) {
        if (outCapacity < DecodedCapacity(charCount))
            return ORV_E_BUFFER_TOO_SMALL;
        if (!out || !text)
            return ORV_E_INVALID_ARGUMENT;
        Decoder decoder(out, text, charCount, mode == OrvBase64IgnoreWhiteSpace);
        if (!decoder.Run())
            return ORV_E_INVALID_DATA;
        length = static_cast<uint32_t>(decoder.End() - out);
    }
    if (outLength)
        *outLength = length;
    return ORV_S_OK;
}

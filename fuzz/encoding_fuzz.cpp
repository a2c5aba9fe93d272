// Base64, GUIDs and wildcards: what is decoded encodes to the same again, and patterns answer as a table of
// all pairs of their beginnings does.

#include "fuzz.h"

#include "orv/runtime/result.h"
#include "orv/text/base64.h"
#include "orv/text/guid.h"
#include "orv/text/wildcard.h"

#include <string.h>

namespace
{

constexpr uint32_t kMost = 64;

void CheckBase64(const uint8_t *data, uint32_t size)
{
    const uint32_t capacity = OrvBase64EncodeNecessaryBufferCapacity(size);
    ExactArray<wchar_t> text(capacity);
    _ORV_UTF16CHAR_STR encoded = {0, capacity, text};
    REQUIRE(OrvBase64Encode(encoded, data, size) == ORV_S_OK);
    const uint32_t decodedCapacity = OrvBase64DecodeNecessaryBufferCapacity(encoded.length);
    ExactArray<uint8_t> decoded(decodedCapacity);
    uint32_t length = 0;
    REQUIRE(OrvBase64Decode(decoded, decodedCapacity, text, encoded.length, &length,
                            OrvBase64IgnoreNothing) == ORV_S_OK);
    REQUIRE(length == size && memcmp(decoded, data, size) == 0);

    // The input as text: it may be none, but the decoder stays within its array.
    const uint32_t count = size / sizeof(wchar_t);
    ExactArray<wchar_t> anyText(count);
    memcpy(anyText, data, count * sizeof(wchar_t));
    const uint32_t anyCapacity = OrvBase64DecodeNecessaryBufferCapacity(count);
    ExactArray<uint8_t> anyBytes(anyCapacity);
    OrvBase64Decode(anyBytes, anyCapacity, anyText, count, &length, OrvBase64IgnoreWhiteSpace);
}

/// The textbook table: matches[i][j] says whether i characters of the pattern match j of the name.
bool Matches(const wchar_t *pattern, uint32_t patternLength, const wchar_t *name, uint32_t nameLength)
{
    static bool matches[kMost + 1][kMost + 1];
    for (uint32_t i = 0; i <= patternLength; i++) {
        for (uint32_t j = 0; j <= nameLength; j++) {
            if (i == 0)
                matches[i][j] = j == 0;
            else if (pattern[i - 1] == L'*')
                matches[i][j] = matches[i - 1][j] || (j && matches[i][j - 1]);
            else
                matches[i][j] =
                    j && matches[i - 1][j - 1] && (pattern[i - 1] == L'?' || pattern[i - 1] == name[j - 1]);
        }
    }
    return matches[patternLength][nameLength];
}

void CheckWildcards(const uint8_t *data, uint32_t size)
{
    static const wchar_t kCharacters[] = {L'a', L'b', L'*', L'?', L'.', L'A'};
    const uint32_t patternLength = size ? data[0] % size : 0;
    ExactArray<wchar_t> text(size);
    for (uint32_t i = 0; i < size; i++)
        text[i] = kCharacters[data[i] % 6];
    const wchar_t *const pattern = text;
    const wchar_t *const name = pattern + patternLength;
    const uint32_t nameLength = size - patternLength;
    bool actual = false;
    REQUIRE(OrvBasMatchWildcards(actual, {pattern, patternLength}, {name, nameLength}) == ORV_S_OK);
    const bool everything =
        patternLength == 3 && pattern[0] == L'*' && pattern[1] == L'.' && pattern[2] == L'*';
    REQUIRE(actual == (everything || Matches(pattern, patternLength, name, nameLength)));
}

void CheckGuid(const uint8_t *data, uint32_t size)
{
    wchar_t text[36];
    if (size < 36)
        return;
    for (uint32_t i = 0; i < 36; i++)
        text[i] = i == 8 || i == 13 || i == 18 || i == 23 ? L'-' : data[i];
    _OrvGuid guid;
    OrvGuidUtils::Parse(guid, {text, 36});
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    if (size > kMost)
        return 0;
    const auto count = static_cast<uint32_t>(size);
    CheckBase64(data, count);
    CheckWildcards(data, count);
    CheckGuid(data, count);
    return 0;
}

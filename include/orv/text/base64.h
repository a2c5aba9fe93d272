// Base64 (RFC 4648, section 4) between bytes and UTF-16 text: the standard alphabet, padded with "=", without
// line breaks. Lengths and capacities of text are in characters, of data in bytes. Text and data must not
// overlap.

#pragma once

#include "orv/base.h"
#include "orv/text/string_ref.h"

/// What the decoder skips.
enum OrvBase64Ignored : uint32_t {
    OrvBase64IgnoreNothing = 0,
    OrvBase64IgnoreWhiteSpace = 1, ///< space, tab, carriage return and line feed
};

/// The characters that `byteCount` bytes take as text, with a terminator: (byteCount + 2) / 3 * 4 + 1.
///
/// The result is cut to 32 bits, so from 3,221,225,470 bytes on it is too small; OrvBase64Encode refuses so
/// many bytes, whatever the capacity.
ORV_API uint32_t OrvBase64EncodeNecessaryBufferCapacity(uint32_t byteCount);

/// Encodes into the descriptor's array from its start, with a terminator, and sets its length.
///
/// Size the array with OrvBase64EncodeNecessaryBufferCapacity. The test for room does not count the
/// terminator, which is written all the same: after the end of an array that has room for the text alone.
///
/// Returns 0; ORV_E_BUFFER_TOO_SMALL when the capacity is below the text's length, or there is no array;
/// ORV_E_INVALID_ARGUMENT when there are bytes but `data` is null. On failure nothing is written.
ORV_API OrvResult OrvBase64Encode(_ORV_UTF16CHAR_STR &out, const uint8_t *data, uint32_t byteCount);

/// Appends to the descriptor's text in the same way, in the rest of its capacity. Its length grows by the
/// length of the new text. A length above the capacity leaves no room.
ORV_API OrvResult OrvBase64EncodeAppend(_ORV_UTF16CHAR_STR &out, const uint8_t *data, uint32_t byteCount);

/// The capacity in bytes that decoding `charCount` characters requires: (charCount + 3) / 4 * 3. The result
/// is cut to 32 bits, so it is 0 above 4,294,967,292 characters; OrvBase64Decode does not wrap.
ORV_API uint32_t OrvBase64DecodeNecessaryBufferCapacity(uint32_t charCount);

/// Decodes `charCount` characters; `outLength`, when given, receives the number of bytes. The count is always
/// exact: no value of it means that the text is terminated.
///
/// Padding is required: without the skipped characters, the text consists of groups of four characters of the
/// alphabet, and the last group may end in one or two "=". Bits of the last group that are not part of a byte
/// may have any value.
///
/// Returns 0, with 0 bytes for 0 characters whatever the capacity. Failures, in this order:
/// ORV_E_NOT_PROVIDED for another mode; ORV_E_BUFFER_TOO_SMALL when the capacity is below
/// OrvBase64DecodeNecessaryBufferCapacity, even if the bytes would fit; ORV_E_INVALID_ARGUMENT for a null
/// `text` or `out`; ORV_E_INVALID_DATA for a character that is neither in the alphabet nor skipped, for a
/// misplaced "=", for anything but skipped characters after a padded group, and for an incomplete last group.
/// The groups before the fault are then decoded into `out`, and `outLength` is as it was.
ORV_API OrvResult OrvBase64Decode(uint8_t *out, uint32_t outCapacity, const wchar_t *text, uint32_t charCount,
                                  uint32_t *outLength, OrvBase64Ignored mode);

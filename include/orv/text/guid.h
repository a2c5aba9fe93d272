// The library's GUID: 16 bytes in the order in which they are printed, so that byte i is the i-th pair of
// digits. The platform's own structure holds its first three fields in the other byte order.

#pragma once

#include "orv/base.h"
#include "orv/text/string_ref.h"

/// Sixteen bytes, aligned at any address.
struct _OrvGuid {
    uint8_t bytes[16]; ///< in the order in which they are printed
};

static_assert(sizeof(_OrvGuid) == 16 && alignof(_OrvGuid) == 1, "fixed layout");

/// Converting GUIDs to text and back, and making new ones.
namespace OrvGuidUtils
{

/// Sets the bytes from the three fields, each with its most significant byte first, and from the eight bytes
/// after them.
ORV_API void Assign(_OrvGuid &guid, uint32_t data1, uint16_t data2, uint16_t data3, uint8_t b0, uint8_t b1,
                    uint8_t b2, uint8_t b3, uint8_t b4, uint8_t b5, uint8_t b6, uint8_t b7);

/// Copies the 16 bytes.
ORV_API void Assign(_OrvGuid &guid, const _OrvGuid &other);
ORV_API void Assign(_OrvGuid &guid, const uint8_t *const bytes);

/// Writes the GUID as 36 characters, lower-case digits with dashes and without braces, and a terminator into
/// the descriptor's array from its start.
///
/// Returns 0 and sets the length; ORV_E_BUFFER_TOO_SMALL when the capacity is below 37: the array then holds
/// as much as fits, terminated; ORV_E_INVALID_ARGUMENT for a null array or a capacity of 0. On failure the
/// length is as it was.
ORV_API OrvResult GetString(const _OrvGuid &guid, _ORV_UTF16CHAR_STR &text);

/// Writes the same as the whole text of the reference's owner.
///
/// Returns 0 or the owner's failure; the owner's text is then empty.
ORV_API OrvResult GetString(const _OrvGuid &guid, const OrvMutableStringRefBase2<wchar_t> &text);

/// Appends the same to the text of the reference's owner.
///
/// Returns 0 or the owner's failure; the owner's text is then as it was.
ORV_API OrvResult GetStringAppend(const _OrvGuid &guid, const OrvMutableStringRefBase2<wchar_t> &text);

/// Reads a text of exactly 36 characters with dashes at 8, 13, 18 and 23, counted from 0, without braces.
///
/// The first eight characters are read as OrvConvertString2Number reads radix 16, and must all belong to the
/// number. The other groups are read leniently: four characters at 9 and 14, which may begin with 0x, then
/// two characters at 19, 21, 24 and so on. Reading a group stops without a failure at the first character
/// that is not a hexadecimal digit; the number read up to there, possibly 0, is used.
///
/// Returns 0; ORV_E_GUID_TEXT for another length or a missing dash; ORV_E_INVALID_ARGUMENT when the first
/// group is not a number or another one starts with a dash. On failure the GUID is as it was.
ORV_API OrvResult Parse(_OrvGuid &guid, const OrvStringRefBase<wchar_t> &text);

} // namespace OrvGuidUtils

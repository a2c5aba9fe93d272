// Conversion between UTF-16 text and byte strings of a small set of code pages, and between two of these.
//
// The ANSI and OEM pages are converted by the platform: a character that the page lacks becomes the
// platform's replacement, mostly a question mark, and no input is malformed. The library converts the other
// pages itself, strictly: it refuses input that is not text in its page, and all other text can be converted
// back.
//
//   Latin-1  Each byte is the code point of the same value. Every greater code point is written as one "?".
//   UTF-7    RFC 2152. Letters, digits, NUL, tab, line feed, carriage return, space and ' ( ) , - . / : ? are
//            written as they are, "+" as "+-", all others in shifts that end with "-". Reading accepts all
//            that the standard allows: any ASCII character outside a shift, any UTF-16 inside, a shift that
//            ends at any character or with the text. Malformed: a byte above 127, a "+" before
//            anything but base64 and "-", a shift that ends inside a unit or is padded with other bits than
//            zeros, a surrogate without its other half.
//   UTF-8    RFC 3629. Malformed: a continuation byte that is out of place or missing, an overlong form,
//            a surrogate, a value above U+10FFFF.
//   UTF-16   Little-endian, in pairs of bytes at any address. Towards another page an odd number of bytes and
//            a surrogate without its other half are malformed. From and to UTF-16 text it is a plain copy,
//            which checks only that the number of bytes is even. Its bytes contain zeros, so give their
//            count.
//
// For every function:
// - Sizes, counts and capacities are in characters: bytes of a byte string, 16-bit units of UTF-16 text. A
//   source count of OrvTerminated means that the source ends with one zero character, up to which it is
//   counted. A null source is empty.
// - The size queries give the size without the terminator. Conversions also need room for the terminator and
//   write it (one character, a single zero byte also after text of page OrvCodePageUtf16). Their `size`,
//   which may be null, receives the number of characters before the terminator on success, and with
//   ORV_E_BUFFER_TOO_SMALL the capacity required, terminator included. On every other failure it is not
//   written.
// - A null target counts as a target of capacity 0: a call can ask for the required capacity in this way. An
//   empty source needs a capacity of 1, and is converted whatever the page.
// - Source and target must not overlap, except where the function only copies. A conversion that fits takes
//   one pass over the source. Temporary memory is allocated only between two byte strings when a page of the
//   platform is involved, and only for more than 255 characters.
//
// All conversions return 0 or:
//   ORV_E_BUFFER_TOO_SMALL  The target cannot hold the result and its terminator. It then holds no text, or,
//                           towards or from a page of the platform, perhaps the beginning of the result:
//                           long texts are converted in pieces of 32766 characters. Both are terminated.
//   ORV_E_INVALID_DATA      The source is malformed, however small the target; it then holds an empty text.
//   ORV_E_NOT_PROVIDED      A page value outside the table. Nothing is written.
//   ORV_E_BAD_LENGTH        The result is so long that 32 bits cannot count it and its terminator.
//   another failure         The platform's own conversion failed, and this is its status as a result code.
// The size queries return the same, except ORV_E_BUFFER_TOO_SMALL, and do not write `size` when they fail.
// They refuse a page value outside the table for an empty source too.

#pragma once

#include "orv/base.h"
#include "orv/text/heap_buffer.h"
#include "orv/text/string_ref.h"

/// The pages.
enum OrvCodePage : uint32_t {
    OrvCodePageDefault = 0, ///< the platform's ANSI page
    OrvCodePageAnsi = 1,    ///< the platform's ANSI page towards UTF-16, Latin-1 in every other direction
    OrvCodePageOem = 2,     ///< the platform's OEM page
    OrvCodePageUtf7 = 3,
    OrvCodePageUtf8 = 4,
    OrvCodePageUtf16 = 5, ///< little-endian
};

// Byte strings to UTF-16. Page OrvCodePageAnsi is the platform's here.

/// The size of the byte string in UTF-16. Results: see above.
ORV_API OrvResult OrvGetMb2Utf16StringSize(uint32_t &size, const char *source, OrvCodePage page,
                                           uint32_t count = OrvTerminated);

/// Converts a byte string to UTF-16. Results: see above.
ORV_API OrvResult OrvConvertMb2Utf16String(wchar_t *target, uint32_t capacity, const char *source,
                                           OrvCodePage page, uint32_t *size = nullptr,
                                           uint32_t count = OrvTerminated);

// UTF-16 to byte strings. Page OrvCodePageAnsi is Latin-1 here.

/// The size of the text in bytes of the page. Results: see above.
ORV_API OrvResult OrvGetUtf162MbStringSize(uint32_t &size, const wchar_t *source, OrvCodePage page,
                                           uint32_t count = OrvTerminated);

/// Converts UTF-16 to a byte string. Results: see above.
ORV_API OrvResult OrvConvertUtf162MbString(char *target, uint32_t capacity, const wchar_t *source,
                                           OrvCodePage page, uint32_t *size = nullptr,
                                           uint32_t count = OrvTerminated);

// Byte strings to byte strings.

/// The size of the string in bytes of the other page. Two pages among OrvCodePageDefault, OrvCodePageAnsi and
/// OrvCodePageOem, and two equal ones, give the count of the source without reading it. Every other pair is
/// measured as a conversion to UTF-16 and then to the other page. So from page OrvCodePageAnsi the bytes are
/// measured in the platform's ANSI page, but OrvConvertMb2MbString reads them as Latin-1; it reports itself
/// what it requires.
///
/// Results: see above, and ORV_E_OUT_OF_MEMORY.
ORV_API OrvResult OrvGetMb2MbStringSize(uint32_t &size, const char *source, OrvCodePage sourcePage,
                                        OrvCodePage targetPage, uint32_t count = OrvTerminated);

/// Converts a byte string to another page. Between two equal page values of any kind it is a copy. When one
/// of them is OrvCodePageDefault or OrvCodePageOem, the text is converted by way of UTF-16, by the rules of
/// the functions above; otherwise directly, and page OrvCodePageAnsi is Latin-1.
///
/// Results: see above, and ORV_E_OUT_OF_MEMORY: nothing is written.
ORV_API OrvResult OrvConvertMb2MbString(char *target, uint32_t capacity, const char *source,
                                        OrvCodePage sourcePage, OrvCodePage targetPage,
                                        uint32_t *size = nullptr, uint32_t count = OrvTerminated);

// The same under the names for the library's native wide text, which is UTF-16.

/// As OrvGetMb2Utf16StringSize.
ORV_API OrvResult OrvGetMb2TStringSize(uint32_t &size, const char *source, OrvCodePage page,
                                       uint32_t count = OrvTerminated);

/// As OrvConvertMb2Utf16String.
ORV_API OrvResult OrvConvertMb2TString(wchar_t *target, uint32_t capacity, const char *source,
                                       OrvCodePage page, uint32_t *size = nullptr,
                                       uint32_t count = OrvTerminated);

/// As OrvConvertMb2Utf16String into the descriptor's array. Its length is set on success; `requiredSize`,
/// which may be null, receives the required capacity with ORV_E_BUFFER_TOO_SMALL.
ORV_API OrvResult OrvConvertMb2TString(_ORV_UTF16CHAR_STR &target, const char *source, OrvCodePage page,
                                       uint32_t count = OrvTerminated, uint32_t *requiredSize = nullptr);

/// As OrvConvertMb2Utf16String, in place of the buffer's text; the buffer grows as needed. A result of at
/// most 255 characters takes one pass over the source.
///
/// Results: see above, except ORV_E_BUFFER_TOO_SMALL, and ORV_E_OUT_OF_MEMORY. On failure the text is as it
/// was, except when the platform's own conversion fails in the middle of a longer text: then it is empty.
ORV_API OrvResult OrvConvertMb2TString(OrvUtf16CharHeapBuffer &target, const char *source, OrvCodePage page,
                                       uint32_t count = OrvTerminated);

/// As OrvGetUtf162MbStringSize.
ORV_API OrvResult OrvGetT2MbStringSize(uint32_t &size, const wchar_t *source, OrvCodePage page,
                                       uint32_t count = OrvTerminated);

/// As OrvConvertUtf162MbString.
ORV_API OrvResult OrvConvertT2MbString(char *target, uint32_t capacity, const wchar_t *source,
                                       OrvCodePage page, uint32_t *size = nullptr,
                                       uint32_t count = OrvTerminated);

/// As OrvConvertUtf162MbString, in place of the buffer's text; otherwise as the form for a buffer above.
ORV_API OrvResult OrvConvertT2MbString(OrvMbCharHeapBuffer &target, const wchar_t *source, OrvCodePage page,
                                       uint32_t count = OrvTerminated);

// Native wide text and UTF-16 are the same, so these only measure and copy.

/// The count, or the characters up to the terminator. Always 0.
ORV_API OrvResult OrvGetT2Utf16StringSize(uint32_t &size, const wchar_t *source,
                                          uint32_t count = OrvTerminated);
ORV_API OrvResult OrvGetUtf162TStringSize(uint32_t &size, const wchar_t *source,
                                          uint32_t count = OrvTerminated);

/// Copies the text; both may overlap. `size` is as above.
///
/// Returns 0, or ORV_E_BUFFER_TOO_SMALL, and the target is as it was.
ORV_API OrvResult OrvConvertT2Utf16String(wchar_t *target, uint32_t capacity, const wchar_t *source,
                                          uint32_t *size = nullptr, uint32_t count = OrvTerminated);
ORV_API OrvResult OrvConvertUtf162TString(wchar_t *target, uint32_t capacity, const wchar_t *source,
                                          uint32_t *size = nullptr, uint32_t count = OrvTerminated);

/// The same into the descriptor's array. Its length is set on success; `requiredSize`, which may be null,
/// receives the required capacity with ORV_E_BUFFER_TOO_SMALL.
ORV_API OrvResult OrvConvertUtf162TString(_ORV_UTF16CHAR_STR &target, const wchar_t *source,
                                          uint32_t count = OrvTerminated, uint32_t *requiredSize = nullptr);

// Conversion between UTF-16 text and byte strings of a small set of code pages, and between two of these.
//
// The ANSI and OEM pages are converted by the platform: a character that one of them lacks becomes what the
// platform puts there, mostly a question mark, and nothing is malformed. The other pages are converted here,
// strictly: what is no text in its page is refused, and everything that is can be converted back.
//
//   Latin-1  Each byte is the code point of the same value. Every code point beyond is written as one "?".
//   UTF-7    RFC 2152. Letters, digits, NUL, tab, line feed, carriage return, space and ' ( ) , - . / : ? are
//            written as they are, "+" as "+-", all others in shifts that end with "-". Read is everything
//            that the standard lets a reader read: any ASCII character outside a shift, any UTF-16 inside, a
//            shift that ends at any character or with the text. Malformed: a byte above 127, a "+" before
//            anything but base64 and "-", a shift that ends inside a unit or is padded with other bits than
//            zeros, a surrogate without its other half.
//   UTF-8    RFC 3629. Malformed: a continuation byte that continues nothing or is missing, an overlong form,
//            a surrogate, a value above U+10FFFF.
//   UTF-16   Little-endian, in pairs of bytes that may stand at any address. Towards another page an odd
//            number of bytes and a surrogate without its other half are malformed. From and to UTF-16 text it
//            is a plain copy, which looks at nothing but that the number of bytes is even. Its bytes hold
//            zeros: give their count.
//
// What holds for every function:
// - Sizes, counts and capacities are in characters: bytes of a byte string, 16-bit units of UTF-16 text. A
//   source count of OrvTerminated means that the source is terminated, by one zero character, and is to be
//   counted. A null source is empty.
// - The size queries give the size without the terminator. Conversions need a capacity for the terminator too
//   and write one (one character, a single zero byte also behind page OrvCodePageUtf16). Their `size`, which
//   may be null, receives the characters before the terminator on success, and with ORV_E_BUFFER_TOO_SMALL
//   the capacity that would do, terminator included. On every other failure it is left alone.
// - A null target counts as one of capacity 0; so does a call that only wants to know what is required. An
//   empty source needs a capacity of 1, and is converted whatever the page.
// - Source and target must not overlap, except where the function only copies. A conversion that fits takes
//   one pass over the source; only from or to a page of the platform, between two byte strings, is memory
//   taken from the heap, and only for more than 255 characters.
//
// What all conversions return beside 0:
//   ORV_E_BUFFER_TOO_SMALL  The target cannot hold the result and its terminator. It then holds no text, or,
//                           towards or from a page of the platform, perhaps the beginning of the result:
//                           long texts are converted in pieces of 32766 characters. Both are terminated.
//   ORV_E_INVALID_DATA      The source is malformed, however small the target; it then holds an empty text.
//   ORV_E_NOT_PROVIDED      A page value outside the table. Nothing is written.
//   ORV_E_BAD_LENGTH        The result is so long that 32 bits cannot count it and its terminator.
//   another failure         The platform's own conversion failed, and this is its status as a result code.
// The size queries return the same, except ORV_E_BUFFER_TOO_SMALL, and leave `size` alone when they fail.
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

/// How many units the byte string becomes. Results: see above.
ORV_API OrvResult OrvGetMb2Utf16StringSize(uint32_t &size, const char *source, OrvCodePage page,
                                           uint32_t count = OrvTerminated);

/// Converts a byte string to UTF-16. Results: see above.
ORV_API OrvResult OrvConvertMb2Utf16String(wchar_t *target, uint32_t capacity, const char *source,
                                           OrvCodePage page, uint32_t *size = nullptr,
                                           uint32_t count = OrvTerminated);

// UTF-16 to byte strings. Page OrvCodePageAnsi is Latin-1 here.

/// How many bytes the text becomes. Results: see above.
ORV_API OrvResult OrvGetUtf162MbStringSize(uint32_t &size, const wchar_t *source, OrvCodePage page,
                                           uint32_t count = OrvTerminated);

/// Converts UTF-16 to a byte string. Results: see above.
ORV_API OrvResult OrvConvertUtf162MbString(char *target, uint32_t capacity, const wchar_t *source,
                                           OrvCodePage page, uint32_t *size = nullptr,
                                           uint32_t count = OrvTerminated);

// Byte strings to byte strings.

/// How many bytes the string becomes in the other page. Two pages among OrvCodePageDefault, OrvCodePageAnsi
/// and OrvCodePageOem, and two equal ones, give the count of the source without a look at it. Every other
/// pair is measured as the text would be converted to UTF-16 and from there on, so from page OrvCodePageAnsi
/// it is what the platform's ANSI page makes of the bytes; OrvConvertMb2MbString takes them as Latin-1, and
/// says itself what it requires.
///
/// Results: see above, and ORV_E_OUT_OF_MEMORY.
ORV_API OrvResult OrvGetMb2MbStringSize(uint32_t &size, const char *source, OrvCodePage sourcePage,
                                        OrvCodePage targetPage, uint32_t count = OrvTerminated);

/// Converts a byte string to another page. Between two equal page values, of whatever kind, it is a copy.
/// Where one of both is OrvCodePageDefault or OrvCodePageOem the text goes through UTF-16, by the rules of
/// the functions above; otherwise directly, and page OrvCodePageAnsi is Latin-1.
///
/// Results: see above, and ORV_E_OUT_OF_MEMORY: nothing is written.
ORV_API OrvResult OrvConvertMb2MbString(char *target, uint32_t capacity, const char *source,
                                        OrvCodePage sourcePage, OrvCodePage targetPage,
                                        uint32_t *size = nullptr, uint32_t count = OrvTerminated);

// The same by the names for the library's native wide text, which is UTF-16.

/// As OrvGetMb2Utf16StringSize.
ORV_API OrvResult OrvGetMb2TStringSize(uint32_t &size, const char *source, OrvCodePage page,
                                       uint32_t count = OrvTerminated);

/// As OrvConvertMb2Utf16String.
ORV_API OrvResult OrvConvertMb2TString(wchar_t *target, uint32_t capacity, const char *source,
                                       OrvCodePage page, uint32_t *size = nullptr,
                                       uint32_t count = OrvTerminated);

/// As OrvConvertMb2Utf16String into the descriptor's array. Its length is set on success; `requiredSize`,
/// which may be null, receives the capacity that would do with ORV_E_BUFFER_TOO_SMALL.
ORV_API OrvResult OrvConvertMb2TString(_ORV_UTF16CHAR_STR &target, const char *source, OrvCodePage page,
                                       uint32_t count = OrvTerminated, uint32_t *requiredSize = nullptr);

/// As OrvConvertMb2Utf16String, in place of the buffer's text; the buffer grows as needed. One pass over the
/// source does for a result of at most 255 characters.
///
/// Results: see above, except ORV_E_BUFFER_TOO_SMALL, and ORV_E_OUT_OF_MEMORY. On failure the text is as it
/// was, except when the platform's own conversion fails in the middle of a longer text: it is empty then.
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
/// receives the capacity that would do with ORV_E_BUFFER_TOO_SMALL.
ORV_API OrvResult OrvConvertUtf162TString(_ORV_UTF16CHAR_STR &target, const wchar_t *source,
                                          uint32_t count = OrvTerminated, uint32_t *requiredSize = nullptr);

// The format engine: printf-like text from values, into a caller's array, a descriptor, a heap buffer, a
// writable reference or a sink.
//
//     OrvUtf16CharHeapBuffer line;
//     OrvResult result = OrvFormatString(OrvCodePageUtf8, line, L"%s: %u of %u bytes, %.1f %%", name, done,
//                                        total, percent); // "copy: 3 of 8 bytes, 37.5 %"
//
// A directive is  % flags width .precision modifier conversion
//
//   flags       any of  - (left-justify)  + and space (sign)  0 (pad with zeros)  # (radix prefix)
//   width       decimal digits, or * for the next 32-bit argument; below zero it left-justifies
//   precision   a point and decimal digits, or .* for the next 32-bit argument; below zero it counts as not
//               given: the least number of digits of an integer (32 at most), the exact number of a double
//               (6 when not given), the greatest number of characters of a string
//   modifier    hh (8 bits)  h (16)  l, I32, I, z (32)  ll, I64 (64)
//   conversion  d i      signed decimal
//               u o x X  unsigned decimal, octal, hexadecimal
//               p        a pointer: hexadecimal in lower case, padded with zeros
//               e E      a double with an exponent of at least two digits: d.dddddde+dd
//               f        a double without exponent
//               g G      a double in the shorter of both forms; the precision counts significant digits;
//                        trailing zeros are removed unless there is the flag #
//               c        one character, from the low bits of a 32-bit argument
//               s        text of the engine's own width; as in all forms of text, a null pointer prints
//                        "(null)"
//               ls       UTF-16 text, in the forms that take a code page
//               hs       byte text, in the forms that take a code page
//               wZ       a counted UTF-16 string (UNICODE_STRING)
//               Z        a counted byte string (ANSI_STRING)
//               %        a percent sign
//
// Text whose width is not the engine's own is converted by the code page, or by OrvCodePageDefault in the
// forms that take none. All of it is converted, whatever the precision, which then counts characters of the
// output. When the text is empty, the directive prints nothing, not even padding. A failure of the conversion
// (ORV_E_INVALID_DATA, ORV_E_NOT_PROVIDED, ORV_E_OUT_OF_MEMORY, see orv/text/code_page.h) ends formatting and
// is the result.
//
// Sign, prefix and padding are placed as by C's printf. Doubles are printed exactly, rounded half to even at
// any precision; infinities and NaN print as inf and nan, in capitals for E and G, and are padded with spaces
// only. A directive with any other conversion or modifier is copied to the output unchanged and takes no
// argument; an integer conversion with the modifier w prints nothing and takes no argument; a percent sign
// that starts no directive is printed.
//
// Arguments travel as the compiler passes them to a function with an ellipsis: four bytes each, eight for
// 64-bit integers and doubles. They must not point into the target. Every form returns
// ORV_E_INVALID_ARGUMENT, and writes nothing, for a null format.

#pragma once

#include <stdarg.h>

#include "orv/base.h"
#include "orv/text/code_page.h"
#include "orv/text/heap_buffer.h"
#include "orv/text/interfaces.h"
#include "orv/text/string_ref.h"

/// Formats into an array of `capacity` characters and terminates it. `written`, when given, receives the
/// number of characters before the terminator.
///
/// Returns 0; ORV_E_BUFFER_TOO_SMALL when the text does not fit: the array then holds as much as fits,
/// terminated and counted; a failure to convert: the array then holds the text before it, terminated and
/// counted; ORV_E_INVALID_ARGUMENT for a null array or a capacity of 0, and nothing is written.
ORV_API OrvResult OrvFormatStringV(OrvCodePage codePage, wchar_t *buffer, uint32_t capacity,
                                   const wchar_t *format, uint32_t *written, va_list arguments);
ORV_API OrvResult OrvFormatStringV(OrvCodePage codePage, char *buffer, uint32_t capacity, const char *format,
                                   uint32_t *written, va_list arguments);

/// Formats into the descriptor's array from its start, and sets its length on success. Results as for the
/// array; on failure the length is as it was.
ORV_API OrvResult OrvFormatStringV(OrvCodePage codePage, _ORV_UTF16CHAR_STR &target, const wchar_t *format,
                                   va_list arguments);

/// Replaces the buffer's text; the buffer grows in doubling steps, from 256 characters on.
///
/// Returns 0, ORV_E_OUT_OF_MEMORY or a failure to convert. On failure the buffer is empty, or as it was when
/// its first allocation failed.
ORV_API OrvResult OrvFormatStringV(OrvCodePage codePage, OrvUtf16CharHeapBuffer &target,
                                   const wchar_t *format, va_list arguments);

/// THIS REPLACES THE BUFFER'S TEXT, despite its name: it is the same operation as the one above. To append,
/// give it the buffer as a writable reference, OrvMakeMutableStringRef(buffer): that form appends.
ORV_API OrvResult OrvAppendFormatStringV(OrvCodePage codePage, OrvUtf16CharHeapBuffer &target,
                                         const wchar_t *format, va_list arguments);

/// Replaces the text of the reference's owner, which is resized for every piece.
///
/// Returns 0, the owner's first failure or a failure to convert; the owner's text is then empty.
ORV_API OrvResult OrvFormatStringV(const OrvMutableStringRefBase2<wchar_t, 0> &target, const wchar_t *format,
                                   va_list arguments);

/// Appends to the text of the reference's owner, which is resized for every piece.
///
/// Returns 0, the owner's first failure or a failure to convert; the owner's text is then what it was.
ORV_API OrvResult OrvAppendFormatStringV(const OrvMutableStringRefBase2<wchar_t, 0> &target,
                                         const wchar_t *format, va_list arguments);

/// Passes the text to the sink piece by piece: each run of literal text, the output of each directive (in
/// several pieces when it is longer than 128 characters), each directive that is copied. Returns 0, or the
/// first failure of the sink or of a conversion, which ends formatting.
ORV_API OrvResult OrvBasAppendFormatV(OrvBasAppendable<char> &target, const char *format, va_list arguments);
ORV_API OrvResult OrvBasAppendFormatV(OrvBasAppendable<wchar_t> &target, const wchar_t *format,
                                      va_list arguments);

/// OrvFormatStringV, with the arguments after the format.
inline OrvResult OrvFormatString(OrvCodePage codePage, wchar_t *buffer, uint32_t capacity, uint32_t *written,
                                 const wchar_t *format, ...)
{
    va_list arguments;
    va_start(arguments, format);
    const OrvResult result = OrvFormatStringV(codePage, buffer, capacity, format, written, arguments);
    va_end(arguments);
    return result;
}

/// OrvFormatStringV, with the arguments after the format.
inline OrvResult OrvFormatString(OrvCodePage codePage, char *buffer, uint32_t capacity, uint32_t *written,
                                 const char *format, ...)
{
    va_list arguments;
    va_start(arguments, format);
    const OrvResult result = OrvFormatStringV(codePage, buffer, capacity, format, written, arguments);
    va_end(arguments);
    return result;
}

/// OrvFormatStringV, with the arguments after the format.
inline OrvResult OrvFormatString(OrvCodePage codePage, _ORV_UTF16CHAR_STR &target, const wchar_t *format, ...)
{
    va_list arguments;
    va_start(arguments, format);
    const OrvResult result = OrvFormatStringV(codePage, target, format, arguments);
    va_end(arguments);
    return result;
}

/// OrvFormatStringV, with the arguments after the format.
inline OrvResult OrvFormatString(OrvCodePage codePage, OrvUtf16CharHeapBuffer &target, const wchar_t *format,
                                 ...)
{
    va_list arguments;
    va_start(arguments, format);
    const OrvResult result = OrvFormatStringV(codePage, target, format, arguments);
    va_end(arguments);
    return result;
}

/// OrvAppendFormatStringV, with the arguments after the format. THIS REPLACES THE BUFFER'S TEXT; to append,
/// give OrvMakeMutableStringRef(buffer) instead of the code page and the buffer.
inline OrvResult OrvAppendFormatString(OrvCodePage codePage, OrvUtf16CharHeapBuffer &target,
                                       const wchar_t *format, ...)
{
    va_list arguments;
    va_start(arguments, format);
    const OrvResult result = OrvAppendFormatStringV(codePage, target, format, arguments);
    va_end(arguments);
    return result;
}

/// OrvFormatStringV, with the arguments after the format.
inline OrvResult OrvFormatString(const OrvMutableStringRefBase2<wchar_t, 0> &target, const wchar_t *format,
                                 ...)
{
    va_list arguments;
    va_start(arguments, format);
    const OrvResult result = OrvFormatStringV(target, format, arguments);
    va_end(arguments);
    return result;
}

/// OrvAppendFormatStringV, with the arguments after the format.
inline OrvResult OrvAppendFormatString(const OrvMutableStringRefBase2<wchar_t, 0> &target,
                                       const wchar_t *format, ...)
{
    va_list arguments;
    va_start(arguments, format);
    const OrvResult result = OrvAppendFormatStringV(target, format, arguments);
    va_end(arguments);
    return result;
}

/// OrvBasAppendFormatV, with the arguments after the format.
inline OrvResult OrvBasAppendFormat(OrvBasAppendable<char> &target, const char *format, ...)
{
    va_list arguments;
    va_start(arguments, format);
    const OrvResult result = OrvBasAppendFormatV(target, format, arguments);
    va_end(arguments);
    return result;
}

/// OrvBasAppendFormatV, with the arguments after the format.
inline OrvResult OrvBasAppendFormat(OrvBasAppendable<wchar_t> &target, const wchar_t *format, ...)
{
    va_list arguments;
    va_start(arguments, format);
    const OrvResult result = OrvBasAppendFormatV(target, format, arguments);
    va_end(arguments);
    return result;
}

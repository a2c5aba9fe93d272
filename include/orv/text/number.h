// Numbers to text and back, outside the format engine. Every operation exists for byte strings and for
// UTF-16.
//
// A radix is 2 to 36; digits above 9 are letters, read in either case and written in lower case. The
// operations for sizes and file sizes are plain aliases that show what a caller means: they know no units.

#pragma once

#include "orv/base.h"

/// Writes a number's digits and a terminator, with a minus sign in front when the number is below zero.
/// `written`, when given, receives the number of characters before the terminator.
///
/// Returns 0; ORV_E_BUFFER_TOO_SMALL when there is no room for all digits and the terminator: the target then
/// holds the first `capacity` characters, unterminated; ORV_E_INVALID_ARGUMENT for a null target or another
/// radix, and nothing is written.
ORV_API OrvResult OrvConvertNumber2String(char *target, uint32_t capacity, signed char value, int radix,
                                          unsigned int *written = nullptr);
ORV_API OrvResult OrvConvertNumber2String(char *target, uint32_t capacity, unsigned char value, int radix,
                                          unsigned int *written = nullptr);
ORV_API OrvResult OrvConvertNumber2String(char *target, uint32_t capacity, short value, int radix,
                                          unsigned int *written = nullptr);
ORV_API OrvResult OrvConvertNumber2String(char *target, uint32_t capacity, unsigned short value, int radix,
                                          unsigned int *written = nullptr);
ORV_API OrvResult OrvConvertNumber2String(char *target, uint32_t capacity, int value, int radix,
                                          unsigned int *written = nullptr);
ORV_API OrvResult OrvConvertNumber2String(char *target, uint32_t capacity, unsigned long value, int radix,
                                          unsigned int *written = nullptr);
ORV_API OrvResult OrvConvertNumber2String(char *target, uint32_t capacity, __int64 value, int radix,
                                          unsigned int *written = nullptr);
ORV_API OrvResult OrvConvertNumber2String(char *target, uint32_t capacity, unsigned __int64 value, int radix,
                                          unsigned int *written = nullptr);
ORV_API OrvResult OrvConvertNumber2String(wchar_t *target, uint32_t capacity, signed char value, int radix,
                                          unsigned int *written = nullptr);
ORV_API OrvResult OrvConvertNumber2String(wchar_t *target, uint32_t capacity, unsigned char value, int radix,
                                          unsigned int *written = nullptr);
ORV_API OrvResult OrvConvertNumber2String(wchar_t *target, uint32_t capacity, short value, int radix,
                                          unsigned int *written = nullptr);
ORV_API OrvResult OrvConvertNumber2String(wchar_t *target, uint32_t capacity, unsigned short value, int radix,
                                          unsigned int *written = nullptr);
ORV_API OrvResult OrvConvertNumber2String(wchar_t *target, uint32_t capacity, int value, int radix,
                                          unsigned int *written = nullptr);
ORV_API OrvResult OrvConvertNumber2String(wchar_t *target, uint32_t capacity, unsigned long value, int radix,
                                          unsigned int *written = nullptr);
ORV_API OrvResult OrvConvertNumber2String(wchar_t *target, uint32_t capacity, __int64 value, int radix,
                                          unsigned int *written = nullptr);
ORV_API OrvResult OrvConvertNumber2String(wchar_t *target, uint32_t capacity, unsigned __int64 value,
                                          int radix, unsigned int *written = nullptr);

/// OrvConvertNumber2String for a size.
ORV_API OrvResult OrvConvertSize2String(char *target, uint32_t capacity, unsigned int value, int radix,
                                        unsigned int *written = nullptr);
ORV_API OrvResult OrvConvertSize2String(wchar_t *target, uint32_t capacity, unsigned int value, int radix,
                                        unsigned int *written = nullptr);

/// OrvConvertNumber2String for the size of a file.
ORV_API OrvResult OrvConvertFileSize2String(char *target, uint32_t capacity, __int64 value, int radix,
                                            unsigned int *written = nullptr);
ORV_API OrvResult OrvConvertFileSize2String(wchar_t *target, uint32_t capacity, __int64 value, int radix,
                                            unsigned int *written = nullptr);

/// Reads a number at the start of a text of `length` characters (OrvTerminated: counted up to its
/// terminator): an optional minus sign, then digits. Blanks and a plus sign are not part of a number. A null
/// text is empty.
///
/// Radix 0 reads hexadecimal after "0x" or "0X", if something follows that, and decimal otherwise; radix 16
/// skips such a prefix. Hexadecimal text may give any bit pattern of a signed type: FFFFFFFF is -1 as an int.
///
/// Reading stops at the first character that is not a digit of the radix, and before a digit that would take
/// the value out of the type's range; a negative number is out of an unsigned type's range. `value` receives
/// the number read up to there, 0 for an empty text. `end`, when given, receives null when the whole text was
/// read, otherwise the character where reading stopped.
///
/// Returns 0; ORV_E_INVALID_ARGUMENT when reading stopped early and `end` was given (without it, any text
/// after the number is accepted); ORV_E_INVALID_ARGUMENT for another radix, and `value` is not written.
ORV_API OrvResult OrvConvertString2Number(signed char &value, const char *text, uint32_t length, int radix,
                                          const char **end = nullptr);
ORV_API OrvResult OrvConvertString2Number(unsigned char &value, const char *text, uint32_t length, int radix,
                                          const char **end = nullptr);
ORV_API OrvResult OrvConvertString2Number(short &value, const char *text, uint32_t length, int radix,
                                          const char **end = nullptr);
ORV_API OrvResult OrvConvertString2Number(unsigned short &value, const char *text, uint32_t length, int radix,
                                          const char **end = nullptr);
ORV_API OrvResult OrvConvertString2Number(int &value, const char *text, uint32_t length, int radix,
                                          const char **end = nullptr);
ORV_API OrvResult OrvConvertString2Number(unsigned long &value, const char *text, uint32_t length, int radix,
                                          const char **end = nullptr);
ORV_API OrvResult OrvConvertString2Number(__int64 &value, const char *text, uint32_t length, int radix,
                                          const char **end = nullptr);
ORV_API OrvResult OrvConvertString2Number(unsigned __int64 &value, const char *text, uint32_t length,
                                          int radix, const char **end = nullptr);
ORV_API OrvResult OrvConvertString2Number(signed char &value, const wchar_t *text, uint32_t length, int radix,
                                          const wchar_t **end = nullptr);
ORV_API OrvResult OrvConvertString2Number(unsigned char &value, const wchar_t *text, uint32_t length,
                                          int radix, const wchar_t **end = nullptr);
ORV_API OrvResult OrvConvertString2Number(short &value, const wchar_t *text, uint32_t length, int radix,
                                          const wchar_t **end = nullptr);
ORV_API OrvResult OrvConvertString2Number(unsigned short &value, const wchar_t *text, uint32_t length,
                                          int radix, const wchar_t **end = nullptr);
ORV_API OrvResult OrvConvertString2Number(int &value, const wchar_t *text, uint32_t length, int radix,
                                          const wchar_t **end = nullptr);
ORV_API OrvResult OrvConvertString2Number(unsigned long &value, const wchar_t *text, uint32_t length,
                                          int radix, const wchar_t **end = nullptr);
ORV_API OrvResult OrvConvertString2Number(__int64 &value, const wchar_t *text, uint32_t length, int radix,
                                          const wchar_t **end = nullptr);
ORV_API OrvResult OrvConvertString2Number(unsigned __int64 &value, const wchar_t *text, uint32_t length,
                                          int radix, const wchar_t **end = nullptr);

/// OrvConvertString2Number for a size.
ORV_API OrvResult OrvConvertString2Size(unsigned int &value, const char *text, uint32_t length, int radix,
                                        const char **end = nullptr);
ORV_API OrvResult OrvConvertString2Size(unsigned int &value, const wchar_t *text, uint32_t length, int radix,
                                        const wchar_t **end = nullptr);

/// OrvConvertString2Number for the size of a file.
ORV_API OrvResult OrvConvertString2FileSize(__int64 &value, const char *text, uint32_t length, int radix,
                                            const char **end = nullptr);
ORV_API OrvResult OrvConvertString2FileSize(__int64 &value, const wchar_t *text, uint32_t length, int radix,
                                            const wchar_t **end = nullptr);

/// Writes a double in exponent form with `digits` significant digits (7 when it is below 1), correctly
/// rounded, and a terminator. Results and `written` are those of OrvConvertNumber2String.
ORV_API OrvResult OrvConvertDouble2String(char *target, uint32_t capacity, double value, int digits,
                                          unsigned int *written = nullptr);
ORV_API OrvResult OrvConvertDouble2String(wchar_t *target, uint32_t capacity, double value, int digits,
                                          unsigned int *written = nullptr);

/// The text forms of a double.
enum OrvString2DoubleMode : uint32_t {
    OrvString2DoubleDecimal =
        0, ///< [sign] digits [. digits] [e [sign] digits], with a digit on either side of the point
};

/// Reads a double: the one nearest to the text, half to even, however many digits it has. Too large a number
/// gives infinity, too small a one zero. An exponent without digits is not part of the number.
///
/// `value` and `end` as for OrvConvertString2Number; when a text does not start with a number, reading stops
/// at its start.
///
/// Returns 0; ORV_E_INVALID_ARGUMENT when reading stopped early and `end` was given; ORV_E_INVALID_ARGUMENT
/// for another mode, and `value` is not written.
ORV_API OrvResult OrvConvertString2Double(double &value, const char *text, uint32_t length,
                                          const char **end = nullptr,
                                          OrvString2DoubleMode mode = OrvString2DoubleDecimal);
ORV_API OrvResult OrvConvertString2Double(double &value, const wchar_t *text, uint32_t length,
                                          const wchar_t **end = nullptr,
                                          OrvString2DoubleMode mode = OrvString2DoubleDecimal);

/// Splits a double: the integral part, cut towards zero, is stored through the reference, the fraction is
/// returned; both have the sign of the value. An infinity has a fraction of 0, and a NaN gives a NaN for both
/// (C's modf).
ORV_API double OrvModf(double value, double &integral);

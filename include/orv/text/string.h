// Primitives over character arrays of the caller: measure, copy, append, compare, find, trim, change case.
//
// For all of them:
// - Lengths, counts and capacities are in characters of the type's own width: bytes, or UTF-16 code units.
//   The text may have any address.
// - OrvTerminated as a count means that the text is terminated and is counted up to its terminator. Any other
//   count is exact, and terminators inside it are ordinary characters. A null text is empty, whatever its
//   count.
// - A capacity counts the terminator. A result that does not fit together with its terminator is never cut:
//   functions that write to an array leave an empty string in it, functions that write to a descriptor leave
//   the descriptor and its characters as they were. A capacity of 0, or a null array, is refused with
//   ORV_E_INVALID_ARGUMENT before anything is written; only copying and appending to a descriptor of capacity
//   0 returns ORV_E_BUFFER_TOO_SMALL, so that a caller can query the required size.

#pragma once

#include "orv/base.h"
#include "orv/text/code_page.h"
#include "orv/text/string_ref.h"

// Measure.

/// Characters up to the terminator.
ORV_API uint32_t OrvGetStringSizeInElements(const char *text);
ORV_API uint32_t OrvGetStringSizeInElements(const wchar_t *text);

/// Characters up to the terminator, but at most `limit`; there need not be a terminator after the limit.
ORV_API uint32_t OrvGetStringSizeInElements(const char *text, uint32_t limit);
ORV_API uint32_t OrvGetStringSizeInElements(const wchar_t *text, uint32_t limit);

// Copy and append. The source and the destination may overlap.

/// Replaces what the array holds by `count` characters of the source.
///
/// ORV_E_INVALID_ARGUMENT: capacity 0. ORV_E_BUFFER_TOO_SMALL: the text does not fit; the array then holds an
/// empty string.
ORV_API OrvResult OrvCopyString(char *destination, uint32_t capacity, const char *source,
                                uint32_t count = OrvTerminated);
ORV_API OrvResult OrvCopyString(wchar_t *destination, uint32_t capacity, const wchar_t *source,
                                uint32_t count = OrvTerminated);

/// Replaces what the descriptor's array holds, and sets the descriptor's length.
///
/// ORV_E_BUFFER_TOO_SMALL: the text does not fit, as it never does with capacity 0; `requiredSize` is then
/// set to the capacity that it needs, and nothing else changes.
ORV_API OrvResult OrvCopyString(_ORV_UTF16CHAR_STR &destination, const wchar_t *source,
                                uint32_t count = OrvTerminated, uint32_t *requiredSize = nullptr);

/// Copies `count` characters that start at position `start` of the source. The start is not checked: the
/// source must have at least `start + count` characters.
///
/// ORV_E_INVALID_ARGUMENT: capacity 0, or a count that is greater than the source's length, as OrvTerminated
/// always is. Otherwise as OrvCopyString.
ORV_API OrvResult OrvCopySubString(char *destination, uint32_t capacity, const char *source, uint32_t start,
                                   uint32_t count, uint32_t sourceLength = OrvTerminated);
ORV_API OrvResult OrvCopySubString(wchar_t *destination, uint32_t capacity, const wchar_t *source,
                                   uint32_t start, uint32_t count, uint32_t sourceLength = OrvTerminated);

/// The same into a descriptor. Whether `count` characters fit is tested first, with the results of
/// OrvCopyString.
ORV_API OrvResult OrvCopySubString(_ORV_UTF16CHAR_STR &destination, const wchar_t *source, uint32_t start,
                                   uint32_t count, uint32_t sourceLength = OrvTerminated,
                                   uint32_t *requiredSize = nullptr);

/// Appends `count` characters of the source to the text in the array. `length`, when given, is the length of
/// that text and receives the new length; otherwise the array is searched for its terminator.
///
/// ORV_E_INVALID_ARGUMENT: capacity 0. ORV_E_NOT_TERMINATED: no terminator within the capacity, or a length
/// that is not below it. ORV_E_BUFFER_TOO_SMALL: the result does not fit. In every case the array is as it
/// was.
ORV_API OrvResult OrvAppendString(char *destination, uint32_t capacity, const char *source,
                                  uint32_t *length = nullptr, uint32_t count = OrvTerminated);
ORV_API OrvResult OrvAppendString(wchar_t *destination, uint32_t capacity, const wchar_t *source,
                                  uint32_t *length = nullptr, uint32_t count = OrvTerminated);

/// The same with the length of the descriptor, which may be OrvTerminated.
///
/// ORV_E_NOT_TERMINATED: that length, and no terminator within the capacity. ORV_E_BUFFER_TOO_SMALL: the
/// result does not fit; `requiredSize` is then set to the capacity that it needs, and nothing else changes.
ORV_API OrvResult OrvAppendString(_ORV_UTF16CHAR_STR &destination, const wchar_t *source,
                                  uint32_t count = OrvTerminated, uint32_t *requiredSize = nullptr);

// Compare. Each gives -1 when `a` comes first, 0 when both are equal, 1 when `b` comes first; where one text
// begins with the other, the shorter one comes first.

/// By the unsigned bytes as they lie in memory. For UTF-16 text that is not the order of the code units,
/// because the low byte comes first: U+0100 sorts before U+00FF. This order serves for tests of equality, and
/// for sorting where any fixed order will do.
ORV_API int OrvCompareString(const char *a, const char *b, uint32_t lengthA = OrvTerminated,
                             uint32_t lengthB = OrvTerminated);
ORV_API int OrvCompareString(const wchar_t *a, const wchar_t *b, uint32_t lengthA = OrvTerminated,
                             uint32_t lengthB = OrvTerminated);

/// The same on at most `n` characters of each. Nothing after them is read.
ORV_API int OrvCompareSubString(const char *a, const char *b, uint32_t n, uint32_t lengthA = OrvTerminated,
                                uint32_t lengthB = OrvTerminated);
ORV_API int OrvCompareSubString(const wchar_t *a, const wchar_t *b, uint32_t n,
                                uint32_t lengthA = OrvTerminated, uint32_t lengthB = OrvTerminated);

/// By code units, each mapped to upper case by the platform (RtlUpcaseUnicodeChar). The code page is not
/// used.
ORV_API int OrvCompareStringNoCase(OrvCodePage codePage, const wchar_t *a, const wchar_t *b,
                                   uint32_t lengthA = OrvTerminated, uint32_t lengthB = OrvTerminated);

/// The same on at most `n` characters of each.
ORV_API int OrvCompareSubStringNoCase(OrvCodePage codePage, const wchar_t *a, const wchar_t *b, uint32_t n,
                                      uint32_t lengthA = OrvTerminated, uint32_t lengthB = OrvTerminated);

// Find. Each gives a pointer into the text, or null when there is no match.

/// The first place of the character. The terminator is not part of the text and is never found.
ORV_API const char *OrvFindElement(const char *text, char character, uint32_t length = OrvTerminated);
ORV_API const wchar_t *OrvFindElement(const wchar_t *text, wchar_t character,
                                      uint32_t length = OrvTerminated);
ORV_API char *OrvFindElement(char *text, char character, uint32_t length = OrvTerminated);
ORV_API wchar_t *OrvFindElement(wchar_t *text, wchar_t character, uint32_t length = OrvTerminated);

/// The last place of the character.
ORV_API const char *OrvFindElementFromRight(const char *text, char character,
                                            uint32_t length = OrvTerminated);
ORV_API const wchar_t *OrvFindElementFromRight(const wchar_t *text, wchar_t character,
                                               uint32_t length = OrvTerminated);
ORV_API char *OrvFindElementFromRight(char *text, char character, uint32_t length = OrvTerminated);
ORV_API wchar_t *OrvFindElementFromRight(wchar_t *text, wchar_t character, uint32_t length = OrvTerminated);

/// The first place of the needle; an empty needle is found at the start of every text. The time grows with
/// the sum of both lengths, whatever the texts contain.
ORV_API const char *OrvFindSubString(const char *text, const char *needle,
                                     uint32_t textLength = OrvTerminated,
                                     uint32_t needleLength = OrvTerminated);
ORV_API const wchar_t *OrvFindSubString(const wchar_t *text, const wchar_t *needle,
                                        uint32_t textLength = OrvTerminated,
                                        uint32_t needleLength = OrvTerminated);
ORV_API char *OrvFindSubString(char *text, const char *needle, uint32_t textLength = OrvTerminated,
                               uint32_t needleLength = OrvTerminated);
ORV_API wchar_t *OrvFindSubString(wchar_t *text, const wchar_t *needle, uint32_t textLength = OrvTerminated,
                                  uint32_t needleLength = OrvTerminated);

/// The last place of the needle; an empty needle is found at the end of every text.
ORV_API const char *OrvFindSubStringFromRight(const char *text, const char *needle,
                                              uint32_t textLength = OrvTerminated,
                                              uint32_t needleLength = OrvTerminated);
ORV_API const wchar_t *OrvFindSubStringFromRight(const wchar_t *text, const wchar_t *needle,
                                                 uint32_t textLength = OrvTerminated,
                                                 uint32_t needleLength = OrvTerminated);
ORV_API char *OrvFindSubStringFromRight(char *text, const char *needle, uint32_t textLength = OrvTerminated,
                                        uint32_t needleLength = OrvTerminated);
ORV_API wchar_t *OrvFindSubStringFromRight(wchar_t *text, const wchar_t *needle,
                                           uint32_t textLength = OrvTerminated,
                                           uint32_t needleLength = OrvTerminated);

// Trim. Spaces, tabs (9), line feeds (10), vertical tabs (11) and carriage returns (13) within the count are
// cut off. The source and the destination may overlap.

/// Copies the source without such characters at its start; `resultLength` is set on success.
///
/// ORV_E_INVALID_ARGUMENT: capacity 0. ORV_E_BUFFER_TOO_SMALL: the result does not fit; the array then holds
/// an empty string.
ORV_API OrvResult OrvTrimStringLeft(char *destination, uint32_t capacity, const char *source,
                                    uint32_t *resultLength = nullptr, uint32_t count = OrvTerminated);
ORV_API OrvResult OrvTrimStringLeft(wchar_t *destination, uint32_t capacity, const wchar_t *source,
                                    uint32_t *resultLength = nullptr, uint32_t count = OrvTerminated);

/// Copies the source without such characters at its end. Otherwise as OrvTrimStringLeft.
ORV_API OrvResult OrvTrimStringRight(char *destination, uint32_t capacity, const char *source,
                                     uint32_t *resultLength = nullptr, uint32_t count = OrvTerminated);
ORV_API OrvResult OrvTrimStringRight(wchar_t *destination, uint32_t capacity, const wchar_t *source,
                                     uint32_t *resultLength = nullptr, uint32_t count = OrvTerminated);

/// Copies the source without such characters at its start and end. The start is trimmed first, and the array
/// must have room for that result, which includes the characters that are then cut off at the end. Otherwise
/// as OrvTrimStringLeft.
ORV_API OrvResult OrvTrimString(char *destination, uint32_t capacity, const char *source,
                                uint32_t *resultLength = nullptr, uint32_t count = OrvTerminated);
ORV_API OrvResult OrvTrimString(wchar_t *destination, uint32_t capacity, const wchar_t *source,
                                uint32_t *resultLength = nullptr, uint32_t count = OrvTerminated);

/// The same into a descriptor, whose length is set on success; otherwise the descriptor and its characters
/// are as they were.
ORV_API OrvResult OrvTrimStringLeft(_ORV_UTF16CHAR_STR &destination, const wchar_t *source,
                                    uint32_t count = OrvTerminated);
ORV_API OrvResult OrvTrimStringRight(_ORV_UTF16CHAR_STR &destination, const wchar_t *source,
                                     uint32_t count = OrvTerminated);
ORV_API OrvResult OrvTrimString(_ORV_UTF16CHAR_STR &destination, const wchar_t *source,
                                uint32_t count = OrvTerminated);

// Case.

/// Changes A-Z to a-z in place. Does nothing when the length reaches beyond the end of the address space.
ORV_API void OrvLowerASCIIString(char *text, uint32_t length = OrvTerminated);
ORV_API void OrvLowerASCIIString(wchar_t *text, uint32_t length = OrvTerminated);

/// Changes a-z to A-Z in place. Does nothing when the length reaches beyond the end of the address space.
ORV_API void OrvUpperASCIIString(char *text, uint32_t length = OrvTerminated);
ORV_API void OrvUpperASCIIString(wchar_t *text, uint32_t length = OrvTerminated);

/// Copies the source with every code unit in lower case, as the platform maps it; `resultLength` is set on
/// success. The code page is not used. The destination may be the source.
///
/// ORV_E_INVALID_ARGUMENT: capacity 0. ORV_E_BAD_LENGTH: a count or a capacity of 65535 or more.
/// ORV_E_BUFFER_TOO_SMALL: the result does not fit; the array then holds an empty string. Any other failure
/// is the platform's converted status.
ORV_API OrvResult OrvLowerString(OrvCodePage codePage, wchar_t *destination, uint32_t capacity,
                                 const wchar_t *source, uint32_t *resultLength = nullptr,
                                 uint32_t count = OrvTerminated);

/// The same with every code unit in upper case.
ORV_API OrvResult OrvUpperString(OrvCodePage codePage, wchar_t *destination, uint32_t capacity,
                                 const wchar_t *source, uint32_t *resultLength = nullptr,
                                 uint32_t count = OrvTerminated);

/// The same into a descriptor, whose length is set on success; otherwise the descriptor and its characters
/// are as they were.
ORV_API OrvResult OrvLowerString(OrvCodePage codePage, _ORV_UTF16CHAR_STR &destination, const wchar_t *source,
                                 uint32_t count = OrvTerminated);
ORV_API OrvResult OrvUpperString(OrvCodePage codePage, _ORV_UTF16CHAR_STR &destination, const wchar_t *source,
                                 uint32_t count = OrvTerminated);

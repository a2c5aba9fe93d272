// Bytes as hexadecimal digits, two for each byte, and back: digests, identities, keys. Counts and capacities
// of text are in characters, of data in bytes. Text and data must not overlap.

#pragma once

#include "orv/base.h"
#include "orv/text/heap_buffer.h"
#include "orv/text/interfaces.h"
#include "orv/text/string_ref.h"

/// How the digits above 9 are written. Reading accepts both.
enum OrvHexCase : uint32_t {
    OrvHexLowerCase = 0, ///< a to f
    OrvHexUpperCase = 1, ///< A to F
};

/// Writes the digits of `count` bytes into the descriptor's array, with a terminator, and sets its length.
///
/// Returns 0; ORV_E_INVALID_ARGUMENT when there are bytes but `bytes` is null, and for a case outside its
/// enumeration; ORV_E_BAD_LENGTH for more than 0x7FFFFFFE bytes; ORV_E_BUFFER_TOO_SMALL when the capacity is
/// not more than twice the count, or there is no array: `requiredSize`, which may be null, receives the
/// capacity required. On failure the descriptor and its array are as they were.
ORV_API OrvResult OrvConvertBytes2HexString(_ORV_UTF16CHAR_STR &target, const void *bytes, uint32_t count,
                                            OrvHexCase letters = OrvHexLowerCase,
                                            uint32_t *requiredSize = nullptr);

/// Replaces the buffer's text by the same digits. ORV_E_OUT_OF_MEMORY: the text is as it was.
ORV_API OrvResult OrvConvertBytes2HexString(OrvUtf16CharHeapBuffer &target, const void *bytes, uint32_t count,
                                            OrvHexCase letters = OrvHexLowerCase);

/// Replaces the text of the reference's owner by the same digits. The owner is resized once; its failure is
/// returned.
ORV_API OrvResult OrvConvertBytes2HexString(const OrvMutableStringRefBase2<wchar_t> &target,
                                            const void *bytes, uint32_t count,
                                            OrvHexCase letters = OrvHexLowerCase);

/// Reads bytes from `count` digits of either case, and nothing else: no prefix, no space. OrvTerminated: the
/// text is terminated. `size`, which may be null, receives the number of bytes.
///
/// Returns 0; ORV_E_INVALID_DATA for an odd number of characters and for a character that is not a digit,
/// however small the target; ORV_E_BUFFER_TOO_SMALL when the capacity is below half the count, or `target` is
/// null: `size` then receives the capacity required. On failure nothing is written to the target.
ORV_API OrvResult OrvConvertHexString2Bytes(void *target, uint32_t capacity, const wchar_t *text,
                                            uint32_t *size = nullptr, uint32_t count = OrvTerminated);

/// Replaces the buffer's bytes by those that the digits give. Returns 0; ORV_E_INVALID_DATA as above; the
/// buffer's failure. On failure the bytes are as they were.
ORV_API OrvResult OrvConvertHexString2Bytes(IOrvBuffer<unsigned char> &target, const wchar_t *text,
                                            uint32_t count = OrvTerminated);

// The implementations that add bytes to a CRC register: table-driven ones in `plain`, and faster ones that
// need a processor feature. For one polynomial all give the same result.

#pragma once

#include <stdint.h>

namespace detail
{

/// Below this many bytes folding does not repay its set-up.
constexpr uint32_t kWideCrcBytes = 64;

namespace plain
{

uint32_t UpdateCrc32(uint32_t crc, const uint8_t *data, uint32_t length);
uint32_t UpdateCrc32C(uint32_t crc, const uint8_t *data, uint32_t length);

} // namespace plain

/// By carry-less multiplication (PCLMULQDQ). `length` must be at least kWideCrcBytes.
uint32_t UpdateCrc32ByFolding(uint32_t crc, const uint8_t *data, uint32_t length);

/// By the CRC instruction (SSE4.2).
uint32_t UpdateCrc32CByInstruction(uint32_t crc, const uint8_t *data, uint32_t length);

} // namespace detail

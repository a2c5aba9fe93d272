// The ways to take bytes into a CRC register. All give the same answer; the wide ones need what their names
// say.

#pragma once

#include <stdint.h>

namespace detail
{

/// Below this many bytes the wide ways are not worth their set-up.
constexpr uint32_t kWideCrcBytes = 64;

namespace plain
{

uint32_t UpdateCrc32(uint32_t crc, const uint8_t *data, uint32_t length);
uint32_t UpdateCrc32C(uint32_t crc, const uint8_t *data, uint32_t length);

} // namespace plain

/// By carry-less multiplication (PCLMULQDQ), for at least kWideCrcBytes.
uint32_t UpdateCrc32ByFolding(uint32_t crc, const uint8_t *data, uint32_t length);

/// By the CRC instruction (SSE4.2).
uint32_t UpdateCrc32CByInstruction(uint32_t crc, const uint8_t *data, uint32_t length);

} // namespace detail

// The compression function of SHA-256: adds blocks to the chaining values. Both versions give the same
// result.

#pragma once

#include <stdint.h>

namespace detail
{

constexpr uint32_t kSha256Block = 64;

namespace plain
{

void CompressSha256(uint32_t (&chain)[8], const uint8_t *blocks, uint32_t count);

} // namespace plain

/// Needs the SHA instructions, SSSE3 and SSE4.1.
void CompressSha256ByInstruction(uint32_t (&chain)[8], const uint8_t *blocks, uint32_t count);

} // namespace detail

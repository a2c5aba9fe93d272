// The ways to take blocks into the chaining values of SHA-256. All give the same answer.

#pragma once

#include <stdint.h>

namespace detail
{

constexpr uint32_t kSha256Block = 64;

namespace plain
{

void CompressSha256(uint32_t (&chain)[8], const uint8_t *blocks, uint32_t count);

} // namespace plain

/// By the SHA instructions, with SSSE3 and SSE4.1.
void CompressSha256ByInstruction(uint32_t (&chain)[8], const uint8_t *blocks, uint32_t count);

} // namespace detail

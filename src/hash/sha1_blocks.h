// The compression function of SHA-1: adds blocks to the chaining values. Both versions give the same result.

#pragma once

#include <stdint.h>

namespace detail
{

constexpr uint32_t kSha1Block = 64;

namespace plain
{

void CompressSha1(uint32_t (&chain)[5], const uint8_t *blocks, uint32_t count);

} // namespace plain

/// Needs the SHA instructions, SSSE3 and SSE4.1.
void CompressSha1ByInstruction(uint32_t (&chain)[5], const uint8_t *blocks, uint32_t count);

} // namespace detail

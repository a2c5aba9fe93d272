// The compression function of SHA-512: adds blocks to the chaining values. Both versions give the same
// result.

#pragma once

#include <stdint.h>

namespace detail
{

constexpr uint32_t kSha512Block = 128;

namespace plain
{

void CompressSha512(uint64_t (&chain)[8], const uint8_t *blocks, uint32_t count);

} // namespace plain

/// Computes with 64-bit words in SSE2 registers; every processor that runs this library has SSE2.
void CompressSha512InVectors(uint64_t (&chain)[8], const uint8_t *blocks, uint32_t count);

} // namespace detail

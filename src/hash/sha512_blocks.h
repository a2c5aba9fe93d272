// The ways to take blocks into the chaining values of SHA-512. All give the same answer.

#pragma once

#include <stdint.h>

namespace detail
{

constexpr uint32_t kSha512Block = 128;

namespace plain
{

void CompressSha512(uint64_t (&chain)[8], const uint8_t *blocks, uint32_t count);

} // namespace plain

/// With 64-bit arithmetic in SSE2 registers, which every processor that runs this library has.
void CompressSha512InVectors(uint64_t (&chain)[8], const uint8_t *blocks, uint32_t count);

} // namespace detail

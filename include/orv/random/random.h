// The process-wide generator of pseudo-random numbers: fast and reproducible, not for secrets.
//
// It is the 48-bit linear congruential generator of the drand48 family, x -> x * 0x5DEECE66D + 0xB mod 2^48,
// and starts at 0x1330E in every process, never seeded again: every process draws the same sequence. All
// threads share it. Each operation takes its steps under one hold of a spin lock, so concurrent callers get
// disjoint parts of the one sequence.

#pragma once

#include "orv/base.h"

/// One step; bits 17-24 of the new state.
ORV_API uint8_t OrvGenerateRandomByte();

/// One step; bits 17-32 of the new state.
ORV_API uint16_t OrvGenerateRandomWord();

/// One step; bits 17-47 of the new state: 31 bits, so the value is always below 2^31.
ORV_API uint32_t OrvGenerateRandomDWord();

/// One step; bit 17 of the new state.
ORV_API bool OrvGenerateRandomBool();

/// Fills `length` bytes, one step for every four of them. Every fourth byte, counted from the end, has seven
/// random bits only and is below 128. When the length is not a multiple of four, the extra bytes come first;
/// they are the last ones of their step. The buffer may be null when the length is 0.
ORV_API void OrvGenerateRandomBuffer(uint8_t *buffer, uint32_t length);

/// Chooses an event by weight: draws a number u from 0 up to, but not including, 0.5 in one step, and returns
/// the first index at which the sum of the weights exceeds u, or `count` when none does. The weights are not
/// checked and not scaled; since u stays below 0.5, an event that follows weights with the sum 0.5 is never
/// chosen.
ORV_API uint32_t OrvChooseRandomEvent(uint32_t count, const double *probabilities);

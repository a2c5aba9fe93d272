// Bytes that differ from process to process and from call to call, for salts and for identifiers that must
// not collide. The library's own generator would be wrong there: it starts with the same state in every
// process.

#pragma once

#include <stdint.h>

namespace detail
{

/// Fills the bytes from the best source that answers. Never fails. The last source can be guessed, so the
/// bytes must not be used as a secret.
void FillWithEntropy(void *bytes, uint32_t count);

// The sources, best first. The first two return whether they filled all bytes. If not, the bytes are of no
// use.

/// The kernel's generator.
bool FillFromKernel(void *bytes, uint32_t count);

/// The processor's generator.
bool FillFromProcessor(void *bytes, uint32_t count);

/// A mix of what differs from time to time and from process to process: clocks, counters, ids and addresses.
/// Two equal answers are unlikely, but an observer of the machine can guess them.
void FillFromCircumstances(void *bytes, uint32_t count);

} // namespace detail

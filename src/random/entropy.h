// Bytes that differ from process to process and from call to call: for identifiers that must not collide and
// for salts, where the library's own generator, which starts alike in every process, would be wrong.

#pragma once

#include <stdint.h>

namespace detail
{

/// Fills the bytes from the best source that answers. Never fails. The last of the sources is not fit for
/// secrets, so nothing that this gives may be relied on to be one.
void FillWithEntropy(void *bytes, uint32_t count);

// The sources, best first. The first two say whether they answered; what they wrote before they failed is of
// no value.

/// The kernel's generator.
bool FillFromKernel(void *bytes, uint32_t count);

/// The processor's generator.
bool FillFromProcessor(void *bytes, uint32_t count);

/// Whatever differs from time to time and from process to process: clocks, counters, ids and addresses. It
/// makes equal answers unlikely, but whoever watches the machine can guess them.
void FillFromCircumstances(void *bytes, uint32_t count);

} // namespace detail

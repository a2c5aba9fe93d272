// The two checksums, CRC-32 and CRC-32C. Each uses the fastest implementation that the processor supports.

#include "orv/hash/crc32.h"

#include "hash/crc32_kernels.h"
#include "runtime/cpu.h"

void OrvMiniHashCrc32::Add(const uint8_t *data, uint32_t length)
{
    const bool wide = length >= detail::kWideCrcBytes && detail::CpuHas(detail::kCpuPclmulqdq);
    register_ = wide ? detail::UpdateCrc32ByFolding(register_, data, length)
                     : detail::plain::UpdateCrc32(register_, data, length);
}

void OrvMiniHashCrc32C::Add(const uint8_t *data, uint32_t length)
{
    register_ = detail::CpuHas(detail::kCpuSse42) ? detail::UpdateCrc32CByInstruction(register_, data, length)
                                                  : detail::plain::UpdateCrc32C(register_, data, length);
}

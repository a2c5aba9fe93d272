// What the processor can do beyond SSE2, which the library is compiled for. Code with a path for newer
// instructions asks here on each call: after the first call the answer is one load.

#pragma once

#include <stdint.h>

namespace detail
{

enum CpuFeature : uint32_t {
    kCpuSsse3 = 1 << 0,
    kCpuSse41 = 1 << 1,
    kCpuSse42 = 1 << 2,
    kCpuPclmulqdq = 1 << 3,
    kCpuSha = 1 << 4,
    kCpuRdrand = 1 << 5,
    kCpuAvx = 1 << 6,  ///< the system saves the wide registers too
    kCpuAvx2 = 1 << 7, ///< likewise
    kCpuKnown = 1u << 31,
};

/// 0 until the first call. Threads that call at the same time all find, and store, the same value.
extern volatile uint32_t cpuFeatures;

/// Asks the processor and stores the answer in cpuFeatures. Every answer contains kCpuKnown.
uint32_t DetectCpuFeatures();

/// Whether the processor has all of these features.
inline bool CpuHas(uint32_t features)
{
    uint32_t known = cpuFeatures;
    if (known == 0)
        known = DetectCpuFeatures();
    return (known & features) == features;
}

} // namespace detail

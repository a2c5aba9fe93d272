// What the processor can do beyond SSE2, which the library is compiled for. Whoever has a wide path asks
// here, each time: after the first time the answer is one load.

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

/// 0 until somebody has asked. Threads that ask at once all find, and store, the same value.
extern volatile uint32_t cpuFeatures;

/// Asks the processor, and remembers. Every answer has kCpuKnown.
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

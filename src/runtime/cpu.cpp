// Finds out what the processor can do: CPUID, read once.

#include "runtime/cpu.h"

#include <cpuid.h>

namespace detail
{

volatile uint32_t cpuFeatures;

namespace
{

struct Leaf {
    uint32_t eax = 0;
    uint32_t ebx = 0;
    uint32_t ecx = 0;
    uint32_t edx = 0;

    explicit Leaf(uint32_t number) { __cpuid_count(number, 0, eax, ebx, ecx, edx); }
};

/// Whether the system saves the 256-bit registers when it switches threads. May only be called if the
/// processor reports OSXSAVE: the instruction faults otherwise.
bool SavesWideRegisters()
{
    constexpr uint32_t kSseAndAvxState = 0x6;
    uint32_t low = 0;
    uint32_t high = 0;
    __asm__("xgetbv" : "=a"(low), "=d"(high) : "c"(0));
    return (low & kSseAndAvxState) == kSseAndAvxState;
}

} // namespace

uint32_t DetectCpuFeatures()
{
    const uint32_t mostLeaves = Leaf(0).eax;
    const Leaf basic(1);
    uint32_t features = kCpuKnown;
    const auto add = [&features](uint32_t word, uint32_t bit, uint32_t feature) {
        if (word & bit)
            features |= feature;
    };
    add(basic.ecx, bit_SSSE3, kCpuSsse3);
    add(basic.ecx, bit_SSE4_1, kCpuSse41);
    add(basic.ecx, bit_SSE4_2, kCpuSse42);
    add(basic.ecx, bit_PCLMULQDQ, kCpuPclmulqdq);
    add(basic.ecx, bit_RDRND, kCpuRdrand);
    const bool wide = (basic.ecx & bit_OSXSAVE) && SavesWideRegisters();
    if (wide)
        add(basic.ecx, bit_AVX, kCpuAvx);
    if (mostLeaves >= 7) {
        const Leaf extended(7);
        add(extended.ebx, bit_SHA, kCpuSha);
        if (features & kCpuAvx)
            add(extended.ebx, bit_AVX2, kCpuAvx2);
    }
    cpuFeatures = features;
    return features;
}

} // namespace detail

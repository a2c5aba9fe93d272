// The features of the processor, as the library and the platform see them.

#include "runtime/cpu.h"

#include "harness/test.h"
#include "nt/teb.h"

TEST_CASE(CpuFeaturesAreThoseThatThePlatformSees)
{
    // Positions in the shared page's table of features.
    struct {
        detail::CpuFeature feature;
        uint32_t position;
    } const cases[] = {
        {detail::kCpuSsse3, 36}, {detail::kCpuSse41, 37}, {detail::kCpuSse42, 38},
        {detail::kCpuAvx, 39},   {detail::kCpuAvx2, 40},
    };
    for (const auto &c : test::Rows(cases)) {
        CHECK_EQUAL(detail::CpuHas(c.feature), SharedUserData().ProcessorFeatures[c.position] != 0);
    }
    CHECK(detail::CpuHas(detail::kCpuKnown));
    CHECK_EQUAL(detail::cpuFeatures, detail::DetectCpuFeatures());
    CHECK(!detail::CpuHas(1u << 30)); // of several, all are wanted
    CHECK(!detail::CpuHas(detail::kCpuKnown | 1u << 30));
}

// Each source of entropy on its own. Which of them this machine has is shown by the one that is skipped.

#include "runtime/entropy.h"

#include "harness/memory.h"
#include "harness/program.h"
#include "harness/test.h"

namespace
{

/// Two fills differ, each changes every byte sooner or later, and nothing is written behind the end.
template <typename Fill>
void CheckSource(Fill fill)
{
    constexpr uint32_t kMost = 40;
    uint8_t changed[kMost] = {};
    for (uint32_t round = 0; round < 8; round++) {
        auto *const bytes = test::GuardedArray<uint8_t>(kMost);
        fill(bytes, kMost);
        for (uint32_t i = 0; i < kMost; i++)
            changed[i] |= bytes[i];
    }
    for (const uint8_t byte : changed)
        CHECK(byte != 0);
    for (uint32_t length = 1; length < 10; length++)
        fill(test::GuardedArray<uint8_t>(length), length);
    uint64_t drawn[2] = {};
    fill(&drawn[0], sizeof *drawn);
    fill(&drawn[1], sizeof *drawn);
    CHECK(drawn[0] != drawn[1]);
}

} // namespace

TEST_CASE(EverySourceGivesOtherBytesEachTime)
{
    uint8_t byte = 0;
    const bool hasKernel = detail::FillFromKernel(&byte, 1);
    const bool hasProcessor = detail::FillFromProcessor(&byte, 1);
    program::Print(hasKernel ? "the kernel's generator answers\n" : "no generator of the kernel\n");
    program::Print(hasProcessor ? "the processor's generator answers\n" : "no generator of the processor\n");
    if (hasKernel)
        CheckSource([](void *bytes, uint32_t count) { CHECK(detail::FillFromKernel(bytes, count)); });
    if (hasProcessor)
        CheckSource([](void *bytes, uint32_t count) { CHECK(detail::FillFromProcessor(bytes, count)); });
    CheckSource(detail::FillFromCircumstances);
    CheckSource(detail::FillWithEntropy);
}

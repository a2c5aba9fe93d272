// The generator held against its formula. The model starts where every process does, and all cases draw from
// it as from the generator, so that they may run in any selection.

#include "orv/random/random.h"

#include "harness/memory.h"
#include "harness/test.h"
#include "harness/thread.h"
#include "orv/random/create_guid.h"

namespace
{

uint64_t model = 0x1330E;

uint64_t Step()
{
    model = (model * 0x5DEECE66D + 0xB) & 0xFFFFFFFFFFFF;
    return model;
}

uint8_t ByteAt(uint64_t state, uint32_t shift)
{
    return static_cast<uint8_t>(state >> shift);
}

} // namespace

TEST_CASE(RandomNumbersFollowTheFormula)
{
    for (uint32_t round = 0; round < 20; round++) {
        CHECK_EQUAL(OrvGenerateRandomByte(), ByteAt(Step(), 17));
        CHECK_EQUAL(OrvGenerateRandomWord(), static_cast<uint16_t>(Step() >> 17));
        CHECK_EQUAL(OrvGenerateRandomBool(), (Step() >> 17 & 1) != 0);
        CHECK_EQUAL(OrvGenerateRandomDWord(), static_cast<uint32_t>(Step() >> 17));
    }
}

TEST_CASE(RandomBuffersAreFilledInTheirOrder)
{
    constexpr uint32_t kShifts[] = {17, 25, 33, 41};
    OrvGenerateRandomBuffer(nullptr, 0); // takes no step
    for (uint32_t length = 1; length <= 21; length++) {
        test::Note("length", length);
        auto *const bytes = test::GuardedArray<uint8_t>(length);
        OrvGenerateRandomBuffer(bytes, length);
        uint64_t state = 0;
        for (uint32_t i = 0; i < length; i++) {
            const uint32_t lane = (i + 4 - length % 4) % 4;
            if (i == 0 || lane == 0)
                state = Step();
            CHECK_EQUAL(bytes[i], ByteAt(state, kShifts[lane]));
        }
    }
    _OrvGuid luid;
    CHECK_EQUAL(OrvGuidUtils::CreateLuid(luid), 0);
    for (uint32_t i = 0; i < 16; i++) {
        const uint8_t byte = ByteAt(i % 4 == 0 ? Step() : model, kShifts[i % 4]);
        CHECK_EQUAL(luid.bytes[i], i == 6 ? (byte & 0x0F) | 0x40 : i == 8 ? (byte & 0x3F) | 0x80 : byte);
    }
}

TEST_CASE(RandomEventsFollowTheirWeights)
{
    const double none[] = {0, 0, 0};
    const double mixed[] = {0.125, 0.0625, -0.5, 0.25, 0.5};
    const double *const guarded = test::GuardedCopy(mixed, 5);
    CHECK_EQUAL(OrvChooseRandomEvent(0, nullptr), 0u);
    Step();
    for (uint32_t round = 0; round < 300; round++) {
        CHECK_EQUAL(OrvChooseRandomEvent(3, none), 3u);
        Step();
        const uint32_t chosen = OrvChooseRandomEvent(5, guarded);
        const auto u = static_cast<uint32_t>(Step() >> 17); // in units of 2^-32
        CHECK_EQUAL(chosen, u < 0x20000000 ? 0u : u < 0x30000000 ? 1u : u < 0x70000000 ? 4u : 5u);
    }
}

TEST_CASE(ThreadsShareOneSequence)
{
    constexpr uint32_t kThreads = 3;
    constexpr uint32_t kDraws = 2000;
    static uint32_t drawn[kThreads][kDraws];
    auto work = [](uint32_t thread) {
        for (uint32_t &value : drawn[thread])
            value = OrvGenerateRandomDWord();
    };
    test::RunOnThreads(kThreads, work);
    // Each thread's numbers stand in the sequence in the order in which it drew them, and none is missing.
    uint32_t at[kThreads] = {};
    for (uint32_t i = 0; i < kThreads * kDraws; i++) {
        const auto value = static_cast<uint32_t>(Step() >> 17);
        uint32_t thread = 0;
        while (thread < kThreads && (at[thread] == kDraws || drawn[thread][at[thread]] != value))
            thread++;
        if (!CHECK(thread < kThreads))
            break;
        at[thread]++;
    }
    CHECK_EQUAL(OrvGenerateRandomWord(), static_cast<uint16_t>(Step() >> 17));
}

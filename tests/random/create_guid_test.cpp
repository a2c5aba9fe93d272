// No two GUIDs are equal, however fast and by however many threads they are made.

#include "harness/memory.h"
#include "harness/test.h"
#include "harness/thread.h"
#include "orv/random/create_guid.h"

TEST_CASE(GuidsOfAllThreadsDiffer)
{
    constexpr uint32_t kThreads = 3;
    constexpr uint32_t kEach = 1000;
    constexpr uint32_t kSlots = 8192; // more than twice as many
    static _OrvGuid made[kThreads][kEach];
    static const _OrvGuid *slots[kSlots];
    uint32_t failed = 0;
    auto work = [&failed](uint32_t thread) {
        for (_OrvGuid &guid : made[thread]) {
            if (OrvGuidUtils::CreateGuid(guid) != 0)
                __atomic_fetch_add(&failed, 1, __ATOMIC_RELAXED);
        }
    };
    test::RunOnThreads(kThreads, work);
    CHECK_EQUAL(failed, 0u);
    uint32_t equal = 0;
    for (const auto &guids : made) {
        for (const _OrvGuid &guid : guids) {
            uint32_t slot = 0;
            for (const uint8_t byte : guid.bytes)
                slot = slot * 31 + byte;
            slot %= kSlots;
            for (; slots[slot]; slot = (slot + 1) % kSlots)
                equal += __builtin_memcmp(slots[slot]->bytes, guid.bytes, sizeof guid.bytes) == 0;
            slots[slot] = &guid;
        }
    }
    CHECK_EQUAL(equal, 0u);
}

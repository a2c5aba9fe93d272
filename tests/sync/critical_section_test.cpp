// Critical sections: how often they can be created and destroyed, and who is inside.

#include "orv/sync/critical_section.h"

#include "harness/test.h"
#include "harness/thread.h"
#include "harness/usage.h"
#include "orv/runtime/result.h"

TEST_CASE(CriticalSectionsLiveBetweenCreateAndDestroy)
{
    const test::Usage before = test::CountUsage();
    {
        OrvBasCriticalSection section;
        for (int round = 0; round < 3; round++) {
            CHECK(!section.IsInitialized());
            CHECK_EQUAL(section.Acquire(), ORV_E_INVALID_STATE);
            CHECK_EQUAL(section.Release(), ORV_E_INVALID_STATE);
            CHECK_EQUAL(section.Destroy(), ORV_S_OK);
            CHECK_EQUAL(section.Create(), ORV_S_OK);
            CHECK_EQUAL(section.Acquire(), ORV_S_OK);
            CHECK_EQUAL(section.Create(), ORV_S_OK); // anew, and nobody is inside
            CHECK(section.IsInitialized());
            CHECK_EQUAL(section.Destroy(), ORV_S_OK);
        }
        CHECK_EQUAL(section.Create(), ORV_S_OK);
    }
    CHECK_USAGE(before);
}

TEST_CASE(CriticalSectionsLetOneThreadInAtATime)
{
    constexpr uint32_t kThreads = 8;
    constexpr uint32_t kRounds = 10000;
    OrvBasCriticalSection section;
    CHECK_EQUAL(section.Create(), ORV_S_OK);
    volatile uint32_t count = 0;
    auto work = [&](uint32_t) {
        for (uint32_t i = 0; i < kRounds; i++) {
            section.Acquire();
            const uint32_t seen = count;
            section.Acquire();
            if (i % 64 == 0)
                test::Sleep(0); // lets the others come and wait
            section.Release();
            count = seen + 1;
            section.Release();
        }
    };
    test::RunOnThreads(kThreads, work);
    CHECK_EQUAL(count, kThreads * kRounds);
}

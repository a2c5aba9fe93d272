// Critical sections: how often they can be created and destroyed. Who is inside is up to the platform.

#include "orv/sync/critical_section.h"

#include "harness/test.h"
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
            CHECK(section.IsInitialized());
            CHECK_EQUAL(section.Destroy(), ORV_S_OK);
        }
        CHECK_EQUAL(section.Create(), ORV_S_OK);
    }
    CHECK_USAGE(before);
}

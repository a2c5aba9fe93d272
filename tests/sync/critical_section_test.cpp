// Critical sections: how often they can be created and destroyed. Who is inside is up to the platform;
// when a holder is, is told here.

#include "orv/sync/critical_section_holder.h"

#include "harness/test.h"
#include "harness/thread.h"
#include "harness/usage.h"
#include "orv/runtime/result.h"

TEST_CASE(CriticalSectionsLiveBetweenCreateAndDestroy)
{
    const test::Usage before = test::CountUsage();
    {
        OrvBasCriticalSection section;
        for (int round = 0; round < 2; round++) {
            CHECK(!section.IsInitialized());
            CHECK_EQUAL(section.Acquire(), ORV_E_INVALID_STATE);
            CHECK_EQUAL(section.Release(), ORV_E_INVALID_STATE);
            CHECK_EQUAL(section.Create(), ORV_S_OK);
            CHECK_EQUAL(section.Acquire(), ORV_S_OK);
            CHECK(section.IsInitialized());
            CHECK_EQUAL(section.Destroy(), ORV_S_OK);
        }
        CHECK_EQUAL(section.Create(), ORV_S_OK);
    }
    CHECK_USAGE(before);
}

TEST_CASE(CriticalSectionHolderIsInsideUntilItsScopeEnds)
{
    OrvBasCriticalSection first, second, uncreated;
    CHECK_EQUAL(first.Create(), ORV_S_OK);
    CHECK_EQUAL(second.Create(), ORV_S_OK);
    volatile uint32_t entered = 0;
    auto enter = [&] {
        const OrvBasCriticalSectionHolder inFirst(&first);
        const OrvBasCriticalSectionHolder inSecond(&second);
        entered = inFirst.IsHeld() + inSecond.IsHeld();
    };
    {
        OrvBasCriticalSectionHolder holder(&first);
        CHECK_EQUAL(holder.Lock(&first), ORV_S_OK); // recursive: the second entry is kept, the first left
        CHECK_EQUAL(holder.Lock(&second), ORV_S_OK);
        test::Thread thread(enter);
        test::Sleep(30);
        CHECK_EQUAL(entered, 0u); // it waits for the second
        CHECK_EQUAL(holder.Lock(&uncreated), ORV_E_INVALID_STATE);
        CHECK(!holder.IsHeld());
        thread.Join(); // it was let in
        CHECK_EQUAL(entered, 2u);
        CHECK_EQUAL(holder.Lock(nullptr), ORV_E_INVALID_ARGUMENT);
        CHECK_EQUAL(holder.Lock(&first), ORV_S_OK);
        holder.DetachWithoutReleasing();
        CHECK_EQUAL(first.Release(), ORV_S_OK);
        CHECK_EQUAL(holder.Lock(&second), ORV_S_OK); // left by the destructor
    }
    test::Thread(enter).Join();
}

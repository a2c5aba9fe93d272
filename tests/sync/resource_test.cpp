// The reader/writer resource: who gets it when, step by step, and what holds under load.

#include "orv/sync/resource.h"

#include "harness/memory.h"
#include "harness/usage.h"
#include "sync/actors.h"

TEST_CASE(ResourceIsGivenByItsRules)
{
    static const char *const kScripts[] = {
        // Exclusive holds nest, shared ones within them; so do shared ones; neither becomes the other.
        "aX aw aX aS a3 #1 bN bV b0 br bT bR a- a- a1 a- aN aV ar",
        "aS aS a2 #1 ar aU aV bS b1 #2 a- b- bN a1 a- aN",
        // A new reader queues behind a writer, a present one does not.
        "aS bS cx ds eR eT aS a2 a- #2 a- b- =c #1 cw c- =d #1 d-",
        // A writer prefers the readers, all of them; then they and writers take turns.
        "aX bx cs ds es a- =cde #3 fR c- d- e- =b #1 b-",
        "aX bx a- =b bw b1 #1 b- aX a-",
        "aS bx cs a- =b dx es b- =ce eS c- e- e- =d d-",
        // A writer that becomes a reader lets readers in, but not past a writer.
        "aX aX bs cs dx av =bc #3 a2 ar aU eR a- a- b- c- =d d-",
        "aX av #1 bS #2 aS a2 a- aS a- a- b-",
        "aX dx av bR a- =d dw d-",
        // Records are reused, and their table grows by rule.
        "aS $0 bS $3 cS dS $3 eS $7 fS gS hS $7 iS $11 #9 jT b- bS e- jS jU $11 a- b- c- d- f- g- h- i- j-",
        "aX bs cs ds $3 es $3 fs $7 a- =bcdef #5 b- c- d- e- f-",
    };
    const test::Usage before = test::CountUsage();
    {
        Stage stage;
        stage.PlayEach(kScripts);
        // Only the first reader needs no memory for its record; the others are refused, and nothing changes.
        OrvBasResource resource;
        CHECK_EQUAL(resource.Create(), ORV_S_OK);
        const test::RefusingHeap refusing;
        stage.Play(resource, "aS bO bN #1 a- aX bs cO a- =b #1 b- cS c-");
    }
    CHECK_USAGE(before);
}

TEST_CASE(ResourceIsUsedBetweenCreateAndDestroy)
{
    const test::Usage before = test::CountUsage();
    {
        OrvBasResource resource;
        for (int round = 0; round < 3; round++) {
            // Never created, destroyed, or created twice.
            CHECK(!resource.IsInitialized());
            CHECK_EQUAL(resource.AcquireExclusive(-1), ORV_E_INVALID_STATE);
            CHECK_EQUAL(resource.AcquireShared(-1), ORV_E_INVALID_STATE);
            CHECK_EQUAL(resource.Release(), ORV_E_INVALID_STATE);
            CHECK_EQUAL(resource.ConvertExclusiveToShared(), ORV_E_INVALID_STATE);
            CHECK_EQUAL(resource.AcquireSharedStarveExclusive(-1), ORV_E_NOT_PROVIDED);
            CHECK_EQUAL(resource.AcquireSharedWaitForExclusive(-1), ORV_E_NOT_PROVIDED);
            resource.Destroy();
            CHECK_EQUAL(resource.Create(), ORV_S_OK);
            CHECK(resource.IsInitialized() && IsAtRest(resource));
            if (round == 0)
                resource.Destroy();
            else
                CHECK_EQUAL(resource.Create(), ORV_E_ALREADY_EXISTS);
        }
    }
    CHECK_USAGE(before);
}

TEST_CASE(ResourceHoldsUnderLoad)
{
    // Writers keep the two equal, readers see them so, and nobody's change is lost.
    volatile long left = 0, right = 0, written = 0, faults = 0;
    const test::Usage before = test::CountUsage();
    {
        OrvBasResource resource;
        CHECK_EQUAL(resource.Create(), ORV_S_OK);
        const auto expect = [&](bool holds) {
            if (!holds)
                __atomic_fetch_add(&faults, 1, __ATOMIC_RELAXED);
        };
        auto work = [&](uint32_t random) {
            for (uint32_t i = 0; i < 5000; i++) {
                random = random * 1664525 + 1013904223;
                const uint32_t draw = random / 65536;
                const int timeoutMs = static_cast<int>(draw % 3) - 1;
                const bool isWriter = draw / 3 % 3 == 0;
                const OrvResult result =
                    isWriter ? resource.AcquireExclusive(timeoutMs) : resource.AcquireShared(timeoutMs);
                if (result == ORV_W_TIMEOUT && timeoutMs >= 0)
                    continue;
                expect(result == ORV_S_OK);
                if (isWriter) {
                    left = left + 1;
                    if (draw / 9 % 16 == 0)
                        test::Sleep(0); // lets the others come and wait
                    expect(right + 1 == left);
                    right = right + 1;
                    __atomic_fetch_add(&written, 1, __ATOMIC_RELAXED);
                    expect(draw / 144 % 4 != 0 || resource.ConvertExclusiveToShared() == ORV_S_OK);
                }
                expect(left == right && resource.IsAcquiredShared() == 1 && resource.Release() == ORV_S_OK);
            }
        };
        test::RunOnThreads(8, work);
        CHECK(IsAtRest(resource));
    }
    CHECK_EQUAL(faults, 0);
    CHECK_EQUAL(left, written);
    CHECK_EQUAL(right, written);
    CHECK_USAGE(before);
}

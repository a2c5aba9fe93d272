// Semaphores and their counts.

#include "orv/sync/semaphore.h"

#include "orv/runtime/result.h"
#include "sync/objects.h"

TEST_CASE(SemaphoreCounts)
{
    OrvBasSemaphore semaphore;
    const int refused[][2] = {{2, 1}, {0, 0}, {-1, 1}};
    for (const auto &counts : refused)
        CHECK_EQUAL(semaphore.Create(counts[0], counts[1]), ORV_E_INVALID_ARGUMENT);
    CHECK_EQUAL(semaphore.Release(1), ORV_E_INVALID_HANDLE);
    CHECK_EQUAL(semaphore.Create(1, 3), ORV_S_OK);
    CHECK_EQUAL(semaphore.Release(3),
                static_cast<OrvResult>(0xC007012A)); // above the maximum: nothing is added
    CHECK_EQUAL(semaphore.Release(2), ORV_S_OK);
    for (int i = 0; i < 3; i++)
        CHECK_EQUAL(semaphore.Wait(0), ORV_S_OK);
    CHECK_EQUAL(semaphore.Wait(10), ORV_W_TIMEOUT);
}

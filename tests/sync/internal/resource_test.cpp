// What happens to a resource when the platform refuses, and when a release comes between the end of a wait's
// time and the waiter's return.

#include "orv/sync/resource.h"

#include "harness/usage.h"
#include "sync/actors.h"
#include "sync/internal/redirected.h"

IMPORT_SLOT(RtlInitializeCriticalSection, 4);
IMPORT_SLOT(RtlEnterCriticalSection, 4);
IMPORT_SLOT(ZwCreateEvent, 20);
IMPORT_SLOT(ZwCreateSemaphore, 20);
IMPORT_SLOT(ZwSetEvent, 8);
IMPORT_SLOT(ZwWaitForSingleObject, 12);
IMPORT_SLOT(RtlReAllocateHeap, 16);

namespace
{

HANDLE timeIsUp;

NTSTATUS NTAPI WaitUntilTold(HANDLE handle, BOOLEAN alertable, const LONGLONG *timeout)
{
    const auto wait = Redirected<decltype(ZwWaitForSingleObject)>::original;
    if (!timeout || *timeout != kUntilTold * -10000LL)
        return wait(handle, alertable, timeout);
    wait(timeIsUp, false, nullptr);
    return STATUS_TIMEOUT;
}

PVOID NTAPI MoveWhatGrows(HANDLE heap, ULONG flags, PVOID block, size_t size)
{
    PVOID const moved = RtlAllocateHeap(heap, flags, size);
    memmove(moved, block, RtlSizeHeap(heap, 0, block));
    RtlFreeHeap(heap, 0, block);
    return moved;
}

} // namespace

TEST_CASE(ResourceCreationLeavesNothingBehindWhenItFails)
{
    const test::Usage before = test::CountUsage();
    {
        OrvBasResource resource;
        const auto checkRefused = [&](const auto &, OrvResult result) {
            CHECK_EQUAL(resource.Create(), result);
            CHECK(!resource.IsInitialized());
            CHECK_EQUAL(resource.AcquireShared(-1), ORV_E_INVALID_STATE);
            CHECK_USAGE(before);
        };
        checkRefused(Refuse<STATUS_BUFFER_OVERFLOW>(RtlInitializeCriticalSectionSlot),
                     ORV_E_BUFFER_TOO_SMALL);
        checkRefused(Refuse<kQuota>(ZwCreateEventSlot), kQuotaResult);
        checkRefused(Refuse<kQuota>(ZwCreateSemaphoreSlot), kQuotaResult);
        CHECK_EQUAL(resource.Create(), ORV_S_OK);
        const auto refused = Refuse<kQuota>(RtlEnterCriticalSectionSlot);
        CHECK_EQUAL(resource.GetSharedWaiterCount(), 0u); // goes on
    }
    CHECK_USAGE(before);
}

TEST_CASE(ResourceWaiterThatIsChosenTooLateIsChosenStill)
{
    static const char *const kScripts[] = {
        // The time is up, then the waiter is chosen, then it comes back.
        "aX by a- #1 ! =b bw b-",
        "aX bz cs a- #2 ! =bc b- c-",
        "aX bz av #2 ! =b a- b-",
        // The same, but another thread was quicker to take what the release gave.
        "aX by a- cX ! ~b cw b0 c-",
        "aX bz a- #1 dx cS ! ~b b0 #1 c- =d d-",
        // Nobody chose it: nothing is left of it. A reader behind it goes on waiting, a later one gets in.
        "aX by ! ~b b0 bN #1 a-",
        "aX bz ! ~b b0 bN #1 a- bS b-",
        "aS by cs ! ~b dS #2 a- d- =c #1 c-",
        // Its record is in a table that moved while it waited.
        "aX cs bz $3 ds es fs $7 ! ~b b0 a- =cdef #4 c- d- e- f-",
    };
    const test::Usage before = test::CountUsage();
    {
        Stage stage;
        timeIsUp = stage.event.GetHandle();
        const Redirected redirected(ZwWaitForSingleObjectSlot, WaitUntilTold);
        const Redirected<decltype(RtlReAllocateHeap)> moving(RtlReAllocateHeapSlot, MoveWhatGrows);
        stage.PlayEach(kScripts);
        // A writer that cannot be woken is reported.
        OrvBasResource resource;
        CHECK_EQUAL(resource.Create(), ORV_S_OK);
        CHECK_EQUAL(resource.AcquireExclusive(-1), ORV_S_OK);
        stage.actors[0].Start(resource, StepOf('x'));
        CHECK(test::Eventually([&] { return resource.GetExclusiveWaiterCount() == 1; }));
        {
            const auto refused = Refuse<kQuota>(ZwSetEventSlot);
            CHECK_EQUAL(resource.Release(), kQuotaResult);
        }
        ZwSetEvent(reinterpret_cast<HANDLE>(FieldOf(resource, 40)), nullptr);
        stage.Play(resource, "=a a-");
    }
    CHECK_USAGE(before);
}

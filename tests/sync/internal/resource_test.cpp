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

namespace
{

constexpr NTSTATUS kQuota = static_cast<NTSTATUS>(0xC0000044); // ERROR_NOT_ENOUGH_QUOTA
constexpr auto kQuotaResult = static_cast<OrvResult>(0xC0070718);

/// The patience of a thread whose time is up as soon as, and not before, the test says so.
constexpr int kUntilTold = 7654321;
HANDLE timeIsUp;
decltype(&ZwWaitForSingleObject) wait;

NTSTATUS NTAPI WaitUntilTold(HANDLE handle, BOOLEAN alertable, const LONGLONG *timeout)
{
    if (!timeout || *timeout != kUntilTold * -10000LL)
        return wait(handle, alertable, timeout);
    wait(timeIsUp, false, nullptr);
    return STATUS_TIMEOUT;
}

} // namespace

TEST_CASE(ResourceCreationLeavesNothingBehindWhenItFails)
{
    const test::Usage before = test::CountUsage();
    {
        OrvBasResource resource;
        const auto check = [&](OrvResult result) {
            CHECK_EQUAL(resource.Create(), result);
            CHECK(!resource.IsInitialized());
            CHECK_EQUAL(resource.AcquireShared(-1), ORV_E_INVALID_STATE);
            CHECK_USAGE(before);
        };
        {
            const auto refused = Refuse<STATUS_BUFFER_OVERFLOW>(RtlInitializeCriticalSectionSlot);
            check(ORV_E_BUFFER_TOO_SMALL);
        }
        {
            const auto refused = Refuse<kQuota>(ZwCreateEventSlot);
            check(kQuotaResult);
        }
        {
            const auto refused = Refuse<kQuota>(ZwCreateSemaphoreSlot);
            check(kQuotaResult);
        }
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
        "aX bx a- #1 ! =b bw b-",
        "aX bs cs a- #2 ! =bc b- c-",
        "aX bs av #2 ! =b a- b-",
        // The same, but another thread was quicker to take what the release gave.
        "aX bx a- cX ! b~ cw b0 c-",
        "aX bs a- #1 dx cS ! b~ b0 #1 c- =d d-",
        // Nobody chose it: nothing is left of it. A reader behind it goes on waiting, a later one gets in.
        "aX bx ! b~ b0 bN #1 a-",
        "aX bs ! b~ b0 bN #1 a- bS b-",
        "aS bx cs ! b~ dS #2 a- d- =c #1 c-",
    };
    const test::Usage before = test::CountUsage();
    {
        Stage stage;
        CHECK_EQUAL(stage.event.Create(OrvBasEvent::AutoReset, false), ORV_S_OK);
        timeIsUp = stage.event.GetHandle();
        const Redirected redirected(ZwWaitForSingleObjectSlot, WaitUntilTold);
        wait = redirected.original;
        stage.actors[1].patience = kUntilTold;
        for (const char *const script : kScripts) {
            OrvBasResource resource;
            CHECK_EQUAL(resource.Create(), ORV_S_OK);
            stage.Play(resource, script);
        }
    }
    CHECK_USAGE(before);
}

TEST_CASE(ResourceReleaseReportsAWriterThatCannotBeWoken)
{
    OrvBasResource resource;
    CHECK_EQUAL(resource.Create(), ORV_S_OK);
    Stage stage;
    CHECK_EQUAL(resource.AcquireExclusive(-1), ORV_S_OK);
    stage.actors[0].Start(&resource, 'x');
    CHECK(test::Eventually([&] { return resource.GetExclusiveWaiterCount() == 1; }));
    {
        const auto refused = Refuse<kQuota>(ZwSetEventSlot);
        CHECK_EQUAL(resource.Release(), kQuotaResult);
    }
    ZwSetEvent(reinterpret_cast<HANDLE>(FieldOf(resource, 40)), nullptr);
    CHECK_EQUAL(stage.actors[0].Await(), ORV_S_OK);
    stage.Play(resource, "a-");
}

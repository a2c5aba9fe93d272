// The base of all waitables: what it holds, when it lets go, and how long it waits.

#include "orv/sync/waitable.h"

#include "harness/thread.h"
#include "orv/runtime/ntdll_entry_points.h"
#include "orv/runtime/result.h"
#include "orv/sync/event.h"
#include "sync/objects.h"

TEST_CASE(WaitsLastTheirTime)
{
    OrvBasEvent event;
    CHECK_EQUAL(event.Create(OrvBasEvent::AutoReset, false), ORV_S_OK);
    const unsigned long start = OrvGetTimestamp();
    CHECK_EQUAL(event.Wait(0), ORV_W_TIMEOUT);
    CHECK_EQUAL(event.Wait(60), ORV_W_TIMEOUT);
    const unsigned long elapsed = OrvGetTimestamp() - start;
    CHECK(elapsed >= 40 && elapsed < 5000);

    // Of the first three, the low half of the product is under a millisecond; the next two, read as signed,
    // are not from now on but long past.
    const int timeouts[] = {429497, 4294968, 42949673, INT32_MIN, -2, INT32_MAX, -1};
    for (const int timeout : timeouts) {
        test::Note("time-out", static_cast<uint32_t>(timeout));
        auto signal = [&] {
            test::Sleep(60);
            event.Set();
        };
        const test::Thread thread(signal);
        CHECK_EQUAL(event.Wait(timeout), ORV_S_OK);
        CHECK_EQUAL(event.Wait(0), ORV_W_TIMEOUT); // the wait took the signal
    }
}

TEST_CASE(ForwardsLeadToTheirEnd)
{
    constexpr uint32_t kLength = 1000;
    OrvBasEvent event;
    CHECK_EQUAL(event.Create(OrvBasEvent::ManualReset, false), ORV_S_OK);
    OrvBasWaitable chain[kLength];
    for (uint32_t i = 0; i + 1 < kLength; i++)
        chain[i].AttachForward(&chain[i + 1]);
    OrvBasWaitable &end = chain[kLength - 1];
    CHECK_EQUAL(chain[0].InternalWait(-1), ORV_S_OK); // the end is empty
    end.AttachForward(&event);
    CHECK_EQUAL(chain[0].InternalWait(10), ORV_W_TIMEOUT);
    CHECK_EQUAL(event.Set(), ORV_S_OK);
    CHECK_EQUAL(chain[0].InternalWait(-1), ORV_S_OK);
    CHECK_EQUAL(end.GetForward(), &event);
    CHECK_EQUAL(end.Destroy(), ORV_S_OK);
    CHECK_EQUAL(event.Wait(0), ORV_S_OK); // left alone
}

TEST_CASE(OtherResourcesAnswerOrAreRefused)
{
    struct : OrvBasSelfWaiting {
        OrvResult Wait(int timeoutMs) override { return timeoutMs; }
    } object;
    struct : OrvBasWaitable {
        using OrvBasWaitable::AttachSelfWaiting;
    } waitable;
    OrvBasWaitable forward;
    forward.AttachForward(&waitable);
    CHECK_EQUAL(forward.InternalWait(-1), ORV_S_OK); // nothing yet
    waitable.AttachSelfWaiting(&object);
    CHECK_EQUAL(forward.InternalWait(77), 77);
    CHECK_EQUAL(waitable.FreeResource(), ORV_S_OK);
    CHECK(!waitable.IsInitialized());
    waitable.AttachSelfWaiting(nullptr);
    CHECK_EQUAL(forward.InternalWait(0), ORV_E_INVALID_ARGUMENT);

    Field(waitable, 3) = 4;
    CHECK_EQUAL(waitable.Destroy(), ORV_E_NOT_PROVIDED);
    CHECK_EQUAL(forward.InternalWait(0), ORV_E_NOT_PROVIDED);
    CHECK_EQUAL(Field(waitable, 3), 4u);
}

TEST_CASE(InstallingLetsGoOfTheOld)
{
    HANDLE handles[2] = {};
    for (HANDLE &handle : handles)
        ZwCreateEvent(&handle, EVENT_ALL_ACCESS, nullptr, NotificationEvent, true);
    Watched<OrvBasWaitable> waitable;
    waitable.AttachHandle(handles[0]);
    CHECK_EQUAL(waitable.InternalWait(0), ORV_S_OK);
    waitable.AttachHandle(handles[1]);
    CHECK_EQUAL(waitable.held, handles[0]);
    CHECK(!IsOpen(handles[0]) && IsOpen(handles[1]));
    waitable.AttachForward(&waitable);
    CHECK_EQUAL(waitable.held, handles[1]);
    CHECK(!IsOpen(handles[1]));
    CHECK_EQUAL(waitable.calls, 3);

    // What cannot be closed stays, and may be tried again.
    waitable.AttachHandle(handles[0]);
    CHECK_EQUAL(waitable.InternalWait(0), ORV_E_INVALID_HANDLE);
    CHECK_EQUAL(waitable.Destroy(), ORV_E_INVALID_HANDLE);
    CHECK_EQUAL(waitable.GetHandle(), handles[0]);
}

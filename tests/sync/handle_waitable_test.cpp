// Foreign handles: the owned are closed, the borrowed never.

#include "orv/sync/handle_waitable.h"

#include "orv/runtime/result.h"
#include "sync/objects.h"

TEST_CASE(OnlyOwnedHandlesAreClosed)
{
    for (uint32_t i = 0; i < 2; i++) {
        test::Note("owning", i);
        const bool owning = i != 0;
        HANDLE handles[3] = {};
        for (HANDLE &handle : handles)
            ZwCreateEvent(&handle, EVENT_ALL_ACCESS, nullptr, NotificationEvent, true);
        {
            Watched<OrvBasWinHandleWaitable> waitable(handles[0], owning);
            CHECK_EQUAL(waitable.Wait(0), ORV_S_OK);
            CHECK_EQUAL(waitable.Initialize(handles[1], !owning), ORV_S_OK);
            CHECK_EQUAL(waitable.held, handles[0]);
            CHECK_EQUAL(IsOpen(handles[0]), !owning); // by its own ownership, not the new one's
            CHECK_EQUAL(waitable.IsOwning(), !owning);
            CHECK_EQUAL(waitable.Destroy(), ORV_S_OK);
            CHECK_EQUAL(IsOpen(handles[1]), owning);
            CHECK_EQUAL(waitable.Initialize(handles[2], owning), ORV_S_OK);
        }
        CHECK_EQUAL(IsOpen(handles[2]), !owning); // by the destructor

        OrvBasWinHandleWaitable closed(handles[owning ? 0 : 1], owning);
        CHECK_EQUAL(closed.Wait(0), ORV_E_INVALID_HANDLE);
        CHECK_EQUAL(closed.Destroy(), owning ? ORV_E_INVALID_HANDLE : ORV_S_OK);
        CHECK_EQUAL(closed.IsInitialized(), owning);
        for (HANDLE handle : handles)
            ZwClose(handle); // those that are still open
    }
}

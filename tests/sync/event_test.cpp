// Events, and what all classes refuse in the same way.

#include "orv/sync/event.h"

#include "orv/runtime/result.h"
#include "sync/objects.h"

TEST_CASE(EventsFollowTheirResetType)
{
    struct {
        uint32_t resetType;
        bool manualReset, initialState;
    } const cases[] = {{0, true, false}, {1, false, true}, {7, false, false}};
    for (const auto &c : test::Rows(cases)) {
        OrvBasEvent event;
        CHECK_EQUAL(event.Create(static_cast<OrvBasEvent::ResetType>(c.resetType), c.initialState), ORV_S_OK);
        CHECK_EQUAL(event.Wait(0), c.initialState ? ORV_S_OK : ORV_W_TIMEOUT);
        CHECK_EQUAL(event.Set(), ORV_S_OK);
        CHECK_EQUAL(event.Wait(0), ORV_S_OK);
        CHECK_EQUAL(event.Wait(0), c.manualReset ? ORV_S_OK : ORV_W_TIMEOUT);
        CHECK_EQUAL(event.Set(), ORV_S_OK);
        CHECK_EQUAL(event.Reset(), ORV_S_OK);
        CHECK_EQUAL(event.Wait(0), ORV_W_TIMEOUT);
    }
}

TEST_CASE(EventIsSignalledWhileItIsOpen)
{
    OrvBasEvent event;
    CHECK_EQUAL(event.Set(), ORV_E_INVALID_HANDLE);
    CHECK_EQUAL(event.Reset(), ORV_E_INVALID_HANDLE);
    CHECK_EQUAL(event.Create(OrvBasEvent::ManualReset, true), ORV_S_OK);
    OrvBasEvent forwarding;
    forwarding.AttachForward(&event);
    CHECK_EQUAL(forwarding.Create(OrvBasEvent::ManualReset, true), ORV_E_ALREADY_EXISTS);
    CHECK_EQUAL(forwarding.Reset(), ORV_E_INVALID_HANDLE); // only waits are forwarded
    ZwClose(event.GetHandle());
    CHECK_EQUAL(event.Wait(0), ORV_E_INVALID_HANDLE);
}

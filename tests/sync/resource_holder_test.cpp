// What the guard of a resource holds when, and that it lets go of everything.

#include "orv/sync/resource_holder.h"

#include "sync/actors.h"

TEST_CASE(ResourceHolderHoldsWhatItSays)
{
    constexpr auto kType = [](uint32_t type) { return static_cast<OrvBasResourceHolder::LockType>(type); };
    OrvBasResource held, wanted, busy;
    CHECK_EQUAL(held.Create(), ORV_S_OK);
    CHECK_EQUAL(wanted.Create(), ORV_S_OK);
    CHECK_EQUAL(busy.Create(), ORV_S_OK);
    auto keep = [&] { busy.AcquireExclusive(-1); }; // for ever
    test::Thread(keep).Join();
    struct {
        OrvBasResource *resource;
        uint32_t type;
        OrvResult result;
        bool isExclusive; ///< when it succeeds
    } const cases[] = {
        {&wanted, 0, ORV_S_OK, true},
        {&wanted, 1, ORV_S_OK, false},
        {&wanted, 2, ORV_E_NOT_PROVIDED, false},
        {&wanted, 4, ORV_E_INVALID_ARGUMENT, false},
        {nullptr, 0, ORV_E_INVALID_ARGUMENT, false},
        {&busy, 1, ORV_W_TIMEOUT, false},
        {&held, 0, ORV_E_INVALID_OPERATION, false}, // its shared hold is released all the same
    };
    for (const auto &c : test::Rows(cases)) {
        const bool succeeds = c.result == ORV_S_OK;
        {
            OrvBasResourceHolder holder(&held, OrvBasResourceHolder::Shared, -1);
            CHECK_EQUAL(held.IsAcquiredShared(), 1u);
            CHECK_EQUAL(holder.Lock(c.resource, kType(c.type), 5), c.result);
            CHECK(IsAtRest(held));
            CHECK_EQUAL(holder.IsHeld(), succeeds);
            CHECK_EQUAL(wanted.IsAcquiredShared(), succeeds ? 1u : 0u);
            CHECK_EQUAL(wanted.IsAcquiredExclusive(), c.isExclusive);
        }
        CHECK(IsAtRest(wanted));
    }
    OrvBasResourceHolder holder(&wanted, OrvBasResourceHolder::Exclusive, 0);
    CHECK(holder.IsHeld() && wanted.IsAcquiredExclusive());
    holder.Release();
    CHECK(IsAtRest(wanted));
    holder.Release(); // nothing
    CHECK_EQUAL(holder.Lock(&held, OrvBasResourceHolder::Exclusive, 0), ORV_S_OK);
    holder.DetachWithoutReleasing();
    holder.Release(); // nothing
    CHECK_EQUAL(held.Release(), ORV_S_OK);
    CHECK(IsAtRest(held));
}

// Waits for several objects: which of them ends a wait for any, when a wait for all ends, and what cannot be
// waited for.

#include "orv/sync/multiple_wait.h"

#include "harness/thread.h"
#include "harness/usage.h"
#include "orv/runtime/result.h"
#include "orv/sync/event.h"
#include "orv/sync/mutex.h"
#include "orv/sync/semaphore.h"
#include "sync/objects.h"

namespace
{

constexpr uint32_t kMost = OrvMostWaitObjects;
constexpr uint32_t kUntouched = 77;

/// Events that reset themselves, none of them set, and pointers to them.
struct Events {
    OrvBasEvent events[kMost];
    OrvBasWaitable *objects[kMost];

    Events()
    {
        for (uint32_t i = 0; i < kMost; i++) {
            CHECK_EQUAL(events[i].Create(OrvBasEvent::AutoReset, false), ORV_S_OK);
            objects[i] = &events[i];
        }
    }

    /// Whether it was set; it no longer is.
    bool WasSet(uint32_t i) { return events[i].Wait(0) == ORV_S_OK; }
};

/// A mutex whose owner has ended.
struct AbandonedMutex : OrvBasMutex {
    AbandonedMutex()
    {
        Create(false);
        auto acquire = [&] { Acquire(-1); };
        test::Thread(acquire).Join();
    }
};

} // namespace

TEST_CASE(AnyTakesTheFirstThatIsSignalled)
{
    const test::Usage before = test::CountUsage();
    {
        Events e;
        uint32_t index = kUntouched;
        CHECK_EQUAL(OrvBasWaitForAny(index, e.objects, kMost, 0), ORV_W_TIMEOUT);
        CHECK_EQUAL(index, kUntouched);
        for (uint32_t i = 0; i < kMost; i++) {
            test::Note("object", i);
            e.events[i].Set();
            e.events[kMost - 1].Set();
            CHECK_EQUAL(OrvBasWaitForAny(index, e.objects, kMost, -1), ORV_S_OK);
            CHECK_EQUAL(index, i);
            CHECK(!e.WasSet(i) || i == kMost - 1);
            CHECK_EQUAL(e.WasSet(kMost - 1), i != kMost - 1);
        }
        // Another thread ends it, through two forwards; the same object may stand there twice.
        OrvBasWaitable forwards[2];
        forwards[0].AttachForward(&forwards[1]);
        forwards[1].AttachForward(e.objects[3]);
        OrvBasWaitable *const some[] = {e.objects[0], e.objects[0], &forwards[0]};
        auto signal = [&] {
            test::Sleep(30);
            e.events[3].Set();
        };
        test::Thread thread(signal);
        CHECK_EQUAL(OrvBasWaitForAny(index, some, 3, -2), ORV_S_OK); // read as unsigned: 49 days
        CHECK_EQUAL(index, 2u);
        thread.Join();
        CHECK(!e.WasSet(3));
    }
    CHECK_USAGE(before);
}

TEST_CASE(AllTakesEverythingAtOnceOrNothing)
{
    Events e;
    for (uint32_t i = 1; i < kMost; i++)
        e.events[i].Set();
    OrvBasSemaphore semaphore;
    CHECK_EQUAL(semaphore.Create(1, 1), ORV_S_OK);
    e.objects[7] = &semaphore;
    CHECK_EQUAL(OrvBasWaitForAll(e.objects, kMost, 20), ORV_W_TIMEOUT);
    CHECK_EQUAL(semaphore.Wait(0), ORV_S_OK); // it was left alone
    CHECK_EQUAL(semaphore.Release(1), ORV_S_OK);
    e.events[0].Set();
    CHECK_EQUAL(OrvBasWaitForAll(e.objects, kMost, -1), ORV_S_OK);
    CHECK_EQUAL(semaphore.Wait(0), ORV_W_TIMEOUT);
    for (uint32_t i = 0; i < kMost; i++)
        CHECK(i == 7 || !e.WasSet(i));
}

TEST_CASE(EmptyOnesCountAsSignalled)
{
    Events e;
    OrvBasWaitable empty, forward;
    forward.AttachForward(&empty);
    OrvBasWaitable *const objects[] = {e.objects[0], &forward, e.objects[1], &empty};
    uint32_t index = kUntouched;
    e.events[1].Set();
    CHECK_EQUAL(OrvBasWaitForAny(index, objects, 4, -1), ORV_S_OK);
    CHECK_EQUAL(index, 1u);
    CHECK(e.WasSet(1)); // it comes later and is left alone
    e.events[0].Set();
    CHECK_EQUAL(OrvBasWaitForAny(index, objects, 4, -1), ORV_S_OK);
    CHECK_EQUAL(index, 0u);
    CHECK_EQUAL(OrvBasWaitForAny(index, objects + 1, 1, -1), ORV_S_OK);
    CHECK_EQUAL(index, 0u);

    e.events[0].Set();
    CHECK_EQUAL(OrvBasWaitForAll(objects, 4, 0), ORV_W_TIMEOUT);
    e.events[1].Set();
    CHECK_EQUAL(OrvBasWaitForAll(objects, 4, 0), ORV_S_OK);
    CHECK_EQUAL(OrvBasWaitForAll(objects + 3, 1, -1), ORV_S_OK);
}

TEST_CASE(AbandonedMutexesAreTold)
{
    OrvBasEvent event;
    CHECK_EQUAL(event.Create(OrvBasEvent::ManualReset, false), ORV_S_OK);
    AbandonedMutex any;
    OrvBasWaitable empty;
    OrvBasWaitable *const objects[] = {&event, &any, &empty};
    uint32_t index = kUntouched;
    CHECK_EQUAL(OrvBasWaitForAny(index, objects, 3, -1), ORV_S_ABANDONED);
    CHECK_EQUAL(index, 1u);
    CHECK_EQUAL(any.Release(), ORV_S_OK);
    AbandonedMutex all;
    OrvBasWaitable *const both[] = {&empty, &any, &all};
    CHECK_EQUAL(OrvBasWaitForAll(both, 3, -1), ORV_S_ABANDONED);
    CHECK(any.Release() == ORV_S_OK && all.Release() == ORV_S_OK);
}

TEST_CASE(WhatCannotBeWaitedForIsRefused)
{
    struct : OrvBasSelfWaiting {
        OrvResult Wait(int) override { return ORV_S_OK; }
    } object;
    struct : OrvBasWaitable {
        using OrvBasWaitable::AttachSelfWaiting;
    } selfWaiting;
    selfWaiting.AttachSelfWaiting(&object);
    Events e;
    for (OrvBasEvent &event : e.events)
        event.Set();
    OrvBasWaitable nowhere;
    nowhere.AttachForward(nullptr);
    OrvBasWaitable forward;
    forward.AttachForward(e.objects[0]);
    OrvBasWaitable unknown;
    Field(unknown, 3) = 4;
    OrvBasWaitable *many[kMost + 1];
    for (OrvBasWaitable *&one : many)
        one = e.objects[0];
    const struct {
        OrvBasWaitable *objects[2];
        OrvResult any, all;
    } cases[] = {
        {{e.objects[0], nullptr}, ORV_E_INVALID_ARGUMENT, ORV_E_INVALID_ARGUMENT},
        {{e.objects[0], &nowhere}, ORV_E_INVALID_ARGUMENT, ORV_E_INVALID_ARGUMENT},
        {{e.objects[0], &selfWaiting}, ORV_E_UNSUPPORTED_TYPE, ORV_E_UNSUPPORTED_TYPE},
        {{e.objects[0], &unknown}, ORV_E_NOT_PROVIDED, ORV_E_NOT_PROVIDED},
        {{e.objects[0], &forward}, ORV_S_OK, ORV_E_INVALID_ARGUMENT}, // the same handle
    };
    for (const auto &c : test::Rows(cases)) {
        uint32_t index = kUntouched;
        CHECK_EQUAL(OrvBasWaitForAll(c.objects, 2, 0), c.all);
        CHECK_EQUAL(OrvBasWaitForAny(index, c.objects, 2, 0), c.any);
        CHECK_EQUAL(index, OrvSucceeded(c.any) ? 0u : kUntouched);
    }
    uint32_t index = kUntouched;
    CHECK_EQUAL(OrvBasWaitForAny(index, nullptr, 1, 0), ORV_E_INVALID_ARGUMENT);
    CHECK_EQUAL(OrvBasWaitForAll(many, 0, 0), ORV_E_INVALID_ARGUMENT);
    CHECK_EQUAL(OrvBasWaitForAny(index, many, kMost + 1, 0), ORV_E_BAD_LENGTH);
    CHECK_EQUAL(OrvBasWaitForAll(e.objects, kMost + 1, 0), ORV_E_BAD_LENGTH);
    CHECK_EQUAL(index, kUntouched);
    Field(unknown, 3) = 0;
}

// Threads that act upon a resource one step after another, as a script says, so that the order of events is
// certain: a step is over when it has ended, or when its thread is seen to wait.
//
// A step is an actor's letter, `a` to `j`, and what it does, which kSteps lists. Between them: `=abc` the
// waits of a, b and c are over, with success, and no others are; `~a` the time of a's wait is up; `#3` so
// many threads are active; `$7` so many records are in the table; `!` sets the stage's event.

#pragma once

#include "harness/test.h"
#include "harness/thread.h"
#include "orv/runtime/result.h"
#include "orv/sync/event.h"
#include "orv/sync/resource.h"

/// The patience of a thread that waits until a test says that its time is up.
constexpr int kUntilTold = 7654321;

struct Step {
    char letter;
    OrvResult (*act)(OrvBasResource &resource);
    OrvResult expected;
    bool waits;
};

constexpr Step kSteps[] = {
    {'X', [](OrvBasResource &r) { return r.AcquireExclusive(-1); }, ORV_S_OK, false},
    {'S', [](OrvBasResource &r) { return r.AcquireShared(-1); }, ORV_S_OK, false},
    {'x', [](OrvBasResource &r) { return r.AcquireExclusive(-1); }, ORV_S_OK, true},
    {'s', [](OrvBasResource &r) { return r.AcquireShared(-1); }, ORV_S_OK, true},
    {'y', [](OrvBasResource &r) { return r.AcquireExclusive(kUntilTold); }, ORV_S_OK, true},
    {'z', [](OrvBasResource &r) { return r.AcquireShared(kUntilTold); }, ORV_S_OK, true},
    {'T', [](OrvBasResource &r) { return r.AcquireExclusive(0); }, ORV_W_TIMEOUT, false},
    {'R', [](OrvBasResource &r) { return r.AcquireShared(0); }, ORV_W_TIMEOUT, false},
    {'U', [](OrvBasResource &r) { return r.AcquireExclusive(-1); }, ORV_E_INVALID_OPERATION, false},
    {'O', [](OrvBasResource &r) { return r.AcquireShared(-1); }, ORV_E_OUT_OF_MEMORY, false},
    {'-', [](OrvBasResource &r) { return r.Release(); }, ORV_S_OK, false},
    {'N', [](OrvBasResource &r) { return r.Release(); }, ORV_E_NOT_OWNER, false},
    {'v', [](OrvBasResource &r) { return r.ConvertExclusiveToShared(); }, ORV_S_OK, false},
    {'V', [](OrvBasResource &r) { return r.ConvertExclusiveToShared(); }, ORV_E_NOT_OWNER, false},
    {'w', [](OrvBasResource &r) -> OrvResult { return r.IsAcquiredExclusive(); }, true, false},
    {'r', [](OrvBasResource &r) -> OrvResult { return r.IsAcquiredExclusive(); }, false, false},
    {'0', [](OrvBasResource &r) -> OrvResult { return r.IsAcquiredShared(); }, 0, false},
    {'1', [](OrvBasResource &r) -> OrvResult { return r.IsAcquiredShared(); }, 1, false},
    {'2', [](OrvBasResource &r) -> OrvResult { return r.IsAcquiredShared(); }, 2, false},
    {'3', [](OrvBasResource &r) -> OrvResult { return r.IsAcquiredShared(); }, 3, false},
};

inline const Step &StepOf(char letter)
{
    const Step *step = kSteps;
    while (step->letter != letter)
        step++;
    return *step;
}

/// A field of 32 bits at an offset that callers may rely on.
inline uint32_t FieldOf(const OrvBasResource &resource, uint32_t offset)
{
    return reinterpret_cast<const volatile uint32_t *>(&resource)[offset / 4];
}

/// Whether the resource is free, and nobody waits or has a record in it.
inline bool IsAtRest(const OrvBasResource &resource)
{
    const auto *const table = reinterpret_cast<const uint32_t *>(FieldOf(resource, 92));
    uint32_t found = FieldOf(resource, 100) & 0xFF;
    for (uint32_t offset = 64; offset < 92; offset += 4)
        found |= FieldOf(resource, offset);
    for (uint32_t i = 0; i < 2 * FieldOf(resource, 96); i++)
        found |= table[i];
    return found == 0;
}

struct CreatedEvent : OrvBasEvent {
    CreatedEvent(ResetType resetType, bool initialState) { Create(resetType, initialState); }
};

/// A thread that takes one step at a time.
class Actor
{
public:
    Actor() = default;
    ~Actor()
    {
        resource_ = nullptr;
        wanted_.Set();
    }

    void Start(OrvBasResource &resource, const Step &step)
    {
        resource_ = &resource;
        step_ = &step;
        waits = step.waits;
        done_.Reset();
        wanted_.Set();
    }

    bool IsDone() { return done_.Wait(0) == ORV_S_OK; }

    OrvResult Await()
    {
        waits = false;
        return OrvFailed(done_.Wait(30000)) ? ORV_E_ABORTED : result_;
    }

    void operator()()
    {
        while (wanted_.Wait(-1) == ORV_S_OK && resource_) {
            result_ = step_->act(*resource_);
            done_.Set();
        }
    }

    bool waits = false;

private:
    CreatedEvent wanted_{OrvBasEvent::AutoReset, false};
    CreatedEvent done_{OrvBasEvent::ManualReset, true};
    OrvBasResource *volatile resource_ = nullptr;
    const Step *volatile step_ = nullptr;
    volatile OrvResult result_ = 0;
    test::Thread thread_{*this};
};

struct Stage {
    /// Plays a script, after which the resource must be at rest.
    void Play(OrvBasResource &resource, const char *script)
    {
        const auto waiters = [&] {
            return resource.GetExclusiveWaiterCount() + resource.GetSharedWaiterCount();
        };
        for (const char *at = script; *at; at++) {
            test::Note(script, static_cast<uint32_t>(at - script));
            if (*at == '=') {
                while (at[1] >= 'a')
                    CHECK_EQUAL(actors[*++at - 'a'].Await(), ORV_S_OK);
                uint32_t waiting = 0;
                for (Actor &actor : actors) {
                    waiting += actor.waits;
                    CHECK(!actor.waits || !actor.IsDone());
                }
                CHECK_EQUAL(waiters(), waiting);
            } else if (*at == '~') {
                CHECK_EQUAL(actors[*++at - 'a'].Await(), ORV_W_TIMEOUT);
            } else if (*at == '#' || *at == '$') {
                const uint32_t actual = FieldOf(resource, *at == '#' ? 64 : 96);
                uint32_t expected = 0;
                while (at[1] >= '0' && at[1] <= '9')
                    expected = expected * 10 + static_cast<uint32_t>(*++at - '0');
                CHECK_EQUAL(actual, expected);
            } else if (*at == '!') {
                CHECK_EQUAL(event.Set(), ORV_S_OK);
            } else if (*at != ' ') {
                Actor &actor = actors[*at - 'a'];
                const Step &step = StepOf(*++at);
                const uint32_t before = waiters();
                actor.Start(resource, step);
                if (step.waits)
                    CHECK(test::Eventually([&] { return waiters() == before + 1; }));
                else
                    CHECK_EQUAL(actor.Await(), step.expected);
            }
        }
        CHECK(IsAtRest(resource));
    }

    /// Plays each script on a resource of its own.
    template <uint32_t count>
    void PlayEach(const char *const (&scripts)[count])
    {
        for (const char *const script : scripts) {
            OrvBasResource resource;
            CHECK_EQUAL(resource.Create(), ORV_S_OK);
            Play(resource, script);
        }
    }

    Actor actors[10];
    CreatedEvent event{OrvBasEvent::AutoReset, false};
};

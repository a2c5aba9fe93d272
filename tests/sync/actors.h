// Threads that act upon a resource one step after another, as a script says, so that the order of events is
// certain: a step is over when it has ended, or when its thread is seen to wait.
//
// A step is an actor's letter and what it does:
//
//   X S    acquires exclusively, shared, and gets it at once
//   x s    the same, but has to wait
//   T R    the same with no time to wait: the time is up at once
//   U O    the same, refused: a reader that wants to write; no memory for another reader
//   -  v   releases; converts
//   N  V   the same, refused: not the owner
//   0-9    has so many holds
//   w r    has, has not an exclusive hold
//   ~      gives up its wait, because its time is up
//
// and between them: `=abc` the waits of a, b and c are over, with success, and no others are; `#3` so many
// threads are active; `$7` so many records are in the table; `!` sets the stage's event.

#pragma once

#include "harness/test.h"
#include "harness/thread.h"
#include "orv/runtime/result.h"
#include "orv/sync/event.h"
#include "orv/sync/resource.h"

/// A field of 32 bits at an offset that callers may rely on.
inline uint32_t FieldOf(const OrvBasResource &resource, uint32_t offset)
{
    return reinterpret_cast<const volatile uint32_t *>(&resource)[offset / 4];
}

inline uint32_t ActiveCount(const OrvBasResource &resource)
{
    return FieldOf(resource, 64);
}

/// Whether the resource is free, and nobody has a record in it.
inline bool IsAtRest(const OrvBasResource &resource)
{
    const auto *const table = reinterpret_cast<const uint32_t *>(FieldOf(resource, 92));
    bool found = (FieldOf(resource, 100) & 0xFF) != 0;
    for (uint32_t offset = 64; offset < 92; offset += 4)
        found |= FieldOf(resource, offset) != 0;
    for (uint32_t i = 0; i < 2 * FieldOf(resource, 96); i++)
        found |= table[i] != 0;
    return !found;
}

/// A thread that takes one step at a time.
class Actor
{
public:
    Actor()
    {
        wanted_.Create(OrvBasEvent::AutoReset, false);
        done_.Create(OrvBasEvent::ManualReset, true);
    }
    ~Actor()
    {
        Start(nullptr, 0);
        thread_.Join();
    }

    /// A null resource ends the thread.
    void Start(OrvBasResource *resource, char step)
    {
        resource_ = resource;
        step_ = step;
        done_.Reset();
        wanted_.Set();
    }

    bool IsDone() { return done_.Wait(0) == ORV_S_OK; }
    OrvResult Await() { return OrvFailed(done_.Wait(30000)) ? ORV_E_ABORTED : result_; }

    void operator()()
    {
        while (wanted_.Wait(-1) == ORV_S_OK && resource_) {
            result_ = Take();
            done_.Set();
        }
    }

    bool waits = false;
    int patience = -1; ///< for the steps that have to wait, in milliseconds

private:
    OrvResult Take()
    {
        switch (step_) {
        case 'X':
        case 'U':
            return resource_->AcquireExclusive(-1);
        case 'S':
        case 'O':
            return resource_->AcquireShared(-1);
        case 'x':
            return resource_->AcquireExclusive(patience);
        case 's':
            return resource_->AcquireShared(patience);
        case 'T':
            return resource_->AcquireExclusive(0);
        case 'R':
            return resource_->AcquireShared(0);
        case '-':
        case 'N':
            return resource_->Release();
        case 'v':
        case 'V':
            return resource_->ConvertExclusiveToShared();
        case 'w':
        case 'r':
            return resource_->IsAcquiredExclusive();
        default:
            return static_cast<OrvResult>(resource_->IsAcquiredShared());
        }
    }

    OrvBasEvent wanted_;
    OrvBasEvent done_;
    OrvBasResource *volatile resource_ = nullptr;
    volatile char step_ = 0;
    volatile OrvResult result_ = 0;
    test::Thread thread_{*this};
};

/// The actors `a` to `j`.
class Stage
{
public:
    void Play(OrvBasResource &resource, const char *script)
    {
        for (const char *at = script; *at; at++) {
            test::Note(script, static_cast<uint32_t>(at - script));
            if (*at == '=')
                at = ExpectEnds(resource, at);
            else if (*at == '#')
                CHECK_EQUAL(ActiveCount(resource), static_cast<uint32_t>(*++at - '0'));
            else if (*at == '$')
                CHECK_EQUAL(FieldOf(resource, 96), static_cast<uint32_t>(ParseNumber(at)));
            else if (*at == '!')
                CHECK_EQUAL(event.Set(), ORV_S_OK);
            else if (*at != ' ') {
                Actor &actor = actors[*at - 'a'];
                TakeStep(resource, actor, *++at);
            }
        }
        CHECK(IsAtRest(resource));
    }

    Actor actors[10];
    OrvBasEvent event;

private:
    static OrvResult Expected(char step)
    {
        static const struct {
            char step;
            OrvResult result;
        } kResults[] = {
            {'T', ORV_W_TIMEOUT},
            {'R', ORV_W_TIMEOUT},
            {'U', ORV_E_INVALID_OPERATION},
            {'O', ORV_E_OUT_OF_MEMORY},
            {'N', ORV_E_NOT_OWNER},
            {'V', ORV_E_NOT_OWNER},
            {'w', true},
        };
        for (const auto &known : kResults) {
            if (known.step == step)
                return known.result;
        }
        return step >= '0' && step <= '9' ? step - '0' : ORV_S_OK;
    }

    static int ParseNumber(const char *&at)
    {
        int number = 0;
        while (at[1] >= '0' && at[1] <= '9')
            number = number * 10 + *++at - '0';
        return number;
    }

    static uint32_t Waiters(OrvBasResource &resource)
    {
        return resource.GetExclusiveWaiterCount() + resource.GetSharedWaiterCount();
    }

    static void TakeStep(OrvBasResource &resource, Actor &actor, char step)
    {
        if (step == '~') {
            CHECK_EQUAL(actor.Await(), ORV_W_TIMEOUT);
            actor.waits = false;
            return;
        }
        const uint32_t waiters = Waiters(resource);
        actor.Start(&resource, step);
        if (step == 'x' || step == 's') {
            actor.waits = true;
            CHECK(test::Eventually([&] { return Waiters(resource) == waiters + 1; }));
        } else {
            CHECK_EQUAL(actor.Await(), Expected(step));
        }
    }

    const char *ExpectEnds(OrvBasResource &resource, const char *at)
    {
        for (; at[1] >= 'a' && at[1] <= 'j'; at++) {
            Actor &actor = actors[at[1] - 'a'];
            CHECK_EQUAL(actor.Await(), ORV_S_OK);
            actor.waits = false;
        }
        uint32_t waiters = 0;
        for (Actor &actor : actors) {
            CHECK(!actor.waits || !actor.IsDone());
            waiters += actor.waits;
        }
        CHECK_EQUAL(Waiters(resource), waiters);
        return at;
    }
};

// What a second Create or Initialize does, for every class that is made in two steps: it is refused with
// ORV_E_ALREADY_EXISTS and no byte of the object changes, but for the classes whose headers say otherwise. Named
// objects, lock files, views and foreign handles, which take the place of what was there, have this in their own tests.

#include "harness/test.h"
#include "nt/programs.h"
#include "orv/orv.h"

namespace
{

struct Outcome {
    OrvResult first, second;
    bool isUnchanged; ///< by the second call
};

/// Makes the object twice: `create(object, round)`.
template <typename Object, typename Create>
Outcome MakeTwice(Object &object, Create create)
{
    Outcome outcome = {};
    outcome.first = create(object, 0u);
    uint8_t before[sizeof object];
    memmove(before, static_cast<const void *>(&object), sizeof object);
    outcome.second = create(object, 1u);
    outcome.isUnchanged = memcmp(before, static_cast<const void *>(&object), sizeof object) == 0;
    return outcome;
}

struct Row {
    const char *name;
    OrvResult second;
    Outcome (*make)();
};

/// The row of a class of which `create` makes a plain object.
template <typename Object, typename Create>
constexpr Row Plain(const char *name, OrvResult second, Create)
{
    return {name, second, [] {
                Object object;
                return MakeTwice(object, Create());
            }};
}

constexpr Row kKept[] = {
    Plain<OrvBasEvent>("event", ORV_E_ALREADY_EXISTS,
                       [](auto &event, uint32_t round) {
                           return event.Create(round ? OrvBasEvent::AutoReset : OrvBasEvent::ManualReset,
                                               round != 0);
                       }),
    Plain<OrvBasMutex>("mutex", ORV_E_ALREADY_EXISTS,
                       [](auto &mutex, uint32_t) { return mutex.Create(false); }),
    Plain<OrvBasSemaphore>("semaphore", ORV_E_ALREADY_EXISTS,
                           [](auto &semaphore, uint32_t round) { return semaphore.Create(0, 1 + round); }),
    Plain<OrvBasCriticalSection>("critical section", ORV_E_ALREADY_EXISTS,
                                 [](auto &section, uint32_t round) {
                                     const OrvResult result = section.Create();
                                     return round == 0 ? result | section.Acquire() : result;
                                 }),
    Plain<OrvBasSparseLockManager>(
        "sparse lock manager", ORV_E_ALREADY_EXISTS,
        [](auto &manager, uint32_t round) { return manager.Initialize(round, round); }),
    Plain<OrvTls>("thread-local key", ORV_E_ALREADY_EXISTS, [](auto &key, uint32_t) { return key.Create(); }),
    {"transaction", ORV_E_ALREADY_EXISTS,
     [] {
         OrvWinTransaction transaction;
         Outcome outcome = MakeTwice(transaction, [](auto &object, uint32_t) { return object.Create(); });
         // Without transactions there is nothing that a second call could find.
         if (outcome.first == ORV_E_NOT_SUPPORTED && outcome.second == ORV_E_NOT_SUPPORTED)
             outcome = {ORV_S_OK, ORV_E_ALREADY_EXISTS, outcome.isUnchanged};
         return outcome;
     }},
};

constexpr Row kReplaced[] = {
    Plain<OrvBasResource>("resource, which cannot be used any more", ORV_E_ALREADY_EXISTS,
                          [](auto &resource, uint32_t) { return resource.Create(); }),
    Plain<OrvSharedMemoryServer>("shared memory", ORV_S_OK,
                                 [](auto &server, uint32_t round) {
                                     return server.Create(10, 0x7A110 + round, OrvBasSyncSession, nullptr);
                                 }),
    // The first stream is lost, as the headers say.
    Plain<detail::OrvDeflateContext>(
        "deflate", ORV_S_OK,
        [](auto &context, uint32_t round) { return context.Initialize(100, round == 0, 1); }),
    Plain<detail::OrvBZ2Context>(
        "bzip2", ORV_S_OK, [](auto &context, uint32_t round) { return context.Initialize(100, round == 0); }),
};

template <uint32_t count>
void CheckRows(const Row (&rows)[count], bool keeps)
{
    for (const Row &row : rows) {
        test::Note(row.name, 0);
        const Outcome outcome = row.make();
        CHECK_EQUAL(outcome.first, ORV_S_OK);
        CHECK_EQUAL(outcome.second, row.second);
        CHECK_EQUAL(outcome.isUnchanged, keeps);
    }
}

} // namespace

TEST_CASE(ASecondCreateIsRefusedOrReplacesAsTheHeadersSay)
{
    CheckRows(kKept, true);
    CheckRows(kReplaced, false);
}

// What a second Create or Initialize does, for every class that is made in two steps: it is refused with
// ORV_E_ALREADY_EXISTS and no byte of the object changes, but for the classes whose headers say otherwise.

#include "fs/test_file.h"
#include "harness/test.h"
#include "orv/orv.h"

namespace
{

constexpr wchar_t kFile[] = L"C:\\windows\\temp\\orv-second-create-test.tmp";

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
    Plain<OrvBasWinEvent>("named event", ORV_S_OK,
                          [](auto &event, uint32_t) {
                              return event.Create(OrvBasEvent::AutoReset, false, nullptr,
                                                  OrvBasWinSyncSession, nullptr);
                          }),
    Plain<OrvBasWinMutex>("named mutex", ORV_S_ALREADY_EXISTS,
                          [](auto &mutex, uint32_t) {
                              return mutex.Create(false, L"orv second create test", OrvBasWinSyncSession,
                                                  nullptr);
                          }),
    Plain<OrvBasWinSemaphore>("named semaphore", ORV_S_OK,
                              [](auto &semaphore, uint32_t) {
                                  return semaphore.Create(0, 1, nullptr, OrvBasWinSyncSession, nullptr);
                              }),
    Plain<OrvBasWinLockFile>("lock file", ORV_S_ALREADY_EXISTS,
                             [](auto &lockFile, uint32_t) { return lockFile.Create(kFile, false); }),
    Plain<OrvBasWinLockFileResource>(
        "lock on an open file", ORV_S_OK,
        [](auto &resource, uint32_t round) { return resource.OpenOrCreate(kFile, nullptr, round != 0); }),
    {"foreign handle", ORV_S_OK,
     [] {
         OrvBasEvent events[2];
         OrvBasWinHandleWaitable waitable(nullptr, false);
         return MakeTwice(waitable, [&](auto &object, uint32_t round) {
             events[round].Create(OrvBasEvent::AutoReset, false);
             return object.Initialize(events[round].GetHandle(), false);
         });
     }},
    {"stop request of a thread", ORV_S_OK,
     [] {
         OrvBasEvent events[2];
         OrvBasThread thread;
         return MakeTwice(thread,
                          [&](auto &object, uint32_t round) { return object.Initialize(&events[round]); });
     }},
    Plain<OrvSharedMemoryServer>("shared memory", ORV_S_OK,
                                 [](auto &server, uint32_t round) {
                                     return server.Create(10, 0x7A110 + round, OrvBasSyncSession, nullptr);
                                 }),
    {"joined memory", ORV_S_OK,
     [] {
         OrvSharedMemoryServer servers[2];
         OrvSharedMemoryClient client;
         return MakeTwice(client, [&](auto &object, uint32_t round) {
             servers[round].Create(10, 0, OrvBasSyncProcess, nullptr);
             return object.Connect(servers[round]);
         });
     }},
    {"view of memory", ORV_S_OK,
     [] {
         OrvSharedMemoryServer server;
         server.Create(10, 0, OrvBasSyncProcess, nullptr);
         OrvSharedMemoryView view;
         return MakeTwice(view,
                          [&](auto &range, uint32_t offset) { return range.Attach(server, offset, 1); });
     }},
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
    const TestFile file(kFile);
    CheckRows(kKept, true);
    CheckRows(kReplaced, false);
}

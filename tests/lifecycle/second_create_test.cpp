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

template <typename Object, typename Create>
Outcome MakeTwice(Create create)
{
    Object object;
    return MakeTwice(object, create);
}

struct Row {
    const char *name;
    Outcome (*make)();
    OrvResult second;
};

const Row kKept[] = {
    {"event",
     [] {
         return MakeTwice<OrvBasEvent>([](OrvBasEvent &event, uint32_t round) {
             return event.Create(round ? OrvBasEvent::AutoReset : OrvBasEvent::ManualReset, round != 0);
         });
     },
     ORV_E_ALREADY_EXISTS},
    {"mutex",
     [] { return MakeTwice<OrvBasMutex>([](OrvBasMutex &mutex, uint32_t) { return mutex.Create(false); }); },
     ORV_E_ALREADY_EXISTS},
    {"semaphore",
     [] {
         return MakeTwice<OrvBasSemaphore>(
             [](OrvBasSemaphore &semaphore, uint32_t round) { return semaphore.Create(0, 1 + round); });
     },
     ORV_E_ALREADY_EXISTS},
    {"critical section",
     [] {
         return MakeTwice<OrvBasCriticalSection>([](OrvBasCriticalSection &section, uint32_t round) {
             const OrvResult result = section.Create();
             if (round == 0)
                 section.Acquire();
             return result;
         });
     },
     ORV_E_ALREADY_EXISTS},
    {"sparse lock manager",
     [] {
         return MakeTwice<OrvBasSparseLockManager>([](OrvBasSparseLockManager &manager, uint32_t round) {
             return manager.Initialize(round, round);
         });
     },
     ORV_E_ALREADY_EXISTS},
    {"thread-local key", [] { return MakeTwice<OrvTls>([](OrvTls &key, uint32_t) { return key.Create(); }); },
     ORV_E_ALREADY_EXISTS},
    {"transaction",
     []() -> Outcome {
         const Outcome outcome = MakeTwice<OrvWinTransaction>(
             [](OrvWinTransaction &transaction, uint32_t) { return transaction.Create(); });
         // Without transactions there is nothing that a second call could find.
         return outcome.first == ORV_E_NOT_SUPPORTED && outcome.second == ORV_E_NOT_SUPPORTED
                    ? Outcome{ORV_S_OK, ORV_E_ALREADY_EXISTS, outcome.isUnchanged}
                    : outcome;
     },
     ORV_E_ALREADY_EXISTS},
};

const Row kReplaced[] = {
    {"resource, which cannot be used any more",
     [] {
         return MakeTwice<OrvBasResource>(
             [](OrvBasResource &resource, uint32_t) { return resource.Create(); });
     },
     ORV_E_ALREADY_EXISTS},
    {"named event",
     [] {
         return MakeTwice<OrvBasWinEvent>([](OrvBasWinEvent &event, uint32_t) {
             return event.Create(OrvBasEvent::AutoReset, false, nullptr, OrvBasWinSyncSession, nullptr);
         });
     },
     ORV_S_OK},
    {"named mutex",
     [] {
         return MakeTwice<OrvBasWinMutex>([](OrvBasWinMutex &mutex, uint32_t) {
             return mutex.Create(false, L"orv second create test", OrvBasWinSyncSession, nullptr);
         });
     },
     ORV_S_ALREADY_EXISTS},
    {"named semaphore",
     [] {
         return MakeTwice<OrvBasWinSemaphore>([](OrvBasWinSemaphore &semaphore, uint32_t) {
             return semaphore.Create(0, 1, nullptr, OrvBasWinSyncSession, nullptr);
         });
     },
     ORV_S_OK},
    {"lock file",
     [] {
         return MakeTwice<OrvBasWinLockFile>(
             [](OrvBasWinLockFile &lockFile, uint32_t) { return lockFile.Create(kFile, false); });
     },
     ORV_S_ALREADY_EXISTS},
    {"lock on an open file",
     [] {
         return MakeTwice<OrvBasWinLockFileResource>([](OrvBasWinLockFileResource &resource, uint32_t round) {
             return resource.OpenOrCreate(kFile, nullptr, round != 0);
         });
     },
     ORV_S_OK},
    {"foreign handle",
     [] {
         OrvBasEvent events[2];
         OrvBasWinHandleWaitable waitable(nullptr, false);
         return MakeTwice(waitable, [&](OrvBasWinHandleWaitable &object, uint32_t round) {
             events[round].Create(OrvBasEvent::AutoReset, false);
             return object.Initialize(events[round].GetHandle(), false);
         });
     },
     ORV_S_OK},
    {"stop request of a thread",
     [] {
         OrvBasEvent events[2];
         OrvBasThread thread;
         return MakeTwice(
             thread, [&](OrvBasThread &object, uint32_t round) { return object.Initialize(&events[round]); });
     },
     ORV_S_OK},
    {"shared memory",
     [] {
         return MakeTwice<OrvSharedMemoryServer>([](OrvSharedMemoryServer &server, uint32_t round) {
             return server.Create(10, 0x7A110 + round, OrvBasSyncSession, nullptr);
         });
     },
     ORV_S_OK},
    {"joined memory, and its view",
     [] {
         OrvSharedMemoryServer servers[2];
         OrvSharedMemoryClient client;
         OrvSharedMemoryView view;
         Outcome shown = {};
         const Outcome joined = MakeTwice(client, [&](OrvSharedMemoryClient &object, uint32_t round) {
             servers[round].Create(10, 0, OrvBasSyncProcess, nullptr);
             const OrvResult result = object.Connect(servers[round]);
             if (round == 0)
                 shown = MakeTwice(view, [&](OrvSharedMemoryView &range, uint32_t offset) {
                     return range.Attach(object, offset, 1);
                 });
             return result;
         });
         return Outcome{joined.first | shown.first, joined.second | shown.second,
                        joined.isUnchanged || shown.isUnchanged};
     },
     ORV_S_OK},
    // The first stream is lost, as the headers say.
    {"deflate",
     [] {
         return MakeTwice<detail::OrvDeflateContext>([](detail::OrvDeflateContext &context, uint32_t round) {
             return context.Initialize(100, round == 0, 1);
         });
     },
     ORV_S_OK},
    {"bzip2",
     [] {
         return MakeTwice<detail::OrvBZ2Context>([](detail::OrvBZ2Context &context, uint32_t round) {
             return context.Initialize(100, round == 0);
         });
     },
     ORV_S_OK},
};

} // namespace

TEST_CASE(ASecondCreateIsRefusedOrReplacesAsTheHeadersSay)
{
    const TestFile file(kFile);
    const auto check = [](const Row *rows, uint32_t count, bool keeps) {
        for (uint32_t i = 0; i < count; i++) {
            test::Note(rows[i].name, i);
            const Outcome outcome = rows[i].make();
            CHECK_EQUAL(outcome.first, ORV_S_OK);
            CHECK_EQUAL(outcome.second, rows[i].second);
            CHECK_EQUAL(outcome.isUnchanged, keeps);
        }
    };
    check(kKept, sizeof kKept / sizeof *kKept, true);
    check(kReplaced, sizeof kReplaced / sizeof *kReplaced, false);
}

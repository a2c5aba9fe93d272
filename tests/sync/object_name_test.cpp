// Named objects on the real platform: who meets whom under which name, and what a failure leaves. Every check
// is made for each of the three classes.

#include "orv/runtime/result.h"
#include "orv/sync/win_event.h"
#include "orv/sync/win_mutex.h"
#include "orv/sync/win_semaphore.h"
#include "sync/objects.h"

namespace
{

typedef OrvBasWinSyncObjectNameSpace NameSpace;
constexpr auto kSession = OrvBasWinSyncSession;
constexpr auto kUnknown = static_cast<NameSpace>(3);

/// One of the classes, with the first arguments of its Create.
template <typename Base, ACCESS_MASK created, auto all, auto fewer, typename GetOpen, auto... first>
struct Named : Watched<Base> {
    static constexpr ACCESS_MASK kCreated = created;
    static constexpr auto kAll = all;
    static constexpr auto kFewer = fewer;
    static constexpr GetOpen kNativeOpen = {};

    OrvResult Make(const wchar_t *name, NameSpace nameSpace, OrvWinSecurityDescriptor *descriptor = nullptr)
    {
        return this->Create(first..., name, nameSpace, descriptor);
    }
};

using Event =
    Named<OrvBasWinEvent, 0x1F0003, OrvWinEventAllAccess, OrvWinEventQueryState | OrvWinEventSynchronize,
          decltype([] { return ZwOpenEvent; }), OrvBasEvent::ManualReset, false>;
using Mutex = Named<OrvBasWinMutex, 0x110001, OrvWinMutexAllAccess,
                    OrvWinMutexSynchronize | OrvWinMutexDelete, decltype([] { return ZwOpenMutant; }), false>;
using Semaphore = Named<OrvBasWinSemaphore, 0x1F0003, OrvWinSemaphoreAllAccess,
                        OrvWinSemaphoreModifyState | OrvWinSemaphoreSynchronize,
                        decltype([] { return ZwOpenSemaphore; }), 1, 2>;

Path BaseDirectory()
{
    Path base;
    if (NtCurrentPeb()->SessionId != 0)
        base << L"\\Sessions\\" << NtCurrentPeb()->SessionId;
    return base << L"\\BaseNamedObjects\\";
}

/// A native call by name.
template <typename Call>
NTSTATUS ByName(const Path &path, Call call)
{
    UNICODE_STRING counted;
    RtlInitUnicodeString(&counted, path.text);
    const OBJECT_ATTRIBUTES attributes = {sizeof attributes, nullptr, &counted, 0, nullptr, nullptr};
    return call(&attributes);
}

template <typename Object>
void ObjectsMeet()
{
    struct {
        NameSpace nameSpace;
        Path fullName;
    } const cases[] = {{OrvBasWinSyncGlobal, BaseDirectory() << L"Global\\OrvTest"},
                       {OrvBasWinSyncSession, BaseDirectory() << L"OrvTest"},
                       {OrvBasWinSyncLibrary, Path() << L"\\OrvObjects\\OrvTest"}};
    for (const auto &c : test::Rows(cases)) {
        Object first, second, third;
        CHECK_EQUAL(first.Make(L"OrvTest", c.nameSpace), ORV_S_OK);
        CHECK_EQUAL(second.Make(L"OrvTest", c.nameSpace), ORV_S_ALREADY_EXISTS);
        CHECK_EQUAL(third.Open(L"oRVtEST", c.nameSpace, Object::kFewer), ORV_S_OK);
        CHECK_EQUAL(Query(second.GetHandle()).GrantedAccess, Object::kCreated);
        CHECK_EQUAL(Query(third.GetHandle()).GrantedAccess, static_cast<ACCESS_MASK>(Object::kFewer));
        HANDLE handle = nullptr; // the platform finds the object where it must be
        CHECK_EQUAL(
            ByName(c.fullName, [&](auto a) { return Object::kNativeOpen()(&handle, Object::kAll, a); }),
            STATUS_SUCCESS);
        CHECK_EQUAL(Query(handle).HandleCount, 4u);
        ZwClose(handle);
    }
}

template <typename Object, typename Other>
void FailuresLeaveTheObject()
{
    Other other;
    Object object;
    CHECK_EQUAL(other.Make(L"OrvOther", kSession), ORV_S_OK);
    CHECK_EQUAL(object.Make(nullptr, kUnknown), ORV_S_OK);
    void *const handle = object.GetHandle();
    struct {
        const wchar_t *name;
        NameSpace nameSpace;
        OrvResult result;
    } const cases[] = {
        {L"OrvMissing", kUnknown, ORV_E_INVALID_ARGUMENT},
        {L"OrvOther", kSession, ORV_E_INVALID_HANDLE},
        {L"no such directory\\N", kSession, ORV_E_PATH_NOT_FOUND},
    };
    for (const auto &c : test::Rows(cases)) {
        CHECK_EQUAL(object.Make(c.name, c.nameSpace), c.result);
        CHECK_EQUAL(object.Open(c.name, c.nameSpace, Object::kAll), c.result);
    }
    CHECK_EQUAL(object.Open(L"OrvMissing", kSession, Object::kAll), ORV_E_FILE_NOT_FOUND);
    CHECK(OrvFailed(object.Open(L"", kSession, Object::kAll)));
    CHECK_EQUAL(object.calls, 1);
    CHECK_EQUAL(object.GetHandle(), handle);
    CHECK_EQUAL(Query(handle).HandleCount, 1u);

    // A success lets go of what was held.
    CHECK_EQUAL(object.Make(L"OrvNew", kSession), ORV_S_OK);
    CHECK_EQUAL(object.held, handle);
    void *const named = object.GetHandle();
    CHECK_EQUAL(object.Open(L"OrvNew", kSession, Object::kAll), ORV_S_OK);
    CHECK_EQUAL(object.held, named);
    CHECK_EQUAL(object.calls, 3);
    CHECK_EQUAL(Query(object.GetHandle()).HandleCount, 1u);
}

/// Two empty names do not meet, and the descriptor reaches the object.
template <typename Object>
void ObjectsStayApart()
{
    Object unnamed[2];
    for (Object &object : unnamed)
        CHECK_EQUAL(object.Make(L"", kSession), ORV_S_OK);
    CHECK_EQUAL(Query(unnamed[0].GetHandle()).HandleCount, 1u);

    // A discretionary list without entries: nobody may do anything.
    const uint8_t list[8] = {2, 0, 8};
    const struct {
        uint16_t revision, control;
        const void *owner, *group, *systemList, *discretionaryList;
    } native = {1, 4, nullptr, nullptr, nullptr, list};
    OrvWinSecurityDescriptor descriptor(const_cast<void *>(static_cast<const void *>(&native)));
    Object guarded, refused;
    CHECK_EQUAL(guarded.Make(L"OrvGuarded", kSession, &descriptor), ORV_S_OK);
    CHECK_EQUAL(refused.Open(L"OrvGuarded", kSession, Object::kAll), ORV_E_ACCESS_DENIED);
}

} // namespace

TEST_CASE(ObjectsMeetInEachNameSpace)
{
    Event early;
    CHECK_EQUAL(early.Make(L"OrvTest", OrvBasWinSyncLibrary), ORV_E_PATH_NOT_FOUND);
    HANDLE directory = nullptr;
    ByName(Path() << L"\\OrvObjects",
           [&](auto a) { return ZwCreateDirectoryObject(&directory, 0xF000F, a); });
    ObjectsMeet<Event>();
    ObjectsMeet<Mutex>();
    ObjectsMeet<Semaphore>();
    ZwClose(directory);
}

TEST_CASE(NamedFailuresLeaveTheObject)
{
    FailuresLeaveTheObject<Event, Mutex>();
    FailuresLeaveTheObject<Mutex, Semaphore>();
    FailuresLeaveTheObject<Semaphore, Event>();
}

TEST_CASE(DifferentObjectsStayApart)
{
    ObjectsStayApart<Event>();
    ObjectsStayApart<Mutex>();
    ObjectsStayApart<Semaphore>();
}

TEST_CASE(OpenedEventsLearnTheirType)
{
    for (uint32_t type = 0; type < 2; type++) {
        OrvBasWinEvent first, second, third;
        const auto create = [](OrvBasWinEvent &event, uint32_t resetType) {
            return event.Create(static_cast<OrvBasEvent::ResetType>(resetType), false, L"OrvTest", kSession,
                                nullptr);
        };
        CHECK_EQUAL(create(first, type), ORV_S_OK);
        CHECK_EQUAL(create(second, 1 - type), ORV_S_ALREADY_EXISTS);
        CHECK_EQUAL(third.Open(L"OrvTest", kSession, OrvWinEventAllAccess), ORV_S_OK);
        CHECK_EQUAL(Field(first, 1), 1 - type);
        CHECK_EQUAL(Field(second, 1), type); // as asked for, whatever the event is
        CHECK_EQUAL(Field(third, 1), 1 - type);
        CHECK_EQUAL(third.Wait(0), ORV_W_TIMEOUT);
        CHECK_EQUAL(second.Set(), ORV_S_OK);
        CHECK_EQUAL(third.Wait(0), ORV_S_OK);
        CHECK_EQUAL(first.Wait(0), type ? ORV_W_TIMEOUT : ORV_S_OK);

        OrvBasWinEvent mute; // may not ask
        CHECK_EQUAL(mute.Open(L"OrvTest", kSession, OrvWinEventSynchronize), ORV_E_ACCESS_DENIED);
        CHECK_EQUAL(Query(first.GetHandle()).HandleCount, 3u); // and is closed again
    }
}

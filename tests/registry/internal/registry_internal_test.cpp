// What the registry asks of the platform, seen from inside: how often, with which rights, under which names.

#include "orv/env/os_info.h"
#include "orv/registry/registry_handle.h"

#include "fs/test_file.h"
#include "orv/startup/startup.h"
#include "registry/registry_test_key.h"
#include "sync/internal/redirected.h"

IMPORT_SLOT(ZwQueryValueKey, 24);
IMPORT_SLOT(ZwOpenKey, 12);
IMPORT_SLOT(ZwEnumerateValueKey, 24);
IMPORT_SLOT(ZwSaveKey, 8);
IMPORT_SLOT(ZwNotifyChangeKey, 40);

namespace
{

uint32_t calls;
ACCESS_MASK lastAccess;

/// While the result lives, calls of an imported function are counted.
template <typename... Parameters>
Redirected<NTSTATUS NTAPI(Parameters...)> Count(NTSTATUS(NTAPI *&slot)(Parameters...))
{
    return {slot, [](Parameters... arguments) {
                calls++;
                return Redirected<NTSTATUS NTAPI(Parameters...)>::original(arguments...);
            }};
}

NTSTATUS NTAPI NoteAccess(HANDLE *key, ACCESS_MASK access, const OBJECT_ATTRIBUTES *attributes)
{
    lastAccess = access;
    return Redirected<decltype(ZwOpenKey)>::original(key, access, attributes);
}

ULONG lastFilter;

NTSTATUS NTAPI NoteFilter(HANDLE, HANDLE, PVOID, PVOID, IO_STATUS_BLOCK *, ULONG filter, BOOLEAN, PVOID,
                          ULONG, BOOLEAN)
{
    lastFilter = filter;
    return STATUS_PENDING;
}

struct Started {
    Started() { CHECK_EQUAL(InternalInitializeOrvSysDll(), ORV_S_OK); }
};

/// Of a library that is linked without its entry.
class StartedTestKey : Started, public TestKey
{
};

/// Someone else deletes the key "b" just before it is opened.
NTSTATUS NTAPI VanishThenOpen(HANDLE *key, ACCESS_MASK access, const OBJECT_ATTRIBUTES *attributes)
{
    auto *const original = Redirected<decltype(ZwOpenKey)>::original;
    HANDLE other = nullptr;
    const UNICODE_STRING &name = *attributes->ObjectName;
    if (name.Length == 2 && name.Buffer[0] == L'b' && original(&other, DELETE, attributes) == 0) {
        calls++;
        ZwDeleteKey(other);
        ZwClose(other);
    }
    return original(key, access, attributes);
}

} // namespace

TEST_CASE(KeysThatVanishAreDeletedToo)
{
    StartedTestKey key;
    CHECK(OrvSucceeded(key.CreateKeys(L"x\\a")) && OrvSucceeded(key.CreateKeys(L"x\\b")));
    calls = 0;
    {
        const Redirected<decltype(ZwOpenKey)> vanishing(ZwOpenKeySlot, VanishThenOpen);
        CHECK_EQUAL(key.DeleteKey(L"x", true), ORV_S_OK);
    }
    CHECK(calls == 1 && !key.KeyExists(L"x"));
}

TEST_CASE(HivesThatCannotBeSavedLeaveNoFile)
{
    InternalInitializeOrvSysDll();
    OrvBasWinRegistryHandle key(OrvRegistryCurrentUser);
    const wchar_t *const file = L"C:\\windows\\temp\\orv-registry-refused.hiv";
    {
        const auto refused = Refuse<kQuota>(ZwSaveKeySlot);
        CHECK_EQUAL(key.SaveKey(file), kQuotaResult);
    }
    CHECK_EQUAL(TestFileName(file).Delete(), STATUS_OBJECT_NAME_NOT_FOUND);
}

TEST_CASE(SmallValuesAndNamesAreOneCallEach)
{
    StartedTestKey key;
    const auto read = Count(ZwQueryValueKeySlot);
    const auto listed = Count(ZwEnumerateValueKeySlot);
    static char bytes[100000];
    bytes[sizeof bytes - 1] = 1;
    const uint32_t sizes[] = {0, 252, 256, 260, sizeof bytes};
    for (const uint32_t size : sizes) {
        test::Note("size", size);
        const wchar_t name[] = {static_cast<wchar_t>(0x4E00 + size % 0x1000), 0};
        CHECK_EQUAL(key.SetBinaryValue(bytes, size, name), ORV_S_OK);
        calls = 0;
        OrvByteHeapBuffer value;
        CHECK_EQUAL(key.GetBinaryValue(value, name), ORV_S_OK);
        CHECK_EQUAL(calls, size <= 256 ? 1u : 2u);
        CHECK(value.GetSize() == size && memcmp(value.GetElements(), bytes, size) == 0);
    }
    OrvBasWinRegistryEnumerator values;
    CHECK_EQUAL(key.GetValuesEnumeratorImpl(values), ORV_S_OK);
    calls = 0;
    OrvStringzRefBase<wchar_t> found(nullptr);
    for (bool more = true; more;)
        CHECK_EQUAL(values.Next(found, more), ORV_S_OK);
    CHECK_EQUAL(calls, 6u); // the last says that there is none left
}

TEST_CASE(ViewsBecomeAccessBits)
{
    InternalInitializeOrvSysDll();
    const OrvEnvironment::OsFacts actual = OrvEnvironment::OsInfo::GetFacts();
    OrvEnvironment::OsFacts facts = actual;
    facts.processorArchitecture = OrvEnvironment::ProcessorX64; // asked for once, here first
    OrvEnvironment::OsInfo::Initialize(facts, L"");
    const Redirected<decltype(ZwOpenKey)> noted(ZwOpenKeySlot, NoteAccess);
    const struct {
        OrvBasWinRegistryViewModeValues view;
        ACCESS_MASK bits;
    } cases[] = {{OrvRegistryView64, 0x100}, {OrvRegistryView32, 0x200}, {OrvRegistryViewNode, 0}};
    for (const auto &c : cases) {
        OrvBasWinRegistryHandle key(OrvRegistryLocalMachine);
        CHECK_EQUAL(key.SetViewMode(c.view), ORV_S_OK);
        lastAccess = 0;
        key.KeyExists(L"System");
        CHECK_EQUAL(lastAccess, KEY_QUERY_VALUE | c.bits);
    }
    OrvEnvironment::OsInfo::Initialize(actual, L"");
}

TEST_CASE(WatchesOutliveTheirThreadWhereTheSystemLetsThem)
{
    StartedTestKey key;
    OrvBasEvent event;
    CHECK_EQUAL(event.Create(OrvBasEvent::AutoReset, false), ORV_S_OK);
    const OrvEnvironment::OsFacts actual = OrvEnvironment::OsInfo::GetFacts();
    const Redirected<decltype(ZwNotifyChangeKey)> noted(ZwNotifyChangeKeySlot, NoteFilter);
    const struct {
        uint32_t major, minor;
        ULONG filter;
    } cases[] = {{6, 1, 0xF}, {6, 2, 0x1000000F}, {10, 0, 0x1000000F}};
    for (const auto &c : cases) {
        OrvEnvironment::OsFacts facts = actual;
        facts.majorVersion = c.major;
        facts.minorVersion = c.minor;
        OrvEnvironment::OsInfo::Initialize(facts, L"");
        CHECK_EQUAL(key.StartSingleWatchingKeyChange(event, false), ORV_S_OK);
        CHECK_EQUAL(lastFilter, c.filter);
    }
    OrvEnvironment::OsInfo::Initialize(actual, L"");
}

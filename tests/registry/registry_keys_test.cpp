// Keys: made, opened, counted, watched, deleted.

#include "registry/registry_test_key.h"

#include "fs/test_file.h"
#include "harness/usage.h"

namespace
{

constexpr OrvResult kKeyDeleted = static_cast<OrvResult>(0xC00703FA); // ERROR_KEY_DELETED

/// The native key that a handle has open.
HANDLE &NativeKey(OrvBasWinRegistryHandle &handle)
{
    return **reinterpret_cast<HANDLE **>(&handle);
}

/// Makes the key `path` a symbolic link to the key `target`, which exists; both are below the key that is
/// open.
void MakeLink(OrvBasWinRegistryHandle &handle, const wchar_t *path, const wchar_t *target)
{
    constexpr ULONG kCreateLink = 2;
    HANDLE link = nullptr;
    UNICODE_STRING name;
    RtlInitUnicodeString(&name, path);
    const OBJECT_ATTRIBUTES attributes = {sizeof attributes, NativeKey(handle), &name, 0, nullptr, nullptr};
    CHECK_EQUAL(ZwCreateKey(&link, KEY_SET_VALUE, &attributes, 0, nullptr, kCreateLink, nullptr), 0);
    alignas(8) uint8_t bytes[512];
    ULONG needed = 0;
    OrvBasWinRegistryHandle targetKey(handle);
    CHECK_EQUAL(targetKey.OpenKeyIfExists(target), ORV_S_OK);
    CHECK_EQUAL(ZwQueryKey(NativeKey(targetKey), KeyNameInformation, bytes, sizeof bytes, &needed), 0);
    const auto &found = *reinterpret_cast<KEY_NAME_INFORMATION *>(bytes);
    RtlInitUnicodeString(&name, L"SymbolicLinkValue");
    CHECK_EQUAL(ZwSetValueKey(link, &name, 0, OrvRegistryLink, found.Name, found.NameLength), 0);
    ZwClose(link);
}

} // namespace

TEST_CASE(KeysAreMadeOpenedAndDeleted)
{
    TestKey key;
    const test::Usage before = test::CountUsage();
    {
        OrvBasWinRegistryHandle child(key);
        CHECK(!child.IsOpened());
        CHECK_EQUAL(child.OpenKeyIfExists(L"a"), ORV_E_KEY_NOT_FOUND);
        CHECK_EQUAL(child.OpenKeyIfExists(L"a\\b"), ORV_E_KEY_NOT_FOUND);
        CHECK_EQUAL(child.CreateKey(L"a\\b"), ORV_E_FILE_NOT_FOUND);
        CHECK_EQUAL(child.CreateKeys(L"a\\b\\c"), ORV_S_OK);
        CHECK_EQUAL(child.CreateKeys(L"A\\B\\c"), ORV_S_ALREADY_EXISTS);
        CHECK_EQUAL(child.CreateKey(L"a\\d"), ORV_S_OK);
        CHECK_EQUAL(child.OpenOrCreateKey(L"a\\b"), ORV_S_ALREADY_EXISTS);
        CHECK_EQUAL(child.CreateKey(L""), ORV_S_ALREADY_EXISTS); // the key that is open
        CHECK_EQUAL(OrvBasWinRegistryHandle(key).OpenOrCreateKey(L""), ORV_S_ALREADY_EXISTS);
        OrvUtf16HeapString path;
        CHECK_EQUAL(child.GetCurrentKeyPath(path), ORV_S_OK);
        CHECK_TEXT(path.GetCharacters(), L"a\\b");
        // Opening is below the parent, all else below the open key; a failure leaves the open key.
        CHECK(child.KeyExists(L"c") && !child.KeyExists(L"a") && key.KeyExists(L"a"));
        CHECK_EQUAL(child.OpenKeyIfExists(L"none"), ORV_E_KEY_NOT_FOUND);
        CHECK(child.IsOpened() && child.KeyExists(L"c"));
        CHECK_EQUAL(child.OpenOrCreateKey(L"x\\y\\z"), ORV_S_OK);
        child.CloseKey();
        CHECK(!child.IsOpened() && child.KeyExists(L"x\\y\\z"));

        OrvBasWinRegistryKeyInfo info = {};
        CHECK_EQUAL(key.SetValue(OrvRegistryBinary, "12345", 5, L"name"), ORV_S_OK);
        CHECK_EQUAL(key.GetKeyInfo(info), ORV_S_OK);
        CHECK(info.subKeyCount == 2 && info.longestSubKeyName == 1 && info.valueCount == 1);
        CHECK(info.longestValueName == 4 && info.largestValue == 5 && info.lastWriteTime != 0);

        CHECK_EQUAL(key.DeleteKey(L"a", false), ORV_E_ACCESS_DENIED);
        CHECK(key.KeyExists(L"a\\b\\c"));
        CHECK_EQUAL(key.DeleteKey(L"a\\d", false), ORV_S_OK);
        CHECK_EQUAL(key.DeleteKey(L"a", true), ORV_S_OK);
        CHECK_EQUAL(key.DeleteKey(L"a", true), ORV_E_FILE_NOT_FOUND);
        CHECK(!key.KeyExists(L"a"));
        CHECK_EQUAL(child.SetParent(OrvRegistryUsers), ORV_S_OK);
        CHECK(child.KeyExists(L".Default") && !child.KeyExists(L"x"));
        child.SetParent(key);
        CHECK(child.KeyExists(L"x"));
    }
    CHECK_EQUAL(test::CountUsage().handles, before.handles + 1); // HKEY_USERS
}

TEST_CASE(DeepAndOddKeysAreDeletedWithAllBelow)
{
    TestKey key;
    // As deep as keys go, two hundred levels, with two side by side at some.
    OrvUtf16CharHeapBuffer path;
    for (uint32_t i = 0; i < 200; i++) {
        if (i)
            path.Append(L'\\');
        path.Append(L"d");
    }
    CHECK_EQUAL(key.CreateKeys(path.GetValue()), ORV_S_OK);
    for (uint32_t length = 1; length < 100; length += 2) {
        OrvUtf16CharHeapBuffer wide;
        wide.Assign(path.GetValue(), length);
        wide.Append(L"\\e");
        CHECK_EQUAL(key.CreateKey(wide.GetValue()), ORV_S_OK);
    }
    // A name with a terminator in it can be listed, opened and deleted like any other.
    CHECK_EQUAL(key.CreateKey(OrvStringRefBase<wchar_t>(L"d\\z\0y", 5)), ORV_S_OK);
    CHECK(!key.KeyExists(L"d\\z"));
    // A link is deleted, and what it leads to stays.
    CHECK_EQUAL(key.CreateKeys(L"kept\\below"), ORV_S_OK);
    MakeLink(key, L"d\\link", L"kept");
    CHECK(key.KeyExists(L"d\\link\\below"));
    const test::Usage before = test::CountUsage();
    CHECK_EQUAL(key.DeleteKey(L"d", true), ORV_S_OK);
    CHECK(!key.KeyExists(L"d") && key.KeyExists(L"kept\\below"));
    CHECK_USAGE(before);
}

TEST_CASE(NamesAreListedOneCallEach)
{
    TestKey key;
    CHECK_EQUAL(key.CreateKey(L"b"), ORV_S_OK);
    CHECK_EQUAL(key.CreateKey(L"a"), ORV_S_OK);
    CHECK_EQUAL(key.SetDWordValue(1, OrvStringRefBase<wchar_t>(L"x\0y", 3)), ORV_S_OK);
    Names keys;
    Names values;
    CHECK_EQUAL(key.EnumKeys(keys), ORV_S_OK);
    CHECK(keys.count == 2 && keys.text.GetInternal().length == 4);
    CHECK_EQUAL(key.EnumValues(values), ORV_S_OK);
    CHECK(values.count == 1 && values.text.GetInternal().length == 4 && values.text[1] == 0);
    Names refusing;
    refusing.refusedAt = 1;
    CHECK_EQUAL(key.EnumKeys(refusing), ORV_E_DISK_FULL);
    CHECK_EQUAL(refusing.count, 2u);

    OrvBasWinRegistryEnumerator enumerator;
    OrvStringzRefBase<wchar_t> name(nullptr);
    const auto next = [&] {
        bool found = true;
        CHECK_EQUAL(enumerator.Next(name, found), ORV_S_OK);
        return found;
    };
    CHECK(!next());
    CHECK_EQUAL(key.GetValuesEnumeratorImpl(enumerator), ORV_S_OK);
    CHECK(next() && enumerator.GetLength() == 3 && !next());
    CHECK_EQUAL(key.GetChildrenEnumeratorImpl(enumerator), ORV_S_OK);
    CHECK(next());
    CHECK_TEXT(name.characters, L"a");
    OrvUtf16CharHeapBuffer tooLong;
    tooLong.Resize(32767);
    CHECK_EQUAL(key.CreateKey(OrvStringRefBase<wchar_t>(tooLong.GetBuffer(), 32767)), ORV_E_INVALID_NAME);
}

TEST_CASE(LostAndRefusedKeysSaySo)
{
    TestKey key;
    OrvBasWinRegistryHandle child(key);
    OrvBasWinRegistryHandle reader(key);
    CHECK_EQUAL(child.OpenOrCreateKey(L"a"), ORV_S_OK);
    CHECK_EQUAL(reader.OpenKeyIfExists(L"a", OrvRegistryQueryValue), ORV_S_OK);
    CHECK_EQUAL(reader.SetDWordValue(1, L"x"), ORV_E_ACCESS_DENIED);

    CHECK_EQUAL(key.DeleteKey(L"a", false), ORV_S_OK);
    OrvBasWinRegistryKeyInfo info = {};
    uint32_t number = 7;
    Names names;
    const OrvResult lost[] = {child.GetKeyInfo(info), child.GetDWordValueWithDefault(number, L"x", 1),
                              child.SetDWordValue(1, L"x"), child.EnumKeys(names), child.CreateKey(L"b")};
    for (const OrvResult result : test::Rows(lost))
        CHECK_EQUAL(result, kKeyDeleted);
    CHECK_EQUAL(number, 7u);

    CHECK_EQUAL(child.OpenOrCreateKey(L"c"), ORV_S_OK);
    ZwClose(NativeKey(child));
    CHECK_EQUAL(child.SetDWordValue(1, L"x"), ORV_E_INVALID_HANDLE);
    CHECK(!child.ValueExists(L"x") && !child.KeyExists(L""));
}

TEST_CASE(ChangesAreNoticedOnce)
{
    TestKey key;
    CHECK_EQUAL(key.CreateKey(L"a"), ORV_S_OK);
    OrvBasWinRegistryHandle child(key);
    OrvBasWinRegistryHandle watcher(key);
    OrvBasEvent parentEvent;
    CHECK_EQUAL(parentEvent.Create(OrvBasEvent::AutoReset, false), ORV_S_OK);
    CHECK_EQUAL(watcher.StartSingleWatchingKeyChange(parentEvent, false), ORV_S_OK);
    CHECK_EQUAL(key.OpenOrCreateKey(kTestKey), ORV_S_ALREADY_EXISTS); // which closes what was watched
    CHECK_EQUAL(parentEvent.Wait(10000), ORV_S_OK);
    CHECK_EQUAL(watcher.StartSingleWatchingKeyChange(parentEvent, false), ORV_S_OK);
    CHECK_EQUAL(child.OpenOrCreateKey(L"a"), ORV_S_ALREADY_EXISTS);
    for (uint32_t subtree = 0; subtree < 2; subtree++) {
        OrvBasEvent event;
        CHECK_EQUAL(event.Create(OrvBasEvent::AutoReset, false), ORV_S_OK);
        CHECK_EQUAL(key.StartSingleWatchingKeyChange(event, subtree != 0), ORV_S_OK);
        CHECK_EQUAL(event.Wait(0), ORV_W_TIMEOUT);
        CHECK_EQUAL(child.SetDWordValue(subtree, L"below"), ORV_S_OK);
        CHECK_EQUAL(event.Wait(subtree ? 10000 : 0), subtree ? ORV_S_OK : ORV_W_TIMEOUT);
        CHECK_EQUAL(key.SetDWordValue(subtree, L"here"), ORV_S_OK);
        CHECK_EQUAL(event.Wait(subtree ? 0 : 10000), subtree ? ORV_W_TIMEOUT : ORV_S_OK);
    }
    CHECK_EQUAL(parentEvent.Wait(0), ORV_S_OK);
}

TEST_CASE(ViewsHaveTheirRules)
{
    typedef OrvBasWinRegistryHandle::ViewMode Mode;
    const bool supported = OrvBasWinRegistryHandle::IsWow64ViewModeSupported();
    CHECK_TEXT(OrvBasWinRegistryHandle::GetWow6432NodeName(), L"Wow6432Node");
    TestKey key;
    CHECK_EQUAL(key.SetViewMode(OrvRegistryViewNode), ORV_E_NOT_SUPPORTED); // it is open
    CHECK_EQUAL(key.SetViewMode(Mode(0x10)), ORV_S_OK);                     // the same view
    CHECK_EQUAL(key.GetViewMode().GetBits(), 0x10u);
    key.CloseKey();
    CHECK_EQUAL(key.SetViewMode(OrvRegistryViewNode), ORV_E_VIEW_ROOT);
    const OrvResult expected = supported ? ORV_S_OK : ORV_E_VIEW_NOT_SUPPORTED;
    CHECK_EQUAL(key.SetViewMode(OrvRegistryView64), expected);
    CHECK_EQUAL(key.SetViewMode(OrvRegistryView32), expected);

    OrvBasWinRegistryHandle machine(OrvRegistryLocalMachine);
    CHECK_EQUAL(machine.SetViewMode(OrvRegistryViewNode), ORV_S_OK);
    CHECK_EQUAL(machine.SetParent(OrvRegistryCurrentUser), ORV_E_VIEW_ROOT);
    OrvBasWinRegistryHandle child(machine);
    CHECK_EQUAL(child.GetViewMode().GetBits(), uint32_t(OrvRegistryViewNode));
    CHECK_EQUAL(child.SetViewMode(OrvRegistryViewDefault), ORV_E_NOT_SUPPORTED); // the parent's is another

    // What is made in that view stands under the path part, and is read back without it.
    CHECK(OrvSucceeded(machine.OpenOrCreateKey(L"Software\\OrvRegistryViewTest")));
    OrvBasWinRegistryHandle plain(OrvRegistryLocalMachine);
    CHECK(plain.KeyExists(L"SOFTWARE\\Wow6432Node\\OrvRegistryViewTest"));
    OrvBasWinRegistryRootType root = OrvRegistryNoRoot;
    OrvUtf16HeapString path;
    uint32_t access = 0x20119;
    CHECK_EQUAL(machine.SplitCurrentKeyName(root, path, access), ORV_S_OK);
    CHECK_EQUAL(static_cast<uint32_t>(root), static_cast<uint32_t>(OrvRegistryLocalMachine));
    CHECK_TEXT(path.GetCharacters(), L"SOFTWARE\\ORVREGISTRYVIEWTEST");
    CHECK_EQUAL(access, 0x20219u);

    // Only the way from the root decides: not what a key below is called.
    CHECK_EQUAL(machine.CreateKeys(L"Software\\x"), ORV_S_OK);
    CHECK(machine.KeyExists(L"Software\\x") && !machine.KeyExists(L"Software\\Wow6432Node"));
    machine.CloseKey();
    child.SetParent(machine);
    CHECK(child.KeyExists(L"Software\\OrvRegistryViewTest\\Software\\x"));
    CHECK_EQUAL(child.OpenKeyIfExists(L"Software"), ORV_S_OK);
    CHECK(child.KeyExists(L"OrvRegistryViewTest\\Software"));
    CHECK_EQUAL(child.DeleteKey(L"OrvRegistryViewTest", true), ORV_S_OK);
    CHECK(!plain.KeyExists(L"SOFTWARE\\Wow6432Node\\OrvRegistryViewTest"));
}

TEST_CASE(TransactionsWorkOrAreNotSupported)
{
    TestKey key;
    OrvWinTransaction transaction;
    const OrvResult created = transaction.Create();
    CHECK_EQUAL(created, OrvSucceeded(created) ? ORV_S_OK : ORV_E_NOT_SUPPORTED);
    OrvBasWinRegistryHandle child(key);
    OrvBasWinRegistryValueType type = OrvRegistryNone;
    OrvByteHeapBuffer bytes;
    OrvBasWinRegistryKeyInfo info = {};
    if (OrvSucceeded(created)) {
        CHECK_EQUAL(key.CreateKeyTransacted(transaction, L"a"), ORV_S_OK);
        CHECK(key.KeyExistsTransacted(transaction, L"a") && !key.KeyExists(L"a"));
        CHECK_EQUAL(transaction.Rollback(), ORV_S_OK);
        CHECK(!key.KeyExists(L"a"));
        return;
    }
    CHECK_EQUAL(transaction.Commit(), ORV_E_INVALID_HANDLE);
    const OrvResult results[] = {
        key.CreateKeyTransacted(transaction, L"a"),
        key.CreateKeysTransacted(transaction, L"a\\b"),
        child.OpenOrCreateKeyTransacted(transaction, L"a"),
        child.OpenKeyIfExistsTransacted(transaction, L""),
        key.DeleteKeyTransacted(transaction, L"", true),
        key.GetKeyInfoTransacted(transaction, info),
        key.DeleteValueTransacted(transaction, L"x"),
        key.SetValueTransacted(transaction, type, "", 0, L"x"),
        key.QueryValueTransacted(transaction, type, bytes, L"x"),
    };
    for (const OrvResult result : results)
        CHECK_EQUAL(result, ORV_E_NOT_SUPPORTED);
    CHECK(!key.KeyExistsTransacted(transaction, L"") && !key.ValueExistsTransacted(transaction, L"x"));
    CHECK(!key.KeyExists(L"a") && !key.ValueExists(L"x"));
}

TEST_CASE(HivesAreSavedLoadedAndUnloaded)
{
    const wchar_t *const file = L"C:\\windows\\temp\\orv-registry-test.hiv";
    TestKey key;
    CHECK_EQUAL(OrvBasWinRegistryHandle::EnablePrivilege(OrvRegistryBackupPrivilege, true), ORV_S_OK);
    CHECK_EQUAL(OrvBasWinRegistryHandle::EnablePrivilege(OrvRegistryRestorePrivilege, true), ORV_S_OK);
    CHECK(OrvFailed(OrvBasWinRegistryHandle::EnablePrivilege(OrvBasWinRegistryPrivilege(3), true)));
    CHECK_EQUAL(key.CreateKeys(L"a\\b"), ORV_S_OK);
    OrvBasWinRegistryHandle child(key);
    CHECK_EQUAL(child.OpenOrCreateKey(L"a"), ORV_S_ALREADY_EXISTS);
    CHECK_EQUAL(child.SetDWordValue(42, L"n"), ORV_S_OK);
    CHECK_EQUAL(child.SaveKey(file), ORV_S_OK);
    CHECK_EQUAL(child.SaveKey(file), ORV_E_ALREADY_EXISTS);

    OrvBasWinRegistryHandle hive(OrvRegistryUsers);
    CHECK_EQUAL(hive.LoadKey(file), ORV_E_INVALID_NAME);
    CHECK_EQUAL(hive.UnLoadKey(), ORV_E_INVALID_NAME);
    CHECK_EQUAL(hive.OpenKeyIfExists(L".Default"), ORV_S_OK);
    CHECK_EQUAL(hive.LoadKey(L"OrvHive", file), ORV_S_OK);
    CHECK(!hive.IsOpened());
    OrvBasWinRegistryHandle reader(OrvRegistryUsers);
    uint32_t number = 0;
    CHECK_EQUAL(reader.OpenKeyIfExists(L"OrvHive"), ORV_S_OK);
    CHECK_EQUAL(reader.GetDWordValue(number, L"n"), ORV_S_OK);
    CHECK_EQUAL(number, 42u);
    CHECK(reader.KeyExists(L"b"));
    reader.CloseKey();
    CHECK_EQUAL(hive.UnLoadKey(), ORV_S_OK);
    CHECK(!hive.KeyExists(L"OrvHive"));

    OrvUtf16HeapString path;
    CHECK_EQUAL(child.RestoreKey(L"C:\\windows\\temp\\none\\..\\orv-no-such-file", &path),
                ORV_E_FILE_NOT_FOUND);
    CHECK_TEXT(path.GetCharacters(), L"C:\\windows\\temp\\orv-no-such-file");
    CHECK_EQUAL(child.RestoreKey(file), ORV_S_OK);
    CHECK_EQUAL(TestFileName(file).Delete(), 0);
}

// Where the 32-bit view's path part goes, and native names read back.

#include "registry/registry_path.h"

#include "harness/test.h"
#include "nt/nt.h"
#include "orv/runtime/result.h"

TEST_CASE(PathPartOfTheViewHasItsPlace)
{
    const struct {
        OrvBasWinRegistryRootType root;
        const wchar_t *path;
        uint32_t position;
    } cases[] = {
        {OrvRegistryLocalMachine, L"Software\\x", 8},
        {OrvRegistryLocalMachine, L"SOFTWAREX\\x", 0},
        {OrvRegistryLocalMachine, L"SOFTWARE\\wow6432node\\x", 0},
        {OrvRegistryLocalMachine, L"SOFTWARE\\Wow6432NodeX", 8},
        {OrvRegistryCurrentUser, L"software\\x", 0},
        {OrvRegistryUsers, L"S-1-5-18\\Software\\x", 17},
        {OrvRegistryUsers, L"S-1-5-18_Classes\\x", 16},
        {OrvRegistryUsers, L"S-1_Classes\\Wow6432Node", 0},
    };
    for (const auto &c : test::Rows(cases)) {
        uint32_t length = 0;
        while (c.path[length])
            length++;
        CHECK_EQUAL(detail::FindWow6432NodePosition(c.root, c.path, length), c.position);
    }
}

TEST_CASE(NativeNamesAreReadBack)
{
    UNICODE_STRING own = {};
    CHECK_EQUAL(RtlFormatCurrentUserKeyPath(&own), 0);
    const OrvStringRefBase<wchar_t> user(own.Buffer, own.Length / 2);
    const struct {
        bool isOwn; ///< behind the calling user's key
        const wchar_t *name;
        OrvResult result;
        OrvBasWinRegistryRootType root;
        const wchar_t *path;
        uint32_t access;
    } cases[] = {
        {false, L"\\Registry\\Machine\\Software\\x", 0, OrvRegistryLocalMachine, L"SOFTWARE\\X", 0x101},
        {false, L"\\REGISTRY\\MACHINE\\SOFTWARE\\Wow6432Node\\a\\Wow6432Node", 0, OrvRegistryLocalMachine,
         L"SOFTWARE\\A\\WOW6432NODE", 0x201},
        {false, L"\\REGISTRY\\MACHINE\\SOFTWARE\\Wow6432NodeX\\Wow6432Node", 0, OrvRegistryLocalMachine,
         L"SOFTWARE\\WOW6432NODEX\\WOW6432NODE", 0x101},
        {false, L"\\REGISTRY\\USER\\S-1-5-18\\x", 0, OrvRegistryUsers, L"S-1-5-18\\X", 0x101},
        {true, L"", 0, OrvRegistryCurrentUser, L"", 0x101},
        {true, L"_Classes\\x", 0, OrvRegistryClassesRoot, L"X", 0x101},
        {false, L"\\REGISTRY\\MACHINERY", ORV_E_NOT_PROVIDED, OrvRegistryNoRoot, L"before", 0x101},
    };
    for (const auto &c : test::Rows(cases)) {
        OrvUtf16CharHeapBuffer name;
        if (c.isOwn)
            name.Append(user.characters, user.length);
        name.Append(c.name);
        OrvBasWinRegistryRootType root = OrvRegistryNoRoot;
        OrvUtf16CharHeapBuffer path;
        path.Assign(L"before");
        uint32_t access = 0x101;
        CHECK_EQUAL(
            detail::SplitNativeKeyName(name.GetValue(), name.GetInternal().length, root, path, access),
            c.result);
        CHECK_EQUAL(static_cast<uint32_t>(root), static_cast<uint32_t>(c.root));
        CHECK_TEXT(path.GetValue(), c.path);
        CHECK_EQUAL(access, c.access);
    }
    RtlFreeUnicodeString(&own);
}

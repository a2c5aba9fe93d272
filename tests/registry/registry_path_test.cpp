// The text form of locations.

#include "orv/registry/registry_handle.h"

#include "harness/memory.h"
#include "harness/test.h"
#include "orv/runtime/result.h"
#include "orv/text/heap_string.h"
#include "orv/text/string.h"

TEST_CASE(LocationsAreSplitAndCombined)
{
    const struct {
        const wchar_t *text;
        OrvBasWinRegistryRootType root;
        const wchar_t *path;
        const wchar_t *value;    ///< null: none
        const wchar_t *combined; ///< null: as the text
    } cases[] = {
        {L"HKLM\\SOFTWARE\\Orv\\\\Ver", OrvRegistryLocalMachine, L"SOFTWARE\\Orv", L"Ver", nullptr},
        {L"HKEY_LOCAL_MACHINE\\SOFTWARE", OrvRegistryLocalMachine, L"SOFTWARE", nullptr, L"HKLM\\SOFTWARE"},
        {L"hkCu", OrvRegistryCurrentUser, L"", nullptr, L"HKCU"},
        {L"HKCU\\\\Name", OrvRegistryCurrentUser, L"", L"Name", nullptr},
        {L"HKCU\\a\\\\", OrvRegistryCurrentUser, L"a", L"", nullptr},
        {L"HKCU\\a\\\\b\\\\c\\d", OrvRegistryCurrentUser, L"a", L"b\\\\c\\d", nullptr},
        {L"HKU\\a\\", OrvRegistryUsers, L"a\\", nullptr, nullptr},
        {L"hkey_classes_root\\.txt", OrvRegistryClassesRoot, L".txt", nullptr, L"HKCR\\.txt"},
    };
    for (const auto &c : test::Rows(cases)) {
        OrvBasWinRegistryRootType root = OrvRegistryNoRoot;
        OrvUtf16HeapString path;
        OrvUtf16HeapString value;
        bool hasValue = !c.value;
        const bool isCounted = &c - cases & 1;
        const uint32_t length = OrvGetStringSizeInElements(c.text);
        const OrvStringRefBase<wchar_t> given(test::GuardedCopy(c.text, length + !isCounted),
                                              isCounted ? length : OrvTerminated);
        CHECK_EQUAL(OrvBasWinRegistryHandle::SplitRegistryPath(root, path, hasValue, value, given), ORV_S_OK);
        CHECK_EQUAL(static_cast<uint32_t>(root), static_cast<uint32_t>(c.root));
        CHECK_TEXT(path.GetCharacters(), c.path);
        CHECK_EQUAL(hasValue, c.value != nullptr);
        CHECK_TEXT(value.GetCharacters(), c.value ? c.value : L"");
        OrvUtf16HeapString text;
        CHECK_EQUAL(c.value ? OrvBasWinRegistryHandle::CombineRegistryPath(text, c.root, c.path, c.value)
                            : OrvBasWinRegistryHandle::CombineRegistryPath(text, c.root, c.path),
                    ORV_S_OK);
        CHECK_TEXT(text.GetCharacters(), c.combined ? c.combined : c.text);
    }
    const wchar_t *const refused[] = {L"", L"HKLMX\\a", L"HKL\\a", L"\\HKLM", L"SOFTWARE", nullptr};
    for (const wchar_t *const text : refused) {
        OrvBasWinRegistryRootType root = OrvRegistryUsers;
        OrvUtf16HeapString path;
        path.Set(L"before", 6);
        bool hasValue = true;
        CHECK_EQUAL(OrvBasWinRegistryHandle::SplitRegistryPath(root, path, hasValue, path, text),
                    ORV_E_INVALID_ARGUMENT);
        CHECK(root == OrvRegistryUsers && hasValue);
        CHECK_TEXT(path.GetCharacters(), L"before");
    }
    OrvUtf16HeapString text;
    OrvBasWinRegistryHandle::CombineRegistryPath(text, static_cast<OrvBasWinRegistryRootType>(1), L"a", L"");
    CHECK_TEXT(text.GetCharacters(), L"\\a\\\\");
}

// Paths as text: tables of each rule. Rules that hold for every path are the fuzz target's.

#include "orv/fs/path.h"

#include "fs/path_forms.h"

namespace
{

using namespace OrvBasPath;
using test::Operation;
using test::Reference;

struct Case {
    const wchar_t *path;
    const wchar_t *expected;
};

uint32_t LengthOf(const wchar_t *text)
{
    uint32_t length = 0;
    while (text[length])
        length++;
    return length;
}

template <uint32_t N>
void CheckAll(const Case (&cases)[N], const Operation &operation, bool needsNoRoomWhenEmpty = false)
{
    for (const Case &c : cases) {
        test::Note("case", &c - cases);
        test::CheckPath(c.path, c.expected, 0, operation, needsNoRoomWhenEmpty);
        // In place: the path stands where the result goes.
        OrvUtf16CharHeapBuffer own;
        own.Assign(c.path);
        CHECK_EQUAL(operation.heap(own, own.GetValue(), OrvTerminated), ORV_S_OK);
        CHECK_TEXT(own.GetValue(), c.expected);
    }
}

} // namespace

TEST_CASE(RootsAreMeasured)
{
    const struct {
        const wchar_t *path;
        uint32_t length;
    } cases[] = {
        {L"", 0},
        {L"a", 0},
        {L"/", 1},
        {L"\\a", 1},
        {L"D:", 2},
        {L"D:x", 2},
        {L"D:\\", 3},
        {L"D:/x", 3},
        {L"::\\x", 3},
        {L"\\:x", 2},
        {L"\\\\", 2},
        {L"\\\\srv", 5},
        {L"\\\\srv\\", 6},
        {L"\\\\srv\\sh", 8},
        {L"\\/srv\\sh\\", 8},
        {L"\\\\?\\D:\\x", 6},
        {L"\\\\\\", 3},
        {L"\\\\\\\\x", 3},
        {L"\\\\\\s\\x", 4},
    };
    for (const auto &c : test::Rows(cases)) {
        const uint32_t length = LengthOf(c.path);
        CHECK_EQUAL(GetPathRootLength(test::GuardedCopy(c.path, length), length), c.length);
        CHECK_EQUAL(GetPathRootLength(c.path), c.length);
        CHECK_EQUAL(IsPathRooted(c.path), c.length != 0);
        wchar_t root[16] = {};
        for (uint32_t i = 0; i < c.length; i++)
            root[i] = c.path[i];
        test::CheckForms(
            root, 0,
            [&](_ORV_UTF16CHAR_STR &out, unsigned int *required) {
                return GetPathRoot(out, c.path, required);
            },
            [&](OrvUtf16CharHeapBuffer &out) { return GetPathRoot(out, c.path); },
            [&](const Reference &out) { return GetPathRoot(out, c.path); });
    }
    CHECK_EQUAL(GetPathRootLength(nullptr), 0u);
}

TEST_CASE(VolumesStandBeforeTheColon)
{
    const struct {
        const wchar_t *path;
        const wchar_t *expected;
        OrvResult result;
    } cases[] = {
        {L"D:\\x", L"D:\\", 0},
        {L":", L":\\", 0},
        {L"long:x:y", L"long:\\", 0},
        {L"", L"", ORV_E_INVALID_DATA},
        {L"D\\x", L"", ORV_E_INVALID_DATA},
    };
    for (const auto &c : test::Rows(cases)) {
        test::CheckPath(c.path, c.expected, c.result,
                        {GetVolumeFromPath, GetVolumeFromPath, GetVolumeFromPath}, true);
    }
}

TEST_CASE(PathsAreSplit)
{
    const Case names[] = {
        {L"", L""},          {L"a", L"a"},         {L"D:", L""},   {L"z:", L""},
        {L"1:", L"1:"},      {L"D:foo", L"D:foo"}, {L"dir/", L""}, {L"D:\\a\\b.c", L"b.c"},
        {L"a/b\\c/d", L"d"}, {L"\\", L""},
    };
    const Case extensions[] = {
        {L"", L""},        {L"a", L""},      {L"a.txt", L".txt"}, {L"a.", L""},
        {L"a.b.c", L".c"}, {L"d.x\\f", L""}, {L"d.x/f", L""},     {L"c.x:f", L""},
        {L".a", L".a"},    {L".", L""},      {L"a..", L""},       {L"x\\.b", L".b"},
    };
    const Case bases[] = {
        {L"", L""},        {L"a.txt", L"a"},      {L".profile", L""}, {L"a.b.c", L"a.b"},
        {L"d.x\\f", L"f"}, {L"D:\\d\\f.c", L"f"}, {L"D:f.c", L"f"},   {L"a.", L"a"},
        {L"dir\\", L""},   {L"d.x/", L""},
    };
    const Case directories[] = {
        {L"", L""},          {L"foo", L""},        {L"\\foo", L"\\"},
        {L"/foo", L"/"},     {L"D:/foo", L"D:\\"}, {L"D:\\a\\\\b", L"D:\\a"},
        {L"\\\\foo", L"\\"}, {L"\\", L"\\"},       {L"a\\", L"a"},
        {L"D:\\", L"D:\\"},  {L":\\x", L":"},
    };
    CheckAll(names, {GetFilename, GetFilename, GetFilename});
    CheckAll(extensions, {GetFilenameExtension, GetFilenameExtension, GetFilenameExtension});
    CheckAll(bases, {GetFilenameWithoutExtension, GetFilenameWithoutExtension, GetFilenameWithoutExtension});
    CheckAll(directories,
             {GetDirectoryPathFromFilenamePath, GetDirectoryPathFromFilenamePath,
              GetDirectoryPathFromFilenamePath},
             true);
    for (const Case &c : extensions)
        CHECK_EQUAL(HasExtension(c.path), *c.expected != 0);

    unsigned int required = 99;
    _ORV_UTF16CHAR_STR none = {0, 0, nullptr};
    CHECK_EQUAL(GetDirectoryPathFromFilenamePath(none, L"", 0, &required), ORV_S_OK);
    CHECK_EQUAL(required, 0u);
    none.capacity = 8;
    CHECK_EQUAL(GetFilename(none, L"x"), ORV_E_INVALID_ARGUMENT);
}

TEST_CASE(PathsAreCombinedAndExtensionsChanged)
{
    const struct {
        const wchar_t *first;
        const wchar_t *second;
        const wchar_t *combined;
        const wchar_t *changed;
    } cases[] = {
        {L"", L"", L"", nullptr},
        {L"", L"b", L"b", nullptr},
        {L"a", L"", L"a", L"a."},
        {L"D:\\a", L"E:\\b", L"E:\\b", L"D:\\a.E:\\b"},
        {L"D:\\a", L"E:", L"E:", L"D:\\a.E:"},
        {L"D:\\a", L"E:b", L"D:\\a\\E:b", L"D:\\a.E:b"},
        {L"rel", L"\\x", L"\\x", L"rel.\\x"},
        {L"D:\\dir", L"\\x", L"D:\\x", L"D:\\dir.\\x"},
        {L"D:", L"/x", L"D:/x", L"D:"},
        {L"D:x", L"\\y", L"\\y", L"D:x.\\y"},
        {L"\\\\s\\h", L"\\y", L"\\y", L"\\\\s\\h.\\y"},
        {L"D:\\dir", L"\\\\s", L"\\\\s", L"D:\\dir.\\\\s"},
        {L"a/", L".\\..\\b", L"a/.\\..\\b", L"a/"},
        {L"a", L".b", L"a\\.b", L"a.b"},
        {L"a.txt", L"", L"a.txt", L"a."},
        {L"a.b.c", L"d", L"a.b.c\\d", L"a.b.d"},
        {L"d.x\\f", L"txt", L"d.x\\f\\txt", L"d.x\\f.txt"},
        {L"dir\\", L"txt", L"dir\\txt", L"dir\\"},
        {L"d.x:", L"t", L"d.x:\\t", L"d.x:"},
        {L".", L"x", L".\\x", L".x"},
    };
    for (const auto &c : test::Rows(cases)) {
        const uint32_t firstLength = LengthOf(c.first);
        const uint32_t secondLength = LengthOf(c.second);
        const wchar_t *const first = test::GuardedCopy(c.first, firstLength);
        const wchar_t *const second = test::GuardedCopy(c.second, secondLength);
        test::CheckForms(
            c.combined, 0,
            [&](_ORV_UTF16CHAR_STR &out, unsigned int *required) {
                return CombinePaths(out, first, second, firstLength, secondLength, required);
            },
            [&](OrvUtf16CharHeapBuffer &out) { return CombinePaths(out, c.first, c.second); },
            [&](const Reference &out) { return CombinePaths(out, c.first, c.second); });
        if (c.changed)
            test::CheckForms(
                c.changed, 0,
                [&](_ORV_UTF16CHAR_STR &out, unsigned int *required) {
                    return ChangeExtension(out, first, second, firstLength, secondLength, required);
                },
                [&](OrvUtf16CharHeapBuffer &out) { return ChangeExtension(out, c.first, c.second); },
                [&](const Reference &out) { return ChangeExtension(out, c.first, c.second); });

        // Either text may stand in the buffer that is written to.
        OrvUtf16CharHeapBuffer buffer;
        buffer.Assign(c.first);
        CHECK_EQUAL(CombinePaths(buffer, buffer.GetValue(), c.second), ORV_S_OK);
        CHECK_TEXT(buffer.GetValue(), c.combined);
        buffer.ReserveElements(40);
        buffer.Assign(c.second);
        CHECK_EQUAL(CombinePaths(OrvMakeMutableStringRef(buffer), c.first, buffer.GetValue()), ORV_S_OK);
        CHECK_TEXT(buffer.GetValue(), c.combined);
        buffer.Assign(c.second);
        CHECK_EQUAL(CombinePaths(buffer, c.first, buffer.GetValue()), ORV_S_OK);
        CHECK_TEXT(buffer.GetValue(), c.combined);
    }
    wchar_t untouched[] = L"as it was";
    _ORV_UTF16CHAR_STR out = {9, 10, untouched};
    CHECK_EQUAL(ChangeExtension(out, L"", L"x"), ORV_S_OK);
    CHECK(test::IsText(out, L"as it was"));

    OrvUtf16CharHeapBuffer own;
    own.Assign(L"a");
    const test::RefusingHeap refusing;
    CHECK_EQUAL(CombinePaths(own, own.GetValue(), L"b"), ORV_E_OUT_OF_MEMORY);
    CHECK_EQUAL(CombinePaths(OrvMakeMutableStringRef(own), own.GetValue(), L"b"), ORV_E_OUT_OF_MEMORY);
    CHECK_TEXT(own.GetValue(), L"a");
}

TEST_CASE(PartsAreAppended)
{
    OrvUtf16CharHeapBuffer own;
    CHECK_EQUAL(AppendPath(own, L"ab"), ORV_S_OK);
    CHECK_EQUAL(AppendPath(own, own.GetValue() + 1), ORV_S_OK);
    CHECK_TEXT(own.GetValue(), L"ab\\b");
    CHECK_EQUAL(AppendPath(own, L"\\c/"), ORV_S_OK);
    CHECK_EQUAL(AppendPath(own, L""), ORV_S_OK);
    CHECK_TEXT(own.GetValue(), L"ab\\b\\\\c/");
}

// Paths as text: tables of each rule. Rules that hold for every path, and the forms of an operation, are the
// fuzz target's.

#include "orv/fs/path.h"

#include "harness/test.h"
#include "orv/runtime/result.h"

namespace
{

using namespace OrvBasPath;
using Buffer = OrvUtf16CharHeapBuffer;

struct Case {
    const wchar_t *path;
    const wchar_t *expected;
    OrvResult result = ORV_S_OK;
};

template <uint32_t N>
void CheckAll(const Case (&cases)[N], OrvResult (*operation)(Buffer &, const wchar_t *, uint32_t),
              OrvResult (*byReference)(const OrvMutableStringRefBase2<wchar_t> &,
                                       const OrvStringRefBase<wchar_t> &))
{
    for (const Case &c : test::Rows(cases)) {
        Buffer buffer;
        CHECK_EQUAL(operation(buffer, c.path, OrvTerminated), c.result);
        CHECK_TEXT(buffer.GetValue(), c.expected);
        // In place: the path stands where the result goes.
        buffer.Assign(c.path);
        CHECK_EQUAL(operation(buffer, buffer.GetValue(), OrvTerminated), c.result);
        CHECK_TEXT(buffer.GetValue(), c.expected);
        buffer.Assign(c.path);
        CHECK_EQUAL(byReference(OrvMakeMutableStringRef(buffer), buffer.GetValue()), c.result);
        CHECK_TEXT(buffer.GetValue(), c.expected);
    }
}

} // namespace

TEST_CASE(RootsAreMeasured)
{
    const struct {
        const wchar_t *path;
        uint32_t length;
    } cases[] = {
        {L"/", 1},           {L"D:x", 2},          {L"D:\\", 3},
        {L"\\\\srv\\sh", 8}, {L"\\/srv\\sh\\", 8}, {L"\\\\?\\D:\\x", 6},
        {L"\\\\\\\\x", 3},   {L"\\\\\\s\\x", 4},
    };
    for (const auto &c : test::Rows(cases)) {
        CHECK_EQUAL(GetPathRootLength(c.path), c.length);
        CHECK_EQUAL(IsPathRooted(c.path), c.length != 0);
        Buffer root;
        CHECK_EQUAL(GetPathRoot(root, c.path), ORV_S_OK);
        CHECK(root.GetInternal().length == c.length &&
              __builtin_memcmp(root.GetValue(), c.path, 2 * c.length) == 0);
        CHECK_EQUAL(GetPathRoot(OrvMakeMutableStringRef(root), c.path), ORV_S_OK);
        CHECK(root.GetInternal().length == c.length &&
              __builtin_memcmp(root.GetValue(), c.path, 2 * c.length) == 0);
    }
    CHECK_EQUAL(GetPathRootLength(nullptr), 0u);
}

TEST_CASE(PathsAreSplit)
{
    const Case names[] = {
        {L"", L""}, {L"D:", L""}, {L"1:", L"1:"}, {L"D:foo", L"D:foo"}, {L"dir/", L""}, {L"a/b\\c/d", L"d"},
    };
    const Case extensions[] = {
        {L"", L""},      {L"a.b.c", L".c"}, {L"a.", L""},  {L"d.x\\f", L""},
        {L"c.x:f", L""}, {L".a", L".a"},    {L"a..", L""}, {L"x\\.b", L".b"},
    };
    const Case bases[] = {
        {L"", L""},        {L".profile", L""}, {L"a.b.c", L"a.b"},
        {L"d.x\\f", L"f"}, {L"D:f.c", L"f"},   {L"d.x/", L""},
    };
    const Case directories[] = {
        {L"", L""},          {L"foo", L""},        {L"\\foo", L"\\"},
        {L"/foo", L"/"},     {L"D:/foo", L"D:\\"}, {L"D:\\a\\\\b", L"D:\\a"},
        {L"\\\\foo", L"\\"}, {L"\\", L"\\"},       {L"a\\", L"a"},
        {L"D:\\", L"D:\\"},  {L":\\x", L":"},
    };
    const Case volumes[] = {
        {L"D:\\x", L"D:\\"},
        {L":", L":\\"},
        {L"D\\x", L"", ORV_E_INVALID_DATA},
    };
    CheckAll(names, GetFilename, GetFilename);
    CheckAll(extensions, GetFilenameExtension, GetFilenameExtension);
    CheckAll(bases, GetFilenameWithoutExtension, GetFilenameWithoutExtension);
    CheckAll(directories, GetDirectoryPathFromFilenamePath, GetDirectoryPathFromFilenamePath);
    CheckAll(volumes, GetVolumeFromPath, GetVolumeFromPath);
    for (const Case &c : extensions)
        CHECK_EQUAL(HasExtension(c.path), *c.expected != 0);

    unsigned int required = 99;
    _ORV_UTF16CHAR_STR none = {0, 0, nullptr};
    CHECK_EQUAL(GetDirectoryPathFromFilenamePath(none, L"", 0, &required), ORV_S_OK);
    CHECK_EQUAL(required, 0u);
    none.capacity = 8;
    CHECK_EQUAL(GetFilename(none, L"x"), ORV_E_INVALID_ARGUMENT);
    wchar_t characters[] = L"????";
    _ORV_UTF16CHAR_STR small = {77, 4, characters};
    CHECK_EQUAL(GetFilename(small, L"a\\name", OrvTerminated, &required), ORV_E_BUFFER_TOO_SMALL);
    CHECK_EQUAL(required, 5u);
    CHECK_EQUAL(small.length, 77u);
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
        {L"a", L"", L"a", L"a."},
        {L"D:\\a", L"E:\\b", L"E:\\b", L"D:\\a.E:\\b"},
        {L"D:\\a", L"E:b", L"D:\\a\\E:b", L"D:\\a.E:b"},
        {L"rel", L"\\x", L"\\x", L"rel.\\x"},
        {L"D:\\dir", L"\\x", L"D:\\x", L"D:\\dir.\\x"},
        {L"D:", L"/x", L"D:/x", L"D:"},
        {L"\\\\s\\h", L"\\y", L"\\y", L"\\\\s\\h.\\y"},
        {L"a/", L".\\..\\b", L"a/.\\..\\b", L"a/"},
        {L"a", L".b", L"a\\.b", L"a.b"},
        {L"a.b.c", L"d", L"a.b.c\\d", L"a.b.d"},
        {L"dir\\", L"txt", L"dir\\txt", L"dir\\"},
        {L"d.x:", L"t", L"d.x:\\t", L"d.x:"},
    };
    for (const auto &c : test::Rows(cases)) {
        Buffer buffer;
        if (c.changed) {
            CHECK_EQUAL(ChangeExtension(buffer, c.first, c.second), ORV_S_OK);
            CHECK_TEXT(buffer.GetValue(), c.changed);
        }
        CHECK_EQUAL(CombinePaths(buffer, c.first, c.second), ORV_S_OK);
        CHECK_TEXT(buffer.GetValue(), c.combined);
        // Either text may stand in the buffer that is written to.
        buffer.Assign(c.first);
        CHECK_EQUAL(CombinePaths(buffer, buffer.GetValue(), c.second), ORV_S_OK);
        CHECK_TEXT(buffer.GetValue(), c.combined);
        buffer.ReserveElements(40);
        buffer.Assign(c.second);
        CHECK_EQUAL(CombinePaths(OrvMakeMutableStringRef(buffer), c.first, buffer.GetValue()), ORV_S_OK);
        CHECK_TEXT(buffer.GetValue(), c.combined);
    }
    wchar_t untouched[] = L"as it was";
    _ORV_UTF16CHAR_STR out = {9, 10, untouched};
    CHECK_EQUAL(ChangeExtension(out, L"", L"x"), ORV_S_OK);
    CHECK_EQUAL(out.length, 9u);
    CHECK_TEXT(static_cast<const wchar_t *>(untouched), L"as it was");
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

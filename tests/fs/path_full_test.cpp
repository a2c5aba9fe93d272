// Paths that the platform has to be asked about.

#include "orv/fs/dos_path.h"
#include "orv/fs/path.h"

#include "fs/path_forms.h"
#include "fs/test_file.h"
#include "harness/replace.h"
#include "text/texts.h"

namespace
{

using namespace OrvBasPath;

/// Sets the current directory, and takes it back.
class CurrentDirectory
{
public:
    explicit CurrentDirectory(const wchar_t *path)
    {
        RtlGetCurrentDirectory_U(sizeof before_, before_);
        Set(path);
    }
    CurrentDirectory(const CurrentDirectory &) = delete;
    CurrentDirectory &operator=(const CurrentDirectory &) = delete;
    ~CurrentDirectory() { Set(before_); }

private:
    static void Set(const wchar_t *path)
    {
        UNICODE_STRING counted;
        RtlInitUnicodeString(&counted, path);
        CHECK_EQUAL(RtlSetCurrentDirectory_U(&counted), 0);
    }

    wchar_t before_[300];
};

void SetVariable(const wchar_t *name, const wchar_t *value)
{
    UNICODE_STRING countedName, countedValue;
    RtlInitUnicodeString(&countedName, name);
    RtlInitUnicodeString(&countedValue, value);
    RtlSetEnvironmentVariable(nullptr, &countedName, value ? &countedValue : nullptr);
}

/// A path of so many characters: "C:\aaaa...".
void MakeLong(OrvUtf16CharHeapBuffer &path, uint32_t length)
{
    path.Resize(length);
    for (uint32_t i = 0; i < length; i++)
        path[i] = i < 3 ? L"C:\\"[i] : i % 200 == 199 ? L'\\' : L'a';
}

} // namespace

TEST_CASE(FullPathsAreThePlatforms)
{
    const CurrentDirectory directory(L"C:\\windows");
    const test::Operation full = {GetFullPath, GetFullPath, GetFullPath};
    test::CheckPath(L"a/../b\\.\\c", L"C:\\windows\\b\\c", full);
    test::CheckPath(L"\\x", L"C:\\x", full);
    test::Generator generator;
    const wchar_t alphabet[] = L"C:\\/.a ?";
    for (uint32_t i = 0; i < 3000; i++) {
        test::Note("path", i);
        wchar_t path[16] = {};
        const uint32_t length = generator.Below(13);
        for (uint32_t k = 0; k < length; k++)
            path[k] = alphabet[generator.Below(8)];
        wchar_t expected[600];
        const uint32_t count = RtlGetFullPathName_U(path, sizeof expected, expected, nullptr) / 2;
        wchar_t array[600];
        _ORV_UTF16CHAR_STR out = {0, 600, array};
        const wchar_t *const unterminated = test::GuardedCopy(path, length);
        CHECK_EQUAL(GetFullPath(out, unterminated, length), count ? ORV_S_OK : ORV_E_NOT_PRODUCED);
        if (count)
            CHECK(out.length == count && memcmp(array, expected, 2 * count + 2) == 0);
    }
}

TEST_CASE(LongPathsFitOrAreRefused)
{
    const uint32_t lengths[] = {260, 32760};
    for (const uint32_t length : lengths) {
        test::Note("length", length);
        OrvUtf16CharHeapBuffer path;
        OrvUtf16CharHeapBuffer out;
        MakeLong(path, length);
        CHECK_EQUAL(GetFullPath(out, path.GetValue(), length), ORV_S_OK);
        CHECK_TEXT(out.GetValue(), path.GetValue());
    }
    OrvUtf16CharHeapBuffer path;
    OrvUtf16CharHeapBuffer out;
    const uint32_t tooLong[] = {32763, 40000}; // once the prefix "\??\" stands before it
    for (const uint32_t length : tooLong) {
        MakeLong(path, length);
        test::Note("length", length);
        CHECK_EQUAL(OrvNtdll_RtlDosPathNameToNtPathName_T(path.GetValue(), out), ORV_E_NOT_PRODUCED);
    }
    MakeLong(path, 32767);
    CHECK_EQUAL(GetFullPath(out, path.GetValue()), ORV_E_NOT_PRODUCED);
    CHECK_EQUAL(GetFullPath(out, L""), ORV_E_NOT_PRODUCED);
    CHECK_EQUAL(GetFullPath(out, nullptr), ORV_E_NOT_PRODUCED);
}

TEST_CASE(NamesAreFoundInTheFileSystem)
{
    const TestFile file(L"C:\\windows\\temp\\orv path test, a long name.tmp");
    const CurrentDirectory directory(L"C:\\windows");
    OrvUtf16CharHeapBuffer alternate;
    CHECK_EQUAL(GetAlternatePath(alternate, L"C:\\windows\\temp\\ORV path test, a long name.tmp"), ORV_S_OK);
    OrvUtf16CharHeapBuffer shortName;
    CHECK_EQUAL(GetFilename(shortName, alternate.GetValue()), ORV_S_OK);
    CHECK(shortName.GetInternal().length <= 12);
    OrvUtf16CharHeapBuffer doubled;
    CHECK_EQUAL(CombinePaths(doubled, L"C:\\\\WINDOWS\\\\\\temp\\.\\", shortName.GetValue()), ORV_S_OK);

    const test::Operation normalized = {GetNormalizedPath, GetNormalizedPath, GetNormalizedPath};
    const test::Operation toLong = {GetLongPath, GetLongPath, GetLongPath};
    const test::Operation toAlternate = {GetAlternatePath, GetAlternatePath, GetAlternatePath};
    const wchar_t *const longName = L"C:\\windows\\temp\\orv path test, a long name.tmp";
    const struct {
        const test::Operation &operation;
        const wchar_t *path;
        const wchar_t *expected; ///< null: not found
    } cases[] = {
        {toLong, alternate.GetValue(), longName},
        {normalized, doubled.GetValue(), L"C:\\windows\\temp\\.\\orv path test, a long name.tmp"},
        {toLong, L"c:/WINDOWS/System32/", L"c:/windows\\system32\\"},
        {normalized, L"c:\\WINDOWS\\no-such.dir\\x\\", L"c:\\windows\\no-such.dir\\x\\"},
        {normalized, L"\\\\no-server\\share\\\\a", L"\\\\no-server\\share\\a"},
        {normalized, L"C:\\", L"C:\\"},
        {normalized, L"C:/\\\\WINDOWS\\./TEMP\\", L"C:/windows\\temp\\"}, // "/" separates no names
        {normalized, L"C:TEMP\\x", L"C:temp\\x"},
        {normalized, L"..\\.", L"..\\."},
        {toLong, L"C:\\windows\\no-such-file", nullptr},
        {toAlternate, L"C:\\windows\\no-such-dir\\x", nullptr},
        // Steps out of the root, and a literal path.
        {toLong, L"C:\\WINDOWS\\..\\..\\WINDOWS\\System32", L"C:\\windows\\..\\..\\windows\\system32"},
        {toAlternate, L"\\..\\Windows/./SYSTEM32", L"\\..\\windows\\.\\system32"},
        {toLong, L"\\\\?\\C:/WINDOWS\\\\System32//drivers", L"\\\\?\\C:\\windows\\system32\\drivers"},
    };
    for (const auto &c : test::Rows(cases)) {
        if (c.expected) {
            test::CheckPath(c.path, c.expected, c.operation);
            continue;
        }
        OrvUtf16CharHeapBuffer out;
        out.Assign(L"before");
        CHECK_EQUAL(c.operation.heap(out, c.path, OrvTerminated), ORV_E_FILE_NOT_FOUND);
        CHECK_TEXT(out.GetValue(), L"before");
    }
    OrvUtf16CharHeapBuffer out;
    CHECK_EQUAL(GetLongPath(out, L"C:\\windows\\*"), ORV_E_INVALID_NAME);
    CHECK_EQUAL(GetLongPath(out, L"C:\\windows\0x\\temp", 17), ORV_E_NOT_PRODUCED);
    CHECK_EQUAL(GetFullPath(out, L"a\0b", 3), ORV_E_NOT_PRODUCED);
    CHECK_EQUAL(GetNormalizedPath(out, L""), ORV_E_INVALID_ARGUMENT);
    CHECK_EQUAL(GetLongPath(out, nullptr), ORV_E_INVALID_ARGUMENT);
}

namespace
{

wchar_t openedPath[100]; ///< the last one that the platform was asked to open

NTSTATUS NTAPI NoteOpenedPath(HANDLE *, ACCESS_MASK, const OBJECT_ATTRIBUTES *attributes, IO_STATUS_BLOCK *,
                              ULONG, ULONG)
{
    const UNICODE_STRING &name = *attributes->ObjectName;
    memmove(openedPath, name.Buffer, name.Length);
    openedPath[name.Length / sizeof(wchar_t)] = 0;
    return STATUS_ACCESS_DENIED;
}

} // namespace

TEST_CASE(ServersAndSharesAreNotLookedUp)
{
    const test::ReplacedFunction noted(L"ntdll.dll", "ZwOpenFile", NoteOpenedPath);
    const struct {
        const wchar_t *path;
        const wchar_t *opened; ///< null: none, and the path stays as it is
    } cases[] = {
        {L"\\\\srv\\share\\x\\y", L"\\??\\UNC\\srv\\share\\"},
        {L"\\\\?\\UNC\\srv\\share\\x\\y", L"\\??\\UNC\\srv\\share\\"},
        {L"\\\\?\\unc\\srv/share//x", L"\\??\\unc\\srv\\share\\"},
        {L"\\\\?\\UNC\\srv", nullptr},
    };
    for (const auto &c : cases) {
        test::Note("case", &c - cases);
        openedPath[0] = 0;
        OrvUtf16CharHeapBuffer out;
        CHECK_EQUAL(GetLongPath(out, c.path), c.opened ? ORV_E_ACCESS_DENIED : ORV_S_OK);
        CHECK_TEXT(openedPath, c.opened ? c.opened : L"");
        CHECK_TEXT(out.GetValue(), c.opened ? L"" : c.path);
    }
}

TEST_CASE(DeviceNamesAreEliminated)
{
    const CurrentDirectory directory(L"C:\\windows");
    const struct {
        const wchar_t *path;
        const wchar_t *expected; ///< null: left alone
        const wchar_t *native;
    } cases[] = {
        {L"C:\\con", L"\\\\?\\C:\\con", L"\\??\\C:\\con"},
        {L"/aux/./b/../c", L"\\\\?\\C:\\aux\\c", L"\\??\\C:\\aux\\c"},
        {L"x\\y", nullptr, L"\\??\\C:\\windows\\x\\y"},
        {L"con", nullptr, L"\\??\\con"}, // relative: a device's
        {L"\\/srv\\share\\f", nullptr, L"\\??\\UNC\\srv\\share\\f"},
        {L"\\\\?\\C:\\\\a/\\b//", nullptr, L"\\??\\C:\\a\\b\\"},
        {L"\\\\?\\UNC\\srv\\share\\\\a//b", nullptr, L"\\??\\UNC\\srv\\share\\a\\b"},
        // The prefix lets steps take the drive away; the native path keeps to it.
        {L"C:\\a\\..\\..\\UNC\\srv\\x", L"\\\\?\\UNC\\srv\\x", L"\\??\\C:\\UNC\\srv\\x"},
        {L"\\..\\\\x", L"\\\\?\\x", L"\\??\\C:\\x"},
        {L"//srv/share/x", L"\\\\?\\srv\\share\\x", L"\\??\\UNC\\srv\\share\\x"},
        {L"\\??\\C:\\lpt1", L"\\\\?\\C:\\??\\C:\\lpt1", L"\\??\\C:\\lpt1"},
    };
    for (const auto &c : test::Rows(cases)) {
        OrvUtf16CharHeapBuffer buffer;
        const wchar_t *path = c.path;
        CHECK_EQUAL(WinEliminateDosDeviceAliasPath(path, buffer), ORV_S_OK);
        CHECK(c.expected ? path == buffer.GetValue() : path == c.path);
        CHECK_TEXT(path, c.expected ? c.expected : c.path);

        UNICODE_STRING counted = {0, 4, test::GuardedArray<wchar_t>(2)};
        unsigned int required = 0;
        CHECK_EQUAL(WinEliminateDosDeviceAliasPathU(c.path, &counted, &required), ORV_E_BUFFER_TOO_SMALL);
        counted.MaximumLength = static_cast<USHORT>(required * 2);
        counted.Buffer = test::GuardedArray<wchar_t>(required);
        CHECK_EQUAL(WinEliminateDosDeviceAliasPathU(c.path, &counted, &required), ORV_S_OK);
        CHECK_EQUAL(counted.Length, required * 2 - 2);
        CHECK_TEXT(const_cast<const wchar_t *>(counted.Buffer), c.expected ? c.expected : c.path);

        CHECK_EQUAL(OrvNtdll_RtlDosPathNameToNtPathName_T_EliminateDosDevice(c.path, buffer), ORV_S_OK);
        CHECK_TEXT(buffer.GetValue(), c.native);
    }
    OrvUtf16CharHeapBuffer buffer;
    CHECK_EQUAL(OrvNtdll_RtlDosPathNameToNtPathName_T(L"x", buffer), ORV_S_OK);
    CHECK_TEXT(buffer.GetValue(), L"\\??\\C:\\windows\\x");
    CHECK_EQUAL(OrvNtdll_RtlDosPathNameToNtPathName_T(L"", buffer), ORV_E_INVALID_ARGUMENT);
    CHECK_EQUAL(OrvNtdll_RtlDosPathNameToNtPathName_T_EliminateDosDevice(nullptr, buffer),
                ORV_E_INVALID_ARGUMENT);
    CHECK(OrvWinIsNtFilePath(L"\\GLOBAL??\\x") && !OrvWinIsNtFilePath(L"\\??") &&
          !OrvWinIsNtFilePath(nullptr));
    CHECK(OrvWinIsNtFilePath(test::GuardedCopy(L"\\??\\", 4), 4) &&
          !OrvWinIsNtFilePath(test::GuardedCopy(L"\\??\\", 3), 3));
}

TEST_CASE(EnvironmentNamesTheTemporaryDirectory)
{
    OrvUtf16CharHeapBuffer longValue;
    MakeLong(longValue, 400);
    const struct {
        const wchar_t *tmp;
        const wchar_t *temp;
        const wchar_t *profile;
        const wchar_t *expected;
        OrvResult result;
    } cases[] = {
        {L"C:\\t\\.\\mp", L"C:\\e", L"C:\\p", L"C:\\t\\mp", 0},
        {nullptr, L"C:/e", L"C:\\p", L"C:\\e", 0},
        {nullptr, nullptr, longValue.GetValue(), longValue.GetValue(), 0},
        {nullptr, nullptr, nullptr, L"", ORV_E_PATH_NOT_FOUND},
    };
    for (const auto &c : test::Rows(cases)) {
        SetVariable(L"TMP", c.tmp);
        SetVariable(L"TEMP", c.temp);
        SetVariable(L"USERPROFILE", c.profile);
        OrvUtf16CharHeapBuffer buffer;
        CHECK_EQUAL(GetTempDirPath(buffer), c.result);
        CHECK_TEXT(buffer.GetValue(), c.expected);
    }
    SetVariable(L"TMP", L"");
    OrvUtf16CharHeapBuffer buffer;
    CHECK_EQUAL(GetTempDirPath(buffer), ORV_E_NOT_PRODUCED);

    SetVariable(L"TMP", longValue.GetValue());
    CHECK_EQUAL(OrvNtdll_RtlExpandEnvironmentStrings_T(L"<%tmp%|%ORV_NOT_SET%>", buffer), ORV_S_OK);
    CHECK_EQUAL(buffer.GetInternal().length, 400u + 16);
    CHECK_TEXT(buffer.GetValue() + 401, L"|%ORV_NOT_SET%>");
    CHECK_EQUAL(OrvNtdll_RtlExpandEnvironmentStrings_T(nullptr, buffer), ORV_S_OK);
    CHECK_TEXT(buffer.GetValue(), L"");
}

TEST_CASE(RandomNamesHaveTheirForm)
{
    wchar_t *const array = test::GuardedArray<wchar_t>(45);
    wchar_t previous[45] = {};
    for (uint32_t i = 0; i < 2; i++) {
        _ORV_UTF16CHAR_STR out = {0, 45, array};
        CHECK_EQUAL(GetRandomTempFileName(out), ORV_S_OK);
        CHECK_EQUAL(out.length, GetRandomTempFileNameSize());
        CHECK(memcmp(array, L"orv-", 8) == 0 && memcmp(array + 40, L".tmp", 10) == 0);
        CHECK_EQUAL(array[4 + 14], L'4'); // of a GUID that is made of random numbers
        CHECK(memcmp(array, previous, 80) != 0);
        memmove(previous, array, sizeof previous);
    }
    unsigned int required = 0;
    _ORV_UTF16CHAR_STR out = {0, 40, array};
    CHECK_EQUAL(GetRandomName(out, &required), ORV_E_BUFFER_TOO_SMALL);
    CHECK_EQUAL(required, GetRandomNameSize() + 1);
    out = {0, 44, array};
    CHECK_EQUAL(GetRandomTempFileName(out, &required), ORV_E_BUFFER_TOO_SMALL);
    CHECK_EQUAL(required, 44u);
    OrvUtf16CharHeapBuffer buffer;
    buffer.Assign(L"smaller");
    CHECK_EQUAL(GetRandomName(buffer), ORV_S_OK);
    CHECK_EQUAL(buffer.GetCapacity(), 41u);
    CHECK_EQUAL(GetRandomTempFileName(buffer), ORV_S_OK);
    CHECK_EQUAL(buffer.GetCapacity(), 45u);
    CHECK_EQUAL(GetRandomTempFileName(OrvMakeMutableStringRef(buffer)), ORV_S_OK);
    CHECK_EQUAL(buffer.GetInternal().length, GetRandomTempFileNameSize());
    CHECK(memcmp(buffer.GetValue(), L"orv-", 8) == 0 && buffer[43] == L'p');
}

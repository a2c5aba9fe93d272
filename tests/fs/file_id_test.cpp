#include "orv/fs/file_id.h"

#include "fs/test_file.h"
#include "harness/memory.h"
#include "orv/runtime/result.h"

namespace
{

constexpr wchar_t kFile[] = L"C:\\windows\\temp\\orv-file-id-test.tmp";

} // namespace

TEST_CASE(EveryPathToAFileGivesOneIdentity)
{
    const TestFile file(kFile);
    const struct {
        const wchar_t *path;
        OrvResult result;
        bool isSame;
    } cases[] = {
        {kFile, 0, true},
        {L"c:\\WINDOWS\\Temp\\ORV-FILE-ID-TEST.TMP", 0, true},
        {L"\\\\?\\C:\\windows\\temp\\orv-file-id-test.tmp", 0, true},
        {L"C:\\windows\\..\\..\\windows\\temp\\orv-file-id-test.tmp", 0, true},
        {L"\\\\?\\C:\\windows\\\\temp\\\\orv-file-id-test.tmp", 0, true},
        {L"C:\\windows\\temp", 0, false},
        {L"C:\\windows\\temp\\orv-no-such-file.tmp", ORV_E_FILE_NOT_FOUND, false},
        {L"C:\\windows\\orv-no-such-folder\\file", ORV_E_PATH_NOT_FOUND, false},
        {nullptr, ORV_E_INVALID_ARGUMENT, false},
    };
    OrvFileId first;
    CHECK_EQUAL(OrvFileIdUtils::GetId(first, kFile), ORV_S_OK);
    for (const auto &c : test::Rows(cases)) {
        OrvFileId id = {};
        CHECK_EQUAL(OrvFileIdUtils::GetId(id, c.path), c.result);
        CHECK_EQUAL(memcmp(&id, &first, sizeof id) == 0, c.isSame);
        const OrvFileId untouched = {};
        CHECK(c.result == 0 || memcmp(&id, &untouched, sizeof id) == 0);
    }
}

TEST_CASE(IdentityIsWrittenAsDigitsOrNotAtAll)
{
    const OrvFileId id = {{0x00, 0x12, 0xAB, 0xFF, 4, 5, 6, 7, 8, 9, 10, 11, 12, 13, 14, 0xF0}};
    const wchar_t *const characters = test::GuardedArray<wchar_t>(33);
    _ORV_UTF16CHAR_STR text = {6, 32, const_cast<wchar_t *>(characters)};
    CHECK_EQUAL(OrvFileIdUtils::GetString(id, text), ORV_E_BUFFER_TOO_SMALL);
    CHECK_TEXT(characters, L"");
    text.capacity = 33;
    CHECK_EQUAL(OrvFileIdUtils::GetString(id, text), ORV_S_OK);
    CHECK_EQUAL(text.length, 32u);
    CHECK_TEXT(characters, L"0012abff0405060708090a0b0c0d0ef0");
    text.characters = nullptr;
    CHECK_EQUAL(OrvFileIdUtils::GetString(id, text), ORV_E_INVALID_ARGUMENT);
}

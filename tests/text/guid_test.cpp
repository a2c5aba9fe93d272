// GUIDs as fields, bytes and text.

#include "orv/text/guid.h"

#include "harness/memory.h"
#include "harness/test.h"
#include "orv/runtime/result.h"
#include "orv/text/heap_buffer.h"
#include "orv/text/string.h"

namespace
{

constexpr wchar_t kText[] = L"00112233-4455-6677-8899-aabbccddeeff";

_OrvGuid Sample()
{
    _OrvGuid guid;
    OrvGuidUtils::Assign(guid, 0x00112233, 0x4455, 0x6677, 0x88, 0x99, 0xAA, 0xBB, 0xCC, 0xDD, 0xEE, 0xFF);
    return guid;
}

} // namespace

TEST_CASE(GuidsAreAssignedInPrintedOrder)
{
    const _OrvGuid guid = Sample();
    for (uint32_t i = 0; i < 16; i++)
        CHECK_EQUAL(guid.bytes[i], i * 0x11);
    _OrvGuid copies[2] = {};
    OrvGuidUtils::Assign(copies[0], guid);
    OrvGuidUtils::Assign(copies[1], test::GuardedCopy(guid.bytes, sizeof guid.bytes));
    for (const _OrvGuid &copy : copies)
        CHECK(__builtin_memcmp(&copy, &guid, sizeof guid) == 0);
}

TEST_CASE(GuidsArePrinted)
{
    const _OrvGuid guid = Sample();
    auto *const room = test::GuardedArray<wchar_t>(37);
    _ORV_UTF16CHAR_STR text = {99, 37, room};
    CHECK_EQUAL(OrvGuidUtils::GetString(guid, text), ORV_S_OK);
    CHECK_EQUAL(text.length, 36u);
    CHECK_TEXT(room, kText);
    text = {99, 36, room};
    CHECK_EQUAL(OrvGuidUtils::GetString(guid, text), ORV_E_BUFFER_TOO_SMALL);
    CHECK_EQUAL(text.length, 99u);

    OrvUtf16CharHeapBuffer buffer;
    buffer.Assign(L"{");
    CHECK_EQUAL(OrvGuidUtils::GetStringAppend(guid, OrvMakeMutableStringRef(buffer)), ORV_S_OK);
    CHECK_TEXT(buffer.GetValue(), L"{00112233-4455-6677-8899-aabbccddeeff");
    CHECK_EQUAL(OrvGuidUtils::GetString(guid, OrvMakeMutableStringRef(buffer)), ORV_S_OK);
    CHECK_TEXT(buffer.GetValue(), kText);

    text = {99, 0, room};
    CHECK_EQUAL(OrvGuidUtils::GetString(guid, text), ORV_E_INVALID_ARGUMENT);
    CHECK_TEXT(room, L"00112233-4455-6677-8899-aabbccddeef");
}

TEST_CASE(GuidsAreParsed)
{
    struct {
        const wchar_t *text;
        OrvResult result;
        const wchar_t *printed; // null: the GUID is untouched
    } const cases[] = {
        {kText, 0, kText},
        {L"00112233-4455-6677-8899-AABBCCDDEEFF", 0, kText},
        {L"{00112233-4455-6677-8899-aabbccddeeff}", ORV_E_GUID_TEXT, nullptr},
        {L"00112233-4455-6677-8899-aabbccddeef", ORV_E_GUID_TEXT, nullptr},
        {L"00112233-4455-6677-8899-aabbccddeeff0", ORV_E_GUID_TEXT, nullptr},
        {L"00112233+4455-6677-8899-aabbccddeeff", ORV_E_GUID_TEXT, nullptr},
        {L"00112233-4455-6677-8899+aabbccddeeff", ORV_E_GUID_TEXT, nullptr},
        // The first group is a number.
        {L"0011223g-4455-6677-8899-aabbccddeeff", ORV_E_INVALID_ARGUMENT, nullptr},
        {L"0x112233-4455-6677-8899-aabbccddeeff", 0, kText},
        {L"ffffffff-ffff-ffff-ffff-ffffffffffff", 0, L"ffffffff-ffff-ffff-ffff-ffffffffffff"},
        // The others are read as far as they go.
        {L"00000000-0xzF-0X1F-8899-aabbccddeeff", 0, L"00000000-0000-001f-8899-aabbccddeeff"},
        {L"00000000-12g4-1 23-8g99-g0bb0xd-eef-", 0, L"00000000-0012-0001-0899-00bb000dee0f"},
        {L"00000000--234-6677-8899-aabbccddeeff", ORV_E_INVALID_ARGUMENT, nullptr},
        {L"00000000-1234-6677-8899-aabbccddee-f", ORV_E_INVALID_ARGUMENT, nullptr},
        {L"00000000-\xFF11\x0141\x0130\x30-0000-0000-000000000000", 0,
         L"00000000-0000-0000-0000-000000000000"},
    };
    for (const auto &c : cases) {
        test::Note("case", static_cast<uint32_t>(&c - cases));
        const uint32_t length = OrvGetStringSizeInElements(c.text);
        const OrvStringRefBase<wchar_t> refs[] = {{c.text}, {test::GuardedCopy(c.text, length), length}};
        for (const auto &ref : refs) {
            _OrvGuid guid = Sample();
            guid.bytes[0] = 0x5A;
            CHECK_EQUAL(OrvGuidUtils::Parse(guid, ref), c.result);
            if (!c.printed) {
                CHECK_EQUAL(guid.bytes[0], 0x5A);
                continue;
            }
            wchar_t room[37];
            _ORV_UTF16CHAR_STR text = {0, 37, room};
            OrvGuidUtils::GetString(guid, text);
            CHECK_TEXT(room, c.printed);
        }
    }
    _OrvGuid guid;
    CHECK_EQUAL(OrvGuidUtils::Parse(guid, OrvStringRefBase<wchar_t>(nullptr, 36)), ORV_E_GUID_TEXT);
}

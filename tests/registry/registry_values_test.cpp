// Values: what is stored, what is read, and what the types make of odd bytes.

#include "registry/registry_test_key.h"

#include "harness/memory.h"
#include "nt/counted_string.h"

TEST_CASE(BytesComeBackAsTheirTypeWantsThem)
{
    const struct {
        uint32_t type;
        const char *stored;
        uint32_t size;
        const char *read;
        uint32_t readSize;
    } cases[] = {
        {0, "", 0, "", 0},
        {7, "", 0, "", 0},
        {3, "abc", 3, "abc", 3},
        {1, "a\0b\0", 4, "a\0b\0\0\0", 6},
        {1, "a\0b\0\0\0", 6, "a\0b\0\0\0", 6},
        {1, "a\0b", 3, "a\0b\0\0\0", 6},
        {1, "a\0\0", 3, "a\0\0\0", 4},
        {1, "a\0\0\0b\0", 6, "a\0\0\0b\0\0\0", 8},
        {7, "a\0\0\0", 4, "a\0\0\0\0\0", 6},
        {7, "a\0", 2, "a\0\0\0\0\0", 6},
        {7, "a\0b", 3, "a\0b\0\0\0\0\0", 8},
        {7, "\0\0", 2, "\0\0\0\0", 4},
        {6, "a\0", 2, "a\0", 2},
    };
    TestKey key;
    for (const auto &c : test::Rows(cases)) {
        const OrvStringRefBase<wchar_t> name(test::GuardedCopy(L"name", 4), &c - cases & 1 ? 4 : 0);
        CHECK_EQUAL(key.SetValue(static_cast<OrvBasWinRegistryValueType>(c.type),
                                 test::GuardedCopy(c.stored, c.size), c.size, name),
                    ORV_S_OK);
        OrvBasWinRegistryValueType type = OrvRegistryLink;
        OrvByteHeapBuffer bytes;
        CHECK_EQUAL(key.QueryValue(type, bytes, name), ORV_S_OK);
        CHECK_EQUAL(static_cast<uint32_t>(type), c.type);
        CHECK_EQUAL(bytes.GetSize(), c.readSize);
        CHECK(c.readSize == 0 || memcmp(bytes.GetElements(), c.read, c.readSize) == 0);
    }
    CHECK_EQUAL(key.SetValue(OrvRegistryBinary, nullptr, 1, L"x"), ORV_E_INVALID_ARGUMENT);
    CHECK_EQUAL(key.SetValue(OrvRegistryBinary, nullptr, 0, L"x"), ORV_S_OK);
    CHECK(key.ValueExists(L"X") && key.ValueExists(L"") && !key.ValueExists(L"y"));
    CHECK_EQUAL(key.DeleteValue(L"x"), ORV_S_OK);
    CHECK_EQUAL(key.DeleteValue(L"x"), ORV_E_FILE_NOT_FOUND);
}

TEST_CASE(TypedFormsTakeTheirTypesOnly)
{
    TestKey key;
    uint32_t word = 9;
    uint64_t quad = 9;
    OrvUtf16HeapString text;
    OrvByteHeapBuffer bytes;
    OrvBasWinRegistryValueType type = OrvRegistryNone;
    Names names;
    CHECK_EQUAL(key.SetDWordValue(0x12345678, L"d"), ORV_S_OK);
    CHECK_EQUAL(key.SetDWordValue(0x12345678, L"big", true), ORV_S_OK);
    CHECK_EQUAL(key.SetQWordValue(0x123456789ABCDEF0, L"q"), ORV_S_OK);
    CHECK_EQUAL(key.SetBinaryValue("\1\2", 2, L"b"), ORV_S_OK);
    CHECK_EQUAL(key.SetStringValue(L"text", L"s"), ORV_S_OK);
    CHECK_EQUAL(
        key.SetStringValue(OrvStringRefBase<wchar_t>(test::GuardedCopy(L"<%ORV%>", 7), 7), L"e", true),
        ORV_S_OK);

    CHECK_EQUAL(key.QueryValue(type, bytes, L"big"), ORV_S_OK);
    CHECK(type == OrvRegistryDWordBigEndian && memcmp(bytes.GetElements(), "\x12\x34\x56\x78", 4) == 0);
    word = 0;
    CHECK_EQUAL(key.GetDWordValue(word, L"big"), ORV_S_OK);
    CHECK_EQUAL(word, 0x12345678u);
    CHECK_EQUAL(key.GetQWordValue(quad, L"q"), ORV_S_OK);
    CHECK(quad == 0x123456789ABCDEF0);
    CHECK_EQUAL(key.GetBinaryValue(bytes, L"b"), ORV_S_OK);
    CHECK_EQUAL(bytes.GetSize(), 2u);
    CHECK_EQUAL(key.GetStringValue(text, L"s", true), ORV_S_OK);
    CHECK_TEXT(text.GetCharacters(), L"text");
    CHECK_EQUAL(key.GetStringValue(text, L"e"), ORV_S_OK);
    CHECK_TEXT(text.GetCharacters(), L"<%ORV%>");
    UNICODE_STRING variable = detail::CountedLiteral(L"ORV");
    UNICODE_STRING value = detail::CountedLiteral(L"value");
    RtlSetEnvironmentVariable(nullptr, &variable, &value);
    CHECK_EQUAL(key.GetStringValue(text, L"e", true), ORV_S_OK);
    CHECK_TEXT(text.GetCharacters(), L"<value>");

    word = 9;
    quad = 9;
    const OrvResult refused[] = {key.GetDWordValue(word, L"q"),  key.GetDWordValueWithDefault(word, L"s", 1),
                                 key.GetQWordValue(quad, L"d"),  key.GetBinaryValue(bytes, L"s"),
                                 key.GetStringValue(text, L"b"), key.GetStringArrayValue(names, L"s")};
    for (const OrvResult result : test::Rows(refused))
        CHECK_EQUAL(result, ORV_E_VALUE_TYPE);
    CHECK_EQUAL(key.SetValue(OrvRegistryDWord, "abc", 3, L"odd"), ORV_S_OK);
    CHECK_EQUAL(key.GetDWordValue(word, L"odd"), ORV_E_INVALID_DATA);
    CHECK_EQUAL(key.GetDWordValue(word, L"none"), ORV_E_FILE_NOT_FOUND);
    CHECK(word == 9 && quad == 9);
    CHECK_EQUAL(key.GetDWordValueWithDefault(word, L"none", 5), ORV_S_NOT_SET);
    CHECK_EQUAL(key.GetQWordValueWithDefault(quad, L"none", 6), ORV_S_NOT_SET);
    CHECK(word == 5 && quad == 6);
    CHECK_EQUAL(key.GetDWordValueWithDefault(word, L"d", 5), ORV_S_OK);
    CHECK_EQUAL(word, 0x12345678u);
    const OrvStringRefBase<wchar_t> counted(test::GuardedCopy(L"<%ORV%>", 7), 7);
    CHECK_EQUAL(key.GetStringValueWithDefault(text, L"none", counted, true), ORV_S_NOT_SET);
    CHECK_TEXT(text.GetCharacters(), L"<%ORV%>");
    CHECK_EQUAL(key.GetStringValueWithDefault(text, L"none", {}), ORV_S_NOT_SET);
    CHECK_EQUAL(text.GetLength(), 0u);
    CHECK_EQUAL(key.GetStringValueWithDefault(text, L"e", L"other", true), ORV_S_OK);
    CHECK_TEXT(text.GetCharacters(), L"<value>");
    CHECK_EQUAL(key.GetStringValueWithDefault(text, L"b", L"other"), ORV_E_VALUE_TYPE);
    CHECK_TEXT(text.GetCharacters(), L"<value>");
    CHECK_EQUAL(key.SetValue(OrvRegistryString, nullptr, 0, L"empty"), ORV_S_OK);
    CHECK_EQUAL(key.GetStringValue(text, L"empty"), ORV_S_OK);
    CHECK_TEXT(text.GetCharacters(), L"");
}

TEST_CASE(StringArraysAreJoinedAndSplit)
{
    TestKey key;
    const wchar_t *const strings[] = {L"one", L"2", L"three"};
    Texts texts(strings, 3);
    CHECK_EQUAL(key.SetStringArrayValue(texts, L"m"), ORV_S_OK);
    Names names;
    CHECK_EQUAL(key.GetStringArrayValue(names, L"m"), ORV_S_OK);
    CHECK_TEXT(names.text.GetValue(), L"one|2|three|");
    OrvBasWinRegistryValueType type = OrvRegistryNone;
    OrvByteHeapBuffer bytes;
    CHECK_EQUAL(key.QueryValue(type, bytes, L"m"), ORV_S_OK);
    CHECK(type == OrvRegistryMultiString && bytes.GetSize() == 26);

    const wchar_t *const withEmpty[] = {L"one", L""};
    Texts refused(withEmpty, 2);
    CHECK_EQUAL(key.SetStringArrayValue(refused, L"m"), ORV_E_INVALID_ARGUMENT);

    // A list ends at its first empty string, or where its bytes end.
    const struct {
        const char *bytes;
        uint32_t size;
        const wchar_t *expected;
    } cases[] = {
        {"", 0, L""}, {"a\0\0\0\0\0b\0\0\0", 10, L"a|"}, {"a\0\0\0b\0", 6, L"a|b|"}, {"\0\0a\0", 4, L""}};
    for (const auto &c : cases) {
        CHECK_EQUAL(key.SetValue(OrvRegistryMultiString, c.bytes, c.size, L"m"), ORV_S_OK);
        Names split;
        CHECK_EQUAL(key.GetStringArrayValue(split, L"m"), ORV_S_OK);
        CHECK_TEXT(split.text.GetValue(), c.expected);
    }
    CHECK_EQUAL(key.SetValue(OrvRegistryMultiString, "a\0\0\0b\0", 6, L"m"), ORV_S_OK);
    Names refusing;
    refusing.refusedAt = 1;
    CHECK_EQUAL(key.GetStringArrayValue(refusing, L"m"), ORV_E_DISK_FULL);
}

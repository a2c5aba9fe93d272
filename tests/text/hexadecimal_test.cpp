// Hexadecimal digits and bytes: both cases, every capacity, and every character that is no digit.

#include "orv/text/hexadecimal.h"

#include "harness/memory.h"
#include "harness/test.h"
#include "orv/runtime/result.h"
#include "orv/text/heap_string.h"

namespace
{

constexpr uint8_t kBytes[] = {0x00, 0x19, 0xAF, 0xFA, 0x7E};
constexpr uint32_t kCount = sizeof kBytes;
constexpr uint32_t kUntouched = 77;

} // namespace

TEST_CASE(BytesBecomeDigits)
{
    for (uint32_t capacity = 0; capacity <= 2 * kCount + 2; capacity++) {
        test::Note("capacity", capacity);
        _ORV_UTF16CHAR_STR text = {kUntouched, capacity, test::GuardedArray<wchar_t>(capacity)};
        uint32_t required = kUntouched;
        const bool fits = capacity > 2 * kCount;
        CHECK_EQUAL(OrvConvertBytes2HexString(text, test::GuardedCopy(kBytes, kCount), kCount,
                                              OrvHexLowerCase, &required),
                    fits ? ORV_S_OK : ORV_E_BUFFER_TOO_SMALL);
        CHECK_EQUAL(required, fits ? kUntouched : 2 * kCount + 1);
        CHECK_EQUAL(text.length, fits ? 2 * kCount : kUntouched);
        CHECK(fits ? CHECK_TEXT(text.characters, L"0019affa7e") : capacity == 0 || text.characters[0] == 0);
    }
    OrvUtf16CharHeapBuffer buffer;
    CHECK_EQUAL(OrvConvertBytes2HexString(buffer, kBytes, kCount, OrvHexUpperCase), ORV_S_OK);
    CHECK_TEXT(buffer.GetValue(), L"0019AFFA7E");
    const auto reference = OrvMakeMutableStringRef(buffer);
    CHECK_EQUAL(OrvConvertBytes2HexString(reference, kBytes + 1, 1), ORV_S_OK);
    CHECK_TEXT(buffer.GetValue(), L"19");
    CHECK_EQUAL(reference.view.length, 2u);
    CHECK_EQUAL(OrvConvertBytes2HexString(reference, nullptr, 1), ORV_E_INVALID_ARGUMENT);
    CHECK_EQUAL(OrvConvertBytes2HexString(buffer, kBytes, 0x7FFFFFFF), ORV_E_BAD_LENGTH);
    CHECK_EQUAL(OrvConvertBytes2HexString(buffer, kBytes, 1, static_cast<OrvHexCase>(2)),
                ORV_E_INVALID_ARGUMENT);
    CHECK_TEXT(buffer.GetValue(), L"19");
    CHECK_EQUAL(OrvConvertBytes2HexString(reference, nullptr, 0), ORV_S_OK);
    CHECK_EQUAL(OrvConvertBytes2HexString(buffer, nullptr, 0), ORV_S_OK);
    CHECK(buffer.IsEmpty());
    _ORV_UTF16CHAR_STR none = {kUntouched, 9, nullptr};
    CHECK_EQUAL(OrvConvertBytes2HexString(none, kBytes, 1), ORV_E_BUFFER_TOO_SMALL);
}

TEST_CASE(DigitsBecomeBytes)
{
    const wchar_t *const digits = test::GuardedCopy(L"0019aFfA7e", 2 * kCount);
    for (uint32_t capacity = 0; capacity <= kCount + 1; capacity++) {
        test::Note("capacity", capacity);
        auto *const target = test::GuardedArray<uint8_t>(capacity);
        uint32_t size = kUntouched;
        CHECK_EQUAL(OrvConvertHexString2Bytes(target, capacity, digits, &size, 2 * kCount),
                    capacity >= kCount ? ORV_S_OK : ORV_E_BUFFER_TOO_SMALL);
        CHECK_EQUAL(size, kCount);
        CHECK(capacity >= kCount ? __builtin_memcmp(target, kBytes, kCount) == 0
                                 : capacity < 2 || target[1] == 0);
    }
    uint8_t target[4] = {1, 2, 3, 4};
    uint32_t size = kUntouched;
    CHECK_EQUAL(OrvConvertHexString2Bytes(target, 4, L"0fF0"), ORV_S_OK); // terminated
    CHECK(target[0] == 0x0F && target[1] == 0xF0 && target[2] == 3);
    CHECK_EQUAL(OrvConvertHexString2Bytes(nullptr, 9, L"00", &size), ORV_E_BUFFER_TOO_SMALL);
    CHECK_EQUAL(size, 1u);
    OrvByteHeapBuffer buffer;
    CHECK_EQUAL(OrvConvertHexString2Bytes(buffer, L"010203"), ORV_S_OK);
    CHECK_EQUAL(buffer.GetSize(), 3u);
    CHECK_EQUAL(OrvConvertHexString2Bytes(buffer, L"010"), ORV_E_INVALID_DATA);
    CHECK(buffer.GetSize() == 3 && buffer.GetElements()[2] == 3);
}

TEST_CASE(NothingButDigitsIsRead)
{
    for (uint32_t character = 0; character < 0x10000; character++) {
        const wchar_t text[] = {L'5', static_cast<wchar_t>(character), L'c', L'6'};
        const bool isDigit = (character >= '0' && character <= '9') ||
                             (character >= 'a' && character <= 'f') || (character >= 'A' && character <= 'F');
        uint8_t target[2] = {9, 9};
        uint32_t size = kUntouched;
        const OrvResult result = OrvConvertHexString2Bytes(target, 2, text, &size, 4);
        if (!CHECK_EQUAL(result, isDigit ? ORV_S_OK : ORV_E_INVALID_DATA) ||
            !CHECK(isDigit ? target[0] >> 4 == 5 && target[1] == 0xC6 : target[0] == 9 && size == kUntouched))
            return;
    }
}

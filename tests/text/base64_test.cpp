// Base64 text and back: known pairs, every kind of fault, and what a capacity must be.

#include "orv/text/base64.h"

#include "harness/memory.h"
#include "harness/test.h"
#include "orv/runtime/result.h"
#include "orv/text/string.h"

namespace
{

constexpr auto kStrict = OrvBase64IgnoreNothing;
constexpr auto kLenient = OrvBase64IgnoreWhiteSpace;
constexpr uint32_t kUntouched = 0xABCD;

} // namespace

TEST_CASE(Base64KnownPairs)
{
    struct {
        const char *bytes;
        uint32_t count;
        const wchar_t *text;
    } const cases[] = {
        {"", 0, L""},
        {"f", 1, L"Zg=="},
        {"\0\x10\x83", 3, L"ABCD"},
        {"\xFB\xEF\xBE", 3, L"++++"},
        {"\xFF\xFF\xFF\xFF", 4, L"/////w=="},
    };
    for (const auto &c : cases) {
        test::Note("case", static_cast<uint32_t>(&c - cases));
        wchar_t room[16];
        _ORV_UTF16CHAR_STR text = {99, 16, room};
        CHECK_EQUAL(OrvBase64Encode(text, reinterpret_cast<const uint8_t *>(c.bytes), c.count), ORV_S_OK);
        CHECK_EQUAL(text.length, OrvGetStringSizeInElements(c.text));
        CHECK_TEXT(room, c.text);
        CHECK_EQUAL(OrvBase64EncodeNecessaryBufferCapacity(c.count), text.length + 1);
    }
}

TEST_CASE(Base64Faults)
{
    constexpr OrvResult kBad = ORV_E_INVALID_DATA;
    struct {
        const wchar_t *text;
        OrvResult strict;
        OrvResult lenient;
        const char *decoded; // by the lenient mode; what stays in the output when that fails
    } const cases[] = {
        {L"Zm 9v", kBad, 0, "foo"},
        {L" \t\r\nZm9v \t\r\n", kBad, 0, "foo"},
        {L"Zm9vZm9vZm9vZm9\n\rvZm9v\tZm9vZm9vZm8=", kBad, 0, "foofoofoofoofoofoofoofo"},
        {L"Zm9", kBad, kBad, ""},
        {L"Zg==", 0, 0, "f"},
        {L"Zh==", 0, 0, "f"}, // bits that are no part of a byte
        {L"Zg= =", kBad, 0, "f"},
        {L"Zg===", kBad, kBad, "f"},
        {L"Zg==Zg==", kBad, kBad, "f"},
        {L"Zm9vZm9vZm9v\x15A\x26D\x0139\x8076", kBad, kBad, "foofoofoo"}, // their low bytes are valid
    };
    for (const auto &c : cases) {
        test::Note("case", static_cast<uint32_t>(&c - cases));
        const uint32_t count = OrvGetStringSizeInElements(c.text);
        for (uint32_t way = 0; way < 2; way++) {
            const OrvResult expected = way ? c.lenient : c.strict;
            char out[32] = {};
            uint32_t length = kUntouched;
            CHECK_EQUAL(OrvBase64Decode(reinterpret_cast<uint8_t *>(out), sizeof out,
                                        test::GuardedCopy(c.text, count), count, &length,
                                        way ? kLenient : kStrict),
                        expected);
            if (way)
                CHECK_TEXT(out, c.decoded);
            if (OrvFailed(expected))
                CHECK_EQUAL(length, kUntouched);
        }
    }
}

TEST_CASE(Base64StopsAtEveryOtherUnit)
{
    for (uint32_t unit = 0; unit < 0x10000; unit++) {
        const auto c = static_cast<wchar_t>(unit);
        const bool isDigit = (c >= L'A' && c <= L'Z') || (c >= L'a' && c <= L'z') ||
                             (c >= L'0' && c <= L'9') || c == L'+' || c == L'/';
        wchar_t text[] = L"zzzzzzzzzzzzzzzz"; // a vector of units
        const uint32_t at = unit % 15;        // padding may only be the last one
        text[at] = c;
        uint8_t out[12] = {};
        test::Note("unit", unit);
        CHECK_EQUAL(OrvBase64Decode(out, 12, text, 16, nullptr, kStrict),
                    isDigit ? ORV_S_OK : ORV_E_INVALID_DATA);
        CHECK_EQUAL(out[0] != 0, isDigit || at >= 4); // the groups before it are decoded
    }
}

TEST_CASE(Base64Capacities)
{
    const uint8_t data[] = {'f', 'o', 'o'};
    wchar_t room[10];
    for (wchar_t &character : room)
        character = L'#';
    _ORV_UTF16CHAR_STR text = {7, 3, room};
    CHECK_EQUAL(OrvBase64Encode(text, data, 3), ORV_E_BUFFER_TOO_SMALL);
    CHECK_EQUAL(text.length, 7u);
    CHECK_EQUAL(room[0], L'#');
    text.capacity = 4; // without room for the terminator, which is written all the same
    CHECK_EQUAL(OrvBase64Encode(text, data, 3), ORV_S_OK);
    CHECK_EQUAL(text.length, 4u);
    CHECK_TEXT(room, L"Zm9v");
    CHECK_EQUAL(room[5], L'#');

    text.capacity = 7;
    CHECK_EQUAL(OrvBase64EncodeAppend(text, data, 1), ORV_E_BUFFER_TOO_SMALL);
    CHECK_EQUAL(text.length, 4u);
    text.capacity = 9;
    CHECK_EQUAL(OrvBase64EncodeAppend(text, data, 1), ORV_S_OK);
    CHECK_EQUAL(text.length, 8u);
    CHECK_TEXT(room, L"Zm9vZg==");
    text.length = OrvTerminated;
    CHECK_EQUAL(OrvBase64EncodeAppend(text, data, 0), ORV_E_BUFFER_TOO_SMALL);

    // Counts whose sums leave 32 bits: nothing is touched, so no such memory has to exist.
    const uint32_t counts[] = {0xC0000000, 0xFFFFFFFD, 0xFFFFFFFE, 0xFFFFFFFF};
    for (const uint32_t count : counts) {
        test::Note("count", count);
        _ORV_UTF16CHAR_STR all = {0, 0xFFFFFFFF, room};
        CHECK_EQUAL(OrvBase64Encode(all, data, count), ORV_E_BUFFER_TOO_SMALL);
        CHECK_EQUAL(OrvBase64Decode(nullptr, 0x8FFFFFFF, room, count, nullptr, kStrict),
                    ORV_E_BUFFER_TOO_SMALL);
    }
    CHECK_EQUAL(OrvBase64DecodeNecessaryBufferCapacity(0xFFFFFFFC), 0xBFFFFFFDu);
    CHECK_EQUAL(OrvBase64DecodeNecessaryBufferCapacity(0xFFFFFFFD), 0u);

    _ORV_UTF16CHAR_STR none = {0, 0, nullptr};
    CHECK_EQUAL(OrvBase64Encode(none, data, 0), ORV_E_BUFFER_TOO_SMALL);
    CHECK_EQUAL(OrvBase64Encode(text, nullptr, 3), ORV_E_INVALID_ARGUMENT);

    uint8_t out[3];
    uint32_t length = kUntouched;
    CHECK_EQUAL(OrvBase64Decode(out, 2, L"Zg==", 4, &length, kStrict), ORV_E_BUFFER_TOO_SMALL);
    CHECK_EQUAL(OrvBase64Decode(out, 3, L"Zm9v ", 5, &length, kLenient), ORV_E_BUFFER_TOO_SMALL);
    CHECK_EQUAL(OrvBase64Decode(nullptr, 3, L"Zm9v", 4, &length, kStrict), ORV_E_INVALID_ARGUMENT);
    CHECK_EQUAL(OrvBase64Decode(nullptr, 0, nullptr, 0, &length, static_cast<OrvBase64Ignored>(2)),
                ORV_E_NOT_PROVIDED);
    CHECK_EQUAL(length, kUntouched);
    CHECK_EQUAL(OrvBase64Decode(nullptr, 0, nullptr, 0, &length, kStrict), ORV_S_OK);
    CHECK_EQUAL(length, 0u);
}

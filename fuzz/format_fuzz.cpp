// Any format, with arguments that are valid for every directive: both widths give the same text, and a smaller
// array contains its beginning. And any single directive with any value: the text is that of the host's C
// library.

#include "fuzz.h"

#include "orv/runtime/result.h"
#include "orv/text/format.h"

#include <stdio.h>

namespace
{

/// Read as text of either width it is "A"; read as a counted string it has 65 bytes of text behind its
/// pointer.
struct Anything {
    uint16_t length = 'A';
    uint16_t maximum = 0;
    const void *text = zeros;
    static constexpr char zeros[128] = {};
};

const Anything anything;

constexpr uint32_t kRoom = 600;

/// Into an array, with as many arguments as a format of this length can take: each directive up to four
/// words.
template <typename T>
OrvResult FormatArray(T *target, uint32_t capacity, uint32_t &written, const T *format)
{
    const void *const p = &anything;
    return OrvFormatString(OrvCodePageUtf8, target, capacity, &written, format, p, p, p, p, p, p, p, p, p, p,
                           p, p, p, p, p, p, p, p, p, p, p, p, p, p, p, p, p, p, p, p, p, p, p, p, p, p, p, p,
                           p, p, p, p, p, p, p, p, p, p, p, p, p, p, p, p, p, p, p);
}

void CheckFormat(const uint8_t *data, uint32_t size, uint32_t capacity)
{
    ExactArray<char> format(size + 1);
    ExactArray<wchar_t> wideFormat(size + 1);
    for (uint32_t i = 0; i < size; i++) {
        format[i] = static_cast<char>(data[i]);
        wideFormat[i] = data[i];
    }
    format[size] = 0;
    wideFormat[size] = 0;

    static char full[kRoom];
    uint32_t written = 0;
    const OrvResult result = FormatArray<char>(full, kRoom, written, format);
    REQUIRE(result == ORV_S_OK || result == ORV_E_BUFFER_TOO_SMALL || result == ORV_E_INVALID_DATA);
    REQUIRE(written < kRoom && full[written] == 0);

    ExactArray<char> part(capacity);
    uint32_t partWritten = 0;
    const OrvResult partResult = FormatArray<char>(part, capacity, partWritten, format);
    REQUIRE(partWritten < capacity && part[partWritten] == 0);
    if (result == ORV_S_OK)
        REQUIRE(partResult == (written < capacity ? ORV_S_OK : ORV_E_BUFFER_TOO_SMALL));
    REQUIRE(partWritten <= written && memcmp(part, full, partWritten) == 0);

    static wchar_t wide[kRoom];
    uint32_t wideWritten = 0;
    const OrvResult wideResult = FormatArray<wchar_t>(wide, kRoom, wideWritten, wideFormat);
    REQUIRE(wideWritten < kRoom && wide[wideWritten] == 0);
    // Strings and characters differ between the widths; without them the texts are the same.
    if (!memchr(data, 's', size) && !memchr(data, 'Z', size) && !memchr(data, 'c', size)) {
        REQUIRE(wideResult == result && wideWritten == written);
        for (uint32_t i = 0; i < written; i++)
            REQUIRE(wide[i] == static_cast<uint8_t>(full[i]));
    }
}

void CheckDirective(Input &input)
{
    const uint32_t flags = input.Byte();
    const uint32_t extent = input.Byte();
    const char conversion = "diuoxXeEfgGd"[input.Byte() % 12];
    char format[32] = "%";
    for (uint32_t i = 0; i < 5; i++) {
        if (flags >> i & 1)
            strncat(format, &"-+ 0#"[i], 1);
    }
    const bool isDouble = strchr("eEfgG", conversion) != nullptr;
    const bool isWide = !isDouble && flags & 0x80;
    char *end = format + strlen(format);
    if (flags & 0x20)
        end += sprintf(end, "%u", 1 + extent % 40);
    if (flags & 0x40)
        end += sprintf(end, ".%u", extent / 8);
    sprintf(end, "%s%c", isWide ? "ll" : "", conversion);

    uint64_t bits = 0;
    for (uint32_t i = 0; i < 8; i++)
        bits = bits << 8 | input.Byte();
    double number = 0;
    memcpy(&number, &bits, sizeof number);
    if (isDouble && number != number)
        return; // a NaN has a sign in C
    // These eight bytes are a double or a wide integer, and begin with a narrow one.
    static char expected[1200];
    static char text[sizeof expected];
    uint32_t written = 0;
    const auto length = static_cast<uint32_t>(snprintf(expected, sizeof expected, format, bits));
    REQUIRE(OrvFormatString(OrvCodePageUtf8, text, sizeof text, &written, format, bits) == ORV_S_OK);
    REQUIRE(written == length && memcmp(text, expected, length) == 0);
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    constexpr size_t kLongestFormat =
        30; // at two characters a directive and four words each, the arguments last
    if (size < 2)
        return 0;
    Input input(data, size);
    const uint32_t choice = input.Byte();
    if (choice % 2) {
        CheckDirective(input);
    } else if (input.Left() <= kLongestFormat) {
        const uint32_t count = input.Left();
        CheckFormat(input.Bytes(count), count, 1 + choice * 2);
    }
    return 0;
}

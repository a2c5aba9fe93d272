// Any format, with arguments that serve as whatever a directive takes them for: both widths agree, and a
// smaller array holds the beginning of what a larger one does.

#include "fuzz.h"

#include "orv/runtime/result.h"
#include "orv/text/format.h"

#include <string.h>

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

template <typename T>
OrvResult Format(T *target, uint32_t capacity, uint32_t *written, const T *format, ...)
{
    va_list arguments;
    va_start(arguments, format);
    const OrvResult result = OrvFormatStringV(OrvCodePageUtf8, target, capacity, format, written, arguments);
    va_end(arguments);
    return result;
}

/// As many arguments as a format of this length can take: each directive up to four words.
template <typename T>
OrvResult FormatAnything(T *target, uint32_t capacity, uint32_t &written, const T *format)
{
    const void *const p = &anything;
    return Format(target, capacity, &written, format, p, p, p, p, p, p, p, p, p, p, p, p, p, p, p, p, p, p, p,
                  p, p, p, p, p, p, p, p, p, p, p, p, p, p, p, p, p, p, p, p, p, p, p, p, p, p, p, p, p, p, p,
                  p, p, p, p, p, p);
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    constexpr size_t kLongestFormat =
        30; // at two characters a directive and four words each, the arguments last
    if (size < 2 || size > kLongestFormat)
        return 0;
    const uint32_t capacity = 1 + data[0] * 2u;
    data++;
    size--;
    ExactArray<char> format(size + 1);
    ExactArray<wchar_t> wideFormat(size + 1);
    for (size_t i = 0; i < size; i++) {
        format[i] = static_cast<char>(data[i]);
        wideFormat[i] = data[i];
    }
    format[size] = 0;
    wideFormat[size] = 0;

    static char full[kRoom];
    uint32_t written = 0;
    const OrvResult result = FormatAnything<char>(full, kRoom, written, format);
    REQUIRE(result == ORV_S_OK || result == ORV_E_BUFFER_TOO_SMALL || result == ORV_E_INVALID_DATA);
    REQUIRE(written < kRoom && full[written] == 0);

    ExactArray<char> part(capacity);
    uint32_t partWritten = 0;
    const OrvResult partResult = FormatAnything<char>(part, capacity, partWritten, format);
    REQUIRE(partWritten < capacity && part[partWritten] == 0);
    if (result == ORV_S_OK)
        REQUIRE(partResult == (written < capacity ? ORV_S_OK : ORV_E_BUFFER_TOO_SMALL));
    REQUIRE(partWritten <= written && memcmp(part, full, partWritten) == 0);

    static wchar_t wide[kRoom];
    uint32_t wideWritten = 0;
    const OrvResult wideResult = FormatAnything<wchar_t>(wide, kRoom, wideWritten, wideFormat);
    REQUIRE(wideWritten < kRoom && wide[wideWritten] == 0);
    // Strings and characters differ between the widths; without them the texts are the same.
    if (!memchr(data, 's', size) && !memchr(data, 'Z', size) && !memchr(data, 'c', size)) {
        REQUIRE(wideResult == result && wideWritten == written);
        for (uint32_t i = 0; i < written; i++)
            REQUIRE(wide[i] == static_cast<uint8_t>(full[i]));
    }
    return 0;
}

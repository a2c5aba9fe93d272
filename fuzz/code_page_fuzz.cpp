// Any bytes, and any UTF-16, from each page to each other one. The measured size fits, and no smaller one does;
// a direct conversion gives the same as one through UTF-16; converting back returns the text. For UTF-8 it
// returns the same bytes, so no malformed text is accepted.

#include "fuzz.h"

#include "host_page.h"
#include "text/conversions.h"

namespace
{

constexpr uint32_t kUntouched = 0xABCDEF;
constexpr uint32_t kPages = 6;

using test::Pages;

bool IsPlatforms(OrvCodePage page)
{
    return page <= OrvCodePageOem;
}

bool IsUnicode(OrvCodePage page)
{
    return page >= OrvCodePageUtf7;
}

/// A text that was converted; null when the source is none.
template <typename T>
struct Text {
    T *units = nullptr;
    uint32_t length = 0;

    Text() = default;
    Text(const Text &) = delete;
    Text &operator=(const Text &) = delete;
    ~Text() { free(units); }

    bool Equals(const T *other, uint32_t otherLength) const
    {
        return length == otherLength && memcmp(units, other, length * sizeof(T)) == 0;
    }
};

/// Converts into an array that fits, and into one that does not; `pick` says which.
template <typename Target, typename Source>
void Check(Text<Target> &text, const Source *source, uint32_t count, Pages pages, uint32_t pick)
{
    const bool isPlatformOnly = IsPlatforms(pages.from) && IsPlatforms(pages.to);
    uint32_t measured = kUntouched;
    const OrvResult query = Measure(measured, source, pages, count, static_cast<const Target *>(nullptr));
    REQUIRE(query == ORV_S_OK || (query == ORV_E_INVALID_DATA && measured == kUntouched));

    uint32_t required = kUntouched;
    const OrvResult asked = Convert(static_cast<Target *>(nullptr), 0, source, pages, &required, count);
    if (asked == ORV_E_INVALID_DATA) {
        REQUIRE(query == asked || (isPlatformOnly && sizeof(Target) == sizeof(Source)));
        REQUIRE(required == kUntouched);
        ExactArray<Target> any(pick);
        REQUIRE(Convert(any, pick, source, pages, &required, count) == ORV_E_INVALID_DATA);
        REQUIRE(required == kUntouched && (pick == 0 || any[0] == 0));
        return;
    }
    REQUIRE(asked == ORV_E_BUFFER_TOO_SMALL && required > 0);
    // Between the platform's pages the query counts the source; from page 1 it takes another page.
    const bool isExact = sizeof(Target) != sizeof(Source) || pages.from == pages.to ||
                         (!isPlatformOnly && pages.from != OrvCodePageAnsi);
    REQUIRE(!isExact || (query == ORV_S_OK && required == measured + 1));

    const uint32_t tooFew = pick % required;
    ExactArray<Target> small(tooFew);
    uint32_t requiredAgain = kUntouched;
    REQUIRE(Convert(small, tooFew, source, pages, &requiredAgain, count) == ORV_E_BUFFER_TOO_SMALL);
    REQUIRE(requiredAgain == required);
    uint32_t end = 0;
    while (end < tooFew && small[end])
        end++;
    REQUIRE(tooFew == 0 || end < tooFew);

    text.units = static_cast<Target *>(malloc(required * sizeof(Target)));
    REQUIRE(Convert(text.units, required, source, pages, &text.length, count) == ORV_S_OK);
    REQUIRE(text.length == required - 1 && text.units[text.length] == 0);
}

void CheckBytes(const char *source, uint32_t count, Pages pages, uint32_t pick)
{
    Text<wchar_t> text;
    Check(text, source, count, pages, pick);
    Text<char> direct;
    Check(direct, source, count, pages, pick);
    if (pages.from == pages.to) {
        REQUIRE(direct.Equals(source, count));
    } else if (pages.from != OrvCodePageAnsi && text.units) {
        Text<char> indirect; // page 5 may hold what is no text
        Check(indirect, text.units, text.length, {OrvCodePageUtf16, pages.to}, pick);
        REQUIRE(indirect.units ? direct.Equals(indirect.units, indirect.length) : !direct.units);
    }

    // There and back: the bytes may differ (UTF-7 has many forms), the text may not.
    if (!text.units || !IsUnicode(pages.from))
        return;
    Text<char> back;
    Check(back, text.units, text.length, {OrvCodePageUtf16, pages.from}, pick);
    REQUIRE(back.units && (pages.from == OrvCodePageUtf7 || back.Equals(source, count)));
    Text<wchar_t> again;
    Check(again, back.units, back.length, pages, pick);
    REQUIRE(again.Equals(text.units, text.length));
}

void CheckText(const wchar_t *source, uint32_t count, Pages pages, uint32_t pick)
{
    Text<char> bytes;
    Check(bytes, source, count, pages, pick);
    if (!bytes.units || !IsUnicode(pages.to))
        return;
    Text<wchar_t> back;
    Check(back, bytes.units, bytes.length, {pages.to, OrvCodePageUtf16}, pick);
    REQUIRE(back.Equals(source, count));
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    Input input(data, size);
    const uint8_t choice = input.Byte();
    const Pages pages = {static_cast<OrvCodePage>(choice % kPages),
                         static_cast<OrvCodePage>(choice / kPages % kPages)};
    hostPage = static_cast<HostPage>(choice / (kPages * kPages) % 3);
    const uint32_t pick = input.Byte();
    const uint32_t count = input.Left();
    ExactArray<char> bytes(reinterpret_cast<const char *>(input.Bytes(count)), count);
    CheckBytes(bytes, count, pages, pick);
    ExactArray<wchar_t> text(count / sizeof(wchar_t));
    memcpy(text, bytes, count / sizeof(wchar_t) * sizeof(wchar_t));
    CheckText(text, count / sizeof(wchar_t), pages, pick);
    return 0;
}

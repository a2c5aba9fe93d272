#include "orv/orv.h"

namespace
{

/// A sink receives a text piece by piece. This one only counts the characters.
class Counter final : public OrvBasAppendable<wchar_t>
{
public:
    OrvResult Append(const wchar_t *first, const wchar_t *last) override
    {
        characters += static_cast<uint32_t>(last - first);
        return ORV_S_OK;
    }

    uint32_t characters = 0;
};

} // namespace

int OrvMain(int, wchar_t **)
{
    // An array of the caller. A text that does not fit is cut and terminated, and the result says so.
    wchar_t line[12];
    uint32_t written = 0;
    OrvResult result = OrvFormatString(OrvCodePageUtf8, line, 12, &written, L"%s=%08X", L"mask", 0xBEEFu);
    OrvPrint(L"%08X: %s (%u)\n", result, line, written);

    // A heap buffer grows. %hs is byte text in the code page of the call.
    OrvUtf16CharHeapBuffer text;
    result = OrvFormatString(OrvCodePageUtf8, text, L"%5d|%-5d|%+.3f|%hs", -7, 7, 2.0 / 3, "na\xC3\xAFve");
    OrvPrint(L"%08X: %s\n", result, text.GetValue());

    // To append, format into a reference over the buffer. OrvAppendFormatString into the buffer itself
    // replaces its text.
    result = OrvAppendFormatString(OrvMakeMutableStringRef(text), L", %u more", 3u);
    OrvPrint(L"%08X: %s\n", result, text.GetValue());

    // A sink takes text of any length and needs no memory.
    Counter counter;
    OrvBasAppendFormat(counter, L"%I64u bytes, %g%%", 1ull << 40, 12.5);
    OrvPrint(L"%u characters\n", counter.characters);

    // One number, without a format. `end` says where reading stopped; without `end` the rest is ignored.
    wchar_t digits[33];
    OrvConvertNumber2String(digits, 33, 48879, 16, nullptr);
    int value = 0;
    const wchar_t *end = nullptr;
    const OrvResult read = OrvConvertString2Number(value, L"0x7f;", OrvTerminated, 0, &end);
    OrvPrint(L"%s, %d, %08X at '%s'\n", digits, value, read, end);

    double third = 0;
    OrvConvertString2Double(third, L"0.3333", OrvTerminated);
    result = OrvConvertDouble2String(digits, 33, third, 3);
    OrvPrint(L"%s\n", digits);
    return OrvFailed(result) ? 1 : 0;
}

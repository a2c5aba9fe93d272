// orvtool base64: bytes to Base64 text and back.

#include "command.h"
#include "input.h"

#include "orv/runtime/result.h"
#include "orv/text/base64.h"
#include "runtime/heap.h"

namespace orvtool
{

namespace
{

ExitCode Encode(const Command &command, Console &console, Input &input)
{
    // Pieces of whole groups, so that their texts make one.
    constexpr uint32_t kPiece = 3 * 1024;
    uint8_t bytes[kPiece];
    wchar_t room[kPiece / 3 * 4 + 1];
    for (uint32_t count = kPiece; count == kPiece;) {
        OrvResult result = input.Read(bytes, kPiece, count);
        if (OrvFailed(result))
            return ReportFailure(command, console, L"reading", result);
        _ORV_UTF16CHAR_STR text = {0, sizeof room / sizeof room[0], room};
        result = OrvBase64Encode(text, bytes, count);
        if (OrvSucceeded(result))
            result = console.out.Append(room, room + text.length);
        if (OrvFailed(result))
            return ReportFailure(command, console, L"writing", result);
    }
    console.out.Print(L"\n");
    return kExitSuccess;
}

/// A whole input as text, a character for each byte, and the room to decode it.
class Text
{
public:
    OrvResult Read(Input &input)
    {
        constexpr uint32_t kPiece = 4096;
        uint8_t bytes[kPiece];
        for (uint32_t count = kPiece; count == kPiece;) {
            OrvResult result = input.Read(bytes, kPiece, count);
            if (OrvSucceeded(result))
                result = Reserve(length_ + count + kLongestEnd);
            if (OrvFailed(result))
                return result;
            for (uint32_t i = 0; i < count; i++)
                text_[length_++] = bytes[i];
        }
        capacity_ = OrvBase64DecodeNecessaryBufferCapacity(length_ + kLongestEnd);
        data_ = static_cast<uint8_t *>(detail::AllocateBytes(capacity_));
        return data_ ? ORV_S_OK : ORV_E_OUT_OF_MEMORY;
    }

    Text() = default;
    Text(const Text &) = delete;
    Text &operator=(const Text &) = delete;
    ~Text() { detail::FreeBytes(data_); }

    OrvResult Decode(OrvBase64Ignored mode) { return Decode(length_, mode); }

    /// The length of the longest beginning that some end makes valid: the position of the first fault.
    uint32_t FindFault(OrvBase64Ignored mode)
    {
        uint32_t valid = 0;
        uint32_t invalid = length_ + 1;
        while (invalid - valid > 1) {
            const uint32_t middle = valid + (invalid - valid) / 2;
            (CanBeCompleted(middle, mode) ? valid : invalid) = middle;
        }
        return valid;
    }

    uint32_t Length() const { return length_; }
    const uint8_t *Data() const { return data_; }
    uint32_t DataLength() const { return dataLength_; }

private:
    static constexpr uint32_t kLongestEnd = 3;

    OrvResult Reserve(uint32_t count)
    {
        if (count < text_.GetCapacity())
            return ORV_S_OK;
        // The characters lie behind the buffer's own length, which therefore has to follow them.
        text_.GetInternal().length = length_;
        return text_.ReserveElements(count + count / 2);
    }

    OrvResult Decode(uint32_t length, OrvBase64Ignored mode)
    {
        return OrvBase64Decode(data_, capacity_, text_.GetBuffer(), length, &dataLength_, mode);
    }

    bool CanBeCompleted(uint32_t length, OrvBase64Ignored mode)
    {
        static const wchar_t *const kEnds[] = {L"", L"A", L"AA", L"AAA", L"=", L"=="};
        wchar_t kept[kLongestEnd];
        for (uint32_t i = 0; i < kLongestEnd; i++)
            kept[i] = text_[length + i];
        bool isValid = false;
        for (const wchar_t *const end : kEnds) {
            uint32_t i = 0;
            for (; end[i]; i++)
                text_[length + i] = end[i];
            isValid = isValid || OrvSucceeded(Decode(length + i, mode));
        }
        for (uint32_t i = 0; i < kLongestEnd; i++)
            text_[length + i] = kept[i];
        return isValid;
    }

    OrvUtf16CharHeapBuffer text_;
    uint32_t length_ = 0;
    uint8_t *data_ = nullptr;
    uint32_t capacity_ = 0;
    uint32_t dataLength_ = 0;
};

ExitCode Decode(const Command &command, Console &console, Input &input, OrvBase64Ignored mode)
{
    Text text;
    OrvResult result = text.Read(input);
    if (OrvFailed(result))
        return ReportFailure(command, console, L"reading", result);
    result = text.Decode(mode);
    if (OrvFailed(result)) {
        const uint32_t at = text.FindFault(mode);
        console.error.Print(at == text.Length()
                                ? L"orvtool base64: the text ends inside a group at offset %u\n"
                                : L"orvtool base64: this is no Base64 at offset %u\n",
                            at);
        return kExitFailed;
    }
    result = console.out.WriteBytes(text.Data(), text.DataLength());
    return OrvFailed(result) ? ReportFailure(command, console, L"writing", result) : kExitSuccess;
}

ExitCode Run(const Command &command, Console &console, ArgumentReader &arguments)
{
    bool decodes = false;
    bool isStrict = false;
    const wchar_t *path = nullptr;
    while (!arguments.IsAtEnd()) {
        if (arguments.TakeOption(L"-d", L"--decode")) {
            decodes = true;
        } else if (arguments.TakeOption(L"--strict")) {
            isStrict = true;
        } else {
            const ExitCode usage = TakePath(command, console, arguments, path);
            if (usage != kExitSuccess)
                return usage;
        }
    }
    Input input;
    const ExitCode opened = OpenInput(command, console, path, input);
    if (opened != kExitSuccess)
        return opened;
    if (!decodes)
        return Encode(command, console, input);
    return Decode(command, console, input, isStrict ? OrvBase64IgnoreNothing : OrvBase64IgnoreWhiteSpace);
}

} // namespace

const Command kBase64Command = {
    L"base64",
    L"encodes bytes as Base64, and decodes them",
    L"Usage: orvtool base64 [-d] [--strict] [FILE]\n"
    L"\n"
    L"Encodes the bytes of FILE, or of standard input, as one line of text. Without FILE, or when it is "
    L"'-',\n"
    L"standard input is read. Text that is no Base64 decodes to nothing, and the offset of its first fault\n"
    L"is printed.\n"
    L"\n"
    L"  -d, --decode   decodes; white space is skipped\n"
    L"  --strict       white space is a fault too, line ends among it\n",
    Run,
};

} // namespace orvtool

// orvtool base64: encodes bytes as Base64 text, and decodes them.

#include "command.h"
#include "input.h"

#include "orv/runtime/result.h"
#include "orv/text/base64.h"
#include "text_bounds.h"

namespace orvtool
{

namespace
{

constexpr uint32_t kGroupBytes = 3;
constexpr uint32_t kGroupCharacters = 4;
constexpr uint32_t kPieceGroups = 4096;

ExitCode Encode(const Command &command, Console &console, Input &input)
{
    // Each piece has whole groups of bytes, so that the texts of the pieces together are one text.
    constexpr uint32_t kPiece = kPieceGroups * kGroupBytes;
    uint8_t bytes[kPiece];
    wchar_t room[kPieceGroups * kGroupCharacters + 1];
    for (uint32_t count = kPiece; count == kPiece;) {
        OrvResult result = input.Read(bytes, kPiece, count);
        if (OrvFailed(result))
            return ReportFailure(command, console, L"reading", result);
        _ORV_UTF16CHAR_STR text = {0, sizeof room / sizeof room[0], room};
        result = OrvBase64Encode(text, bytes, count);
        if (OrvFailed(result))
            return ReportFailure(command, console, L"encoding", result);
        if (OrvFailed(console.out.Append(room, room + text.length)))
            return kExitFailed;
    }
    console.out.Print(L"\n");
    return kExitSuccess;
}

/// Decodes text. The text is taken character by character, which shows where the first fault is. Whole groups
/// are collected, and the library decodes them.
class Decoder
{
public:
    Decoder(Stream &out, OrvBase64Ignored ignored)
        : out_(out), skipsWhiteSpace_(ignored == OrvBase64IgnoreWhiteSpace)
    {
    }

    /// Takes the next character. False when that character is not allowed at its position.
    bool Take(char character)
    {
        if (skipsWhiteSpace_ && IsWhiteSpace(character))
            return true;
        const uint32_t place = length_ % kGroupCharacters;
        const bool isPadding = character == '=' && place >= 2;
        if (hasEnded_ || (!isPadding && (isPadded_ || !IsBase64Digit(character))))
            return false;
        isPadded_ = isPadding;
        hasEnded_ = isPadded_ && place == kGroupCharacters - 1;
        text_[length_++] = static_cast<wchar_t>(character);
        return true;
    }

    bool IsFull() const { return length_ == kCapacity; }
    bool IsInsideGroup() const { return length_ % kGroupCharacters != 0; }

    /// Decodes and writes the complete groups. Returns 0 or the failure.
    OrvResult Write()
    {
        uint8_t bytes[kPieceGroups * kGroupBytes];
        uint32_t count = 0;
        const OrvResult result = OrvBase64Decode(
            bytes, sizeof bytes, text_, length_ - length_ % kGroupCharacters, &count, OrvBase64IgnoreNothing);
        length_ = 0;
        return OrvSucceeded(result) ? out_.WriteBytes(bytes, count) : result;
    }

private:
    static constexpr uint32_t kCapacity = kPieceGroups * kGroupCharacters;

    static bool IsWhiteSpace(char character)
    {
        return character == ' ' || character == '\t' || character == '\r' || character == '\n';
    }

    Stream &out_;
    const bool skipsWhiteSpace_;
    bool isPadded_ = false; ///< the previous character was a padding character
    bool hasEnded_ = false; ///< the group with padding is complete, and nothing may follow
    uint32_t length_ = 0;
    wchar_t text_[kCapacity];
};

ExitCode Decode(const Command &command, Console &console, Input &input, OrvBase64Ignored ignored)
{
    constexpr uint32_t kPiece = 16 * 1024;
    char bytes[kPiece];
    Decoder decoder(console.out, ignored);
    const wchar_t *problem = nullptr;
    uint64_t offset = 0;
    OrvResult result = ORV_S_OK;
    for (uint32_t count = kPiece; count == kPiece && OrvSucceeded(result) && !problem;) {
        result = input.Read(bytes, kPiece, count);
        if (OrvFailed(result))
            return ReportFailure(command, console, L"reading", result);
        for (uint32_t i = 0; i < count && OrvSucceeded(result) && !problem; i++) {
            if (!decoder.Take(bytes[i])) {
                problem = L"this is no Base64";
                break;
            }
            offset++;
            if (decoder.IsFull())
                result = decoder.Write();
        }
    }
    if (!problem && decoder.IsInsideGroup())
        problem = L"the text ends inside a group";
    if (OrvSucceeded(result))
        result = decoder.Write(); // the groups before a fault are good
    if (console.out.HasFailed())
        return kExitFailed;
    if (OrvFailed(result))
        return ReportFailure(command, console, L"decoding", result);
    if (!problem)
        return kExitSuccess;
    console.error.Print(L"orvtool base64: %s at offset %I64u\n", problem, offset);
    return kExitFailed;
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
    L"standard input is read. Decoding ends at the first character that is not Base64: the groups before it\n"
    L"are written, and the offset is printed.\n"
    L"\n"
    L"  -d, --decode   decodes; white space is skipped\n"
    L"  --strict       white space is a fault too, including line ends\n",
    Run,
};

} // namespace orvtool

// orvtool convert: converts bytes of one code page to bytes of another.
//
// The input is converted in pieces of whole lines, or of whole characters if the page shows where they end.
// So the output is the same as that of a single conversion of everything.

#include "command.h"
#include "input.h"
#include "progress.h"
#include "text_bounds.h"

#include "nt/programs.h"
#include "orv/runtime/result.h"
#include "orv/text/code_page.h"
#include "runtime/heap.h"

namespace orvtool
{

namespace
{

struct NamedPage {
    const wchar_t *name;
    OrvCodePage page;
};

constexpr NamedPage kPages[] = {
    {L"default", OrvCodePageDefault}, {L"ansi", OrvCodePageAnsi},  {L"oem", OrvCodePageOem},
    {L"utf-7", OrvCodePageUtf7},      {L"utf-8", OrvCodePageUtf8}, {L"utf-16", OrvCodePageUtf16},
};

bool FindPage(const wchar_t *name, OrvCodePage &page)
{
    for (const NamedPage &named : kPages) {
        if (Equal(named.name, name)) {
            page = named.page;
            return true;
        }
    }
    return false;
}

struct Direction {
    OrvCodePage from;
    OrvCodePage to;

    /// Whether the conversion accepts malformed text: a plain copy does, and one from UTF-16 to a page of the
    /// platform.
    bool IsLenient() const
    {
        const bool isNative = to == OrvCodePageDefault || to == OrvCodePageOem;
        return from == to || (from == OrvCodePageUtf16 && isNative);
    }
};

/// The input, piece by piece.
class Pieces
{
public:
    Pieces(Input &input, Direction direction) : input_(input), direction_(direction) {}

    /// Moves to the next piece. After the last one the piece is empty. Returns 0, ORV_E_OUT_OF_MEMORY, or the
    /// input's failure.
    OrvResult Next()
    {
        memmove(bytes_.Get(), bytes_.Get() + length_, count_ - length_);
        count_ -= length_;
        offset_ += length_;
        length_ = 0;
        while (length_ == 0 && !isAtEnd_) {
            OrvResult result = Grow();
            uint32_t read = 0;
            if (OrvSucceeded(result))
                result = input_.Read(bytes_.Get() + count_, capacity_ - count_, read);
            if (OrvFailed(result))
                return result;
            count_ += read;
            isAtEnd_ = count_ < capacity_;
            length_ = isAtEnd_ ? count_ : Cut();
        }
        length_ = isAtEnd_ ? count_ : length_;
        return ORV_S_OK;
    }

    const char *Bytes() const { return bytes_.Get(); }
    uint32_t Length() const { return length_; }
    uint64_t Offset() const { return offset_; }

private:
    static constexpr uint32_t kInitialCapacity = 64 * 1024;
    static constexpr uint32_t kLargestCapacity = 1u << 30;

    /// Makes room after the bytes if there is none: at first, and when a line is as long as the array.
    OrvResult Grow()
    {
        if (count_ < capacity_)
            return ORV_S_OK;
        if (capacity_ == kLargestCapacity)
            return ORV_E_OUT_OF_MEMORY;
        const uint32_t capacity = capacity_ ? capacity_ * 2 : kInitialCapacity;
        void *const grown = detail::ReallocateBytes(bytes_.Get(), capacity);
        if (!grown)
            return ORV_E_OUT_OF_MEMORY;
        bytes_.Detach();
        bytes_.Reset(static_cast<char *>(grown));
        capacity_ = capacity;
        return ORV_S_OK;
    }

    uint32_t Cut() const
    {
        const uint32_t line = CutBehindLine(bytes_.Get(), count_, direction_.from);
        // In UTF-7 output a shift may continue over the end of a piece, so only a line end is a good cut.
        if (line || direction_.to == OrvCodePageUtf7)
            return line;
        return CutBehindCharacter(bytes_.Get(), count_, direction_.from);
    }

    Input &input_;
    Direction direction_;
    detail::HeapArray<char> bytes_;
    uint32_t capacity_ = 0;
    uint32_t count_ = 0;
    uint32_t length_ = 0;
    uint64_t offset_ = 0;
    bool isAtEnd_ = false;
};

/// Converts text, and keeps its array for the next text.
class Converter
{
public:
    explicit Converter(Direction direction) : direction_(direction) {}

    OrvResult Convert(const char *bytes, uint32_t count)
    {
        if (direction_.IsLenient() && !IsText(bytes, count, direction_.from))
            return ORV_E_INVALID_DATA;
        for (;;) {
            const OrvResult result = OrvConvertMb2MbString(result_.Get(), capacity_, bytes, direction_.from,
                                                           direction_.to, &length_, count);
            if (result != ORV_E_BUFFER_TOO_SMALL)
                return result;
            capacity_ = 0;
            result_.Reset(static_cast<char *>(detail::AllocateBytes(length_)));
            if (!result_)
                return ORV_E_OUT_OF_MEMORY;
            capacity_ = length_;
        }
    }

    const char *Result() const { return result_.Get(); }
    uint32_t Length() const { return length_; }

private:
    Direction direction_;
    detail::HeapArray<char> result_;
    uint32_t capacity_ = 0;
    uint32_t length_ = 0;
};

ExitCode Convert(const Command &command, Console &console, Input &input, Direction direction)
{
    Pieces pieces(input, direction);
    Converter converter(direction);
    uint64_t fault = 0;
    OrvResult result = ORV_S_OK;
    const wchar_t *action = nullptr;
    {
        Progress progress(console.error, input.Size());
        do {
            action = L"reading";
            result = pieces.Next();
            if (OrvFailed(result) || pieces.Length() == 0)
                break;
            action = L"converting";
            result = converter.Convert(pieces.Bytes(), pieces.Length());
            const bool isMalformed = result == ORV_E_INVALID_DATA;
            if (isMalformed) { // the part before the fault is good
                const uint32_t valid = FindFault(pieces.Bytes(), pieces.Length(), direction.from);
                fault = pieces.Offset() + valid;
                result = converter.Convert(pieces.Bytes(), valid);
            }
            if (OrvSucceeded(result))
                result = console.out.WriteBytes(converter.Result(), converter.Length());
            if (isMalformed && OrvSucceeded(result))
                result = ORV_E_INVALID_DATA;
            progress.Advance(pieces.Length());
        } while (OrvSucceeded(result));
    }
    if (console.out.HasFailed())
        return kExitFailed;
    if (result == ORV_E_INVALID_DATA) {
        console.error.Print(L"orvtool convert: the input is malformed at offset %I64u\n", fault);
        return kExitFailed;
    }
    return OrvFailed(result) ? ReportFailure(command, console, action, result) : kExitSuccess;
}

ExitCode Run(const Command &command, Console &console, ArgumentReader &arguments)
{
    const wchar_t *from = nullptr;
    const wchar_t *to = nullptr;
    const wchar_t *path = nullptr;
    while (!arguments.IsAtEnd()) {
        if (arguments.TakeValueOption(L"--from", from) || arguments.TakeValueOption(L"--to", to))
            continue;
        const ExitCode usage = TakePath(command, console, arguments, path);
        if (usage != kExitSuccess)
            return usage;
    }
    if (!from || !to)
        return UsageError(command, console, L"--from PAGE and --to PAGE are wanted", nullptr);
    Direction direction = {};
    if (!FindPage(from, direction.from))
        return UsageError(command, console, L"there is no page", from);
    if (!FindPage(to, direction.to))
        return UsageError(command, console, L"there is no page", to);
    Input input;
    const ExitCode opened = OpenInput(command, console, path, input);
    return opened == kExitSuccess ? Convert(command, console, input, direction) : opened;
}

} // namespace

const Command kConvertCommand = {
    L"convert",
    L"converts text from one code page to another",
    L"Usage: orvtool convert --from PAGE --to PAGE [FILE]\n"
    L"\n"
    L"Converts the bytes of FILE, or of standard input. Without FILE, or when it is '-', standard input is\n"
    L"read. Line ends and byte order marks are characters like others. The conversion ends at the first\n"
    L"malformed byte sequence: the text before it is written, and its offset is printed, in UTF-7 the "
    L"offset\n"
    L"of the shift.\n"
    L"\n"
    L"PAGE is one of\n"
    L"  default   the platform's ANSI page\n"
    L"  ansi      Latin-1; as the source of default or oem the platform's ANSI page\n"
    L"  oem       the platform's OEM page\n"
    L"  utf-7     RFC 2152\n"
    L"  utf-8     RFC 3629\n"
    L"  utf-16    little-endian\n"
    L"\n"
    L"A character that is missing in one of the first three pages becomes the platform's replacement, in\n"
    L"Latin-1 a '?'.\n",
    Run,
};

} // namespace orvtool

// The input of a command: a file or standard input, read as bytes or as lines of text.

#pragma once

#include "command.h"

#include "nt/nt.h"
#include "orv/text/heap_buffer.h"

namespace orvtool
{

/// A file or standard input, read from its start to its end.
class Input
{
public:
    Input() = default;
    Input(const Input &) = delete;
    Input &operator=(const Input &) = delete;
    ~Input();

    /// Opens the file; null and "-" mean standard input. Returns 0 or the failure to open.
    OrvResult Open(const wchar_t *path);

    /// Reads until the array is full or the input ends; `count` is below `capacity` only then. Returns 0 or
    /// the platform's failure.
    OrvResult Read(void *bytes, uint32_t capacity, uint32_t &count);

    /// Reads the bytes that are available, and waits for at least one. `count` is 0 only when the input has
    /// ended. Returns as Read.
    OrvResult ReadSome(void *bytes, uint32_t capacity, uint32_t &count);

    /// The size of the file in bytes; 0 when the input is not a file, for example a pipe.
    uint64_t Size() const;

private:
    HANDLE handle_ = nullptr;
    bool isOwned_ = false;
};

/// Takes the next argument as the command's only FILE. Returns kExitSuccess, or reports the usage error.
ExitCode TakePath(const Command &command, Console &console, ArgumentReader &arguments, const wchar_t *&path);

/// Opens FILE. Returns kExitSuccess, or reports the failure.
ExitCode OpenInput(const Command &command, Console &console, const wchar_t *path, Input &input);

/// The lines of an input, as UTF-16, without their line ends. The last line may have no line end. The input
/// is UTF-8, with or without a byte order mark, or UTF-16 of either byte order after such a mark. A byte that
/// belongs to no character of UTF-8 becomes the replacement character, and so does half a unit at the end of
/// UTF-16.
class LineReader
{
public:
    explicit LineReader(Input &input) : input_(input) {}

    /// Replaces `line` by the next line. Clears `found` when there is no line left. Returns 0 or the first
    /// failure.
    OrvResult Take(OrvUtf16CharHeapBuffer &line, bool &found);

private:
    enum class Encoding { kUtf8, kUtf16LittleEndian, kUtf16BigEndian };

    OrvResult TakeByteOrderMark();
    OrvResult Refill();
    bool IsAtLineFeed() const;
    uint32_t UnitSize() const { return encoding_ == Encoding::kUtf8 ? 1 : sizeof(wchar_t); }
    OrvResult Convert(OrvUtf16CharHeapBuffer &line);
    OrvResult ConvertUtf8(OrvUtf16CharHeapBuffer &line, uint32_t length);
    OrvResult ConvertUtf16(OrvUtf16CharHeapBuffer &line, uint32_t length);

    Input &input_;
    OrvMbCharHeapBuffer collected_; ///< the bytes of a line
    Encoding encoding_ = Encoding::kUtf8;
    bool isStarted_ = false;
    uint32_t next_ = 0;
    uint32_t count_ = 0;
    char bytes_[4096];
};

/// Passes every line of standard input, terminated, and its number, from 1, to `take` until that returns
/// false. Returns false if `take` did, if reading failed, which is reported, or if standard output has
/// failed.
template <typename TakeLine>
bool ForEachLine(const Command &command, Console &console, TakeLine take)
{
    Input input;
    input.Open(nullptr);
    LineReader reader(input);
    OrvUtf16CharHeapBuffer line;
    bool found = false;
    for (uint32_t number = 1;; number++) {
        const OrvResult result = reader.Take(line, found);
        if (OrvFailed(result))
            ReportFailure(command, console, L"reading", result);
        if (OrvFailed(result) || !found)
            return OrvSucceeded(result);
        if (!take(line.GetValue(), number) || console.out.HasFailed())
            return false;
    }
}

} // namespace orvtool

// Where a command reads from: a file, or standard input. Bytes as they come, or lines of UTF-8 text.

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

    /// Null and "-" are standard input. Returns 0 or why the file cannot be opened.
    OrvResult Open(const wchar_t *path);

    /// Reads until the array is full or the input ends; `count` is below `capacity` only then. Returns 0 or
    /// the platform's failure.
    OrvResult Read(void *bytes, uint32_t capacity, uint32_t &count);

    /// Reads what is there, waiting for at least one byte; `count` is 0 only when the input has ended.
    /// Returns as Read does.
    OrvResult ReadSome(void *bytes, uint32_t capacity, uint32_t &count);

    /// The size of a file in bytes; 0 when the input is none, such as a pipe.
    uint64_t Size() const;

private:
    HANDLE handle_ = nullptr;
    bool isOwned_ = false;
};

/// Takes the next argument as the command's only FILE. kExitSuccess, or the usage error has been reported.
ExitCode TakePath(const Command &command, Console &console, ArgumentReader &arguments, const wchar_t *&path);

/// Opens FILE. kExitSuccess, or the failure has been reported.
ExitCode OpenInput(const Command &command, Console &console, const wchar_t *path, Input &input);

/// The lines of an input, as UTF-16, without their line ends. The last line may have none. The input is
/// UTF-8, with or without a byte order mark, or UTF-16 of either byte order behind such a mark. A byte that
/// belongs to no character of UTF-8 becomes the replacement character, and so does half a unit at the end of
/// UTF-16.
class LineReader
{
public:
    explicit LineReader(Input &input) : input_(input) {}

    /// Replaces `line` by the next one; clears `found` when there is none left. Returns 0 or the first
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

/// Hands every line of standard input, terminated, and its number from 1 on to `take`, until that returns
/// false. Returns false then, when reading fails, which is reported, and when standard output has failed.
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

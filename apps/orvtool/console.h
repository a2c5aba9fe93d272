// The program's standard output and error, and files of text: UTF-16 text in, bytes out. A console gets the
// OEM page that it shows; a pipe or a file gets UTF-8, in which a surrogate without its other half is the
// replacement character, or UTF-16 as it is.

#pragma once

#include "nt/nt.h"
#include "orv/runtime/result.h"
#include "orv/text/format.h"
#include "program/standard_stream.h"

namespace orvtool
{

/// A buffered stream over a handle that it does not own. A failed write is remembered; everything after it is
/// dropped.
class Stream final : public OrvBasAppendable<wchar_t>
{
public:
    explicit Stream(HANDLE handle) : handle_(handle), isConsole_(detail::IsConsole(handle)) {}
    Stream(const Stream &) = delete;
    Stream &operator=(const Stream &) = delete;
    ~Stream() { Flush(); }

    OrvResult Append(const wchar_t *first, const wchar_t *last) override;

    /// Formats as the library does, then flushes complete lines when the stream is a console. Returns 0 or
    /// the first failure of the stream, for those who print much.
    OrvResult Print(const wchar_t *format, ...);

    /// Bytes as they are, behind the text so far. Returns 0 or the first failure of the stream.
    OrvResult WriteBytes(const void *bytes, uint32_t count);

    /// Returns 0 or the first failure of the stream.
    OrvResult Flush();

    /// Whether something could not be written. Work for this stream alone is of no use any more then.
    bool HasFailed() const { return OrvFailed(result_); }

    bool IsConsole() const { return isConsole_; }

    /// From now on text goes out as UTF-16, little-endian, with a byte order mark before it; a console still
    /// gets what it shows. Returns 0 or the first failure of the stream.
    OrvResult UseUtf16();

private:
    static constexpr uint32_t kCapacity = 2048;

    void ReplaceLoneSurrogates(uint32_t count);

    HANDLE handle_;
    bool isConsole_;
    bool isUtf16_ = false;
    OrvResult result_ = ORV_S_OK;
    uint32_t length_ = 0;
    wchar_t characters_[kCapacity];
};

/// Both streams of the process, handed to every command.
struct Console {
    Stream &out;
    Stream &error;
};

} // namespace orvtool

// The program's standard output and error, and files of text: they take UTF-16 text and write bytes. A
// console gets the OEM page that it shows. A pipe or a file gets UTF-8, in which a surrogate without its
// other half becomes the replacement character, or unchanged UTF-16.

#pragma once

#include "nt/nt.h"
#include "orv/runtime/result.h"
#include "orv/text/format.h"
#include "program/standard_stream.h"

namespace orvtool
{

/// A buffered stream over a handle that it does not own. It keeps the first failure of a write, and drops
/// everything after it.
class Stream final : public OrvBasAppendable<wchar_t>
{
public:
    explicit Stream(HANDLE handle) : handle_(handle), isConsole_(detail::IsConsole(handle)) {}
    Stream(const Stream &) = delete;
    Stream &operator=(const Stream &) = delete;
    ~Stream() { Flush(); }

    OrvResult Append(const wchar_t *first, const wchar_t *last) override;

    /// Formats as the library does, and flushes complete lines if the stream is a console. Returns 0 or the
    /// first failure of the stream, so that a caller that prints much can stop.
    OrvResult Print(const wchar_t *format, ...);

    /// Writes bytes unchanged after the text so far. Returns 0 or the first failure of the stream.
    OrvResult WriteBytes(const void *bytes, uint32_t count);

    /// Returns 0 or the first failure of the stream.
    OrvResult Flush();

    /// Whether something could not be written. Then work only for this stream is useless.
    bool HasFailed() const { return OrvFailed(result_); }

    bool IsConsole() const { return isConsole_; }

    /// Writes text as UTF-16 from now on, little-endian, after a byte order mark. A console still gets its
    /// OEM page. Returns 0 or the first failure of the stream.
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

/// Both streams of the process, passed to every command.
struct Console {
    Stream &out;
    Stream &error;
};

} // namespace orvtool

// The platform's page conversions, and where a text is cut into pieces for them.

#include "text/native_page.h"

#include "text/transcode.h"

namespace detail
{

namespace
{

constexpr uint32_t kLongestPiece = 32766;
constexpr uint32_t kMostUtf16Bytes = 65534;
constexpr uint32_t kMostBytes = 65535;
/// The units that always fit into kMostBytes with a terminator: a unit becomes at most three bytes.
constexpr uint32_t kLongestWidePiece = (kMostBytes - 1) / 3;

// These counted strings refer to the caller's text, which the platform's functions only read.

ANSI_STRING Describe(const char *text, uint32_t count)
{
    const auto size = static_cast<USHORT>(count);
    return {size, size, const_cast<char *>(text)};
}

UNICODE_STRING Describe(const wchar_t *text, uint32_t count)
{
    const auto size = static_cast<USHORT>(count * sizeof(wchar_t));
    return {size, size, const_cast<wchar_t *>(text)};
}

/// The position at or before `end` where a character of UTF-8 begins.
uint32_t Utf8Boundary(const char *text, uint32_t end)
{
    constexpr uint32_t kLongestTail = 3;
    for (uint32_t at = end; at + kLongestTail >= end; at--) {
        if ((static_cast<uint8_t>(text[at]) & 0xC0) != 0x80)
            return at;
    }
    return end; // no character has that many continuation bytes: the text is malformed here
}

uint32_t SurrogateBoundary(const wchar_t *text, uint32_t end)
{
    return IsHighSurrogate(LoadUnit(text + end - 1)) ? end - 1 : end;
}

} // namespace

NativePageReader::NativePageReader(OrvCodePage page)
    : measure_(page == OrvCodePageOem ? RtlxOemStringToUnicodeSize : RtlxAnsiStringToUnicodeSize),
      convert_(page == OrvCodePageOem ? RtlOemStringToUnicodeString : RtlAnsiStringToUnicodeString)
{
}

uint32_t NativePageReader::PieceLength(const char *source, uint32_t count) const
{
    if (count <= kLongestPiece)
        return count;
    const char kEuroSign[] = {'\xE2', '\x82', '\xAC'};
    if (Measure(kEuroSign, sizeof kEuroSign) == 1) // UTF-8: no other page has characters of three bytes
        return Utf8Boundary(source, kLongestPiece);
    // The byte after the piece belongs to the piece's last character if it does not make the text longer.
    const bool cutsCharacter = Measure(source, kLongestPiece + 1) == Measure(source, kLongestPiece);
    return cutsCharacter ? kLongestPiece - 1 : kLongestPiece;
}

uint32_t NativePageReader::Measure(const char *source, uint32_t count) const
{
    const ANSI_STRING bytes = Describe(source, count);
    return measure_(&bytes) / sizeof(wchar_t) - 1;
}

NTSTATUS NativePageReader::Convert(wchar_t *target, uint32_t capacity, const char *source, uint32_t count,
                                   uint32_t &written) const
{
    const uint32_t room =
        capacity < kMostUtf16Bytes / sizeof(wchar_t) ? capacity * sizeof(wchar_t) : kMostUtf16Bytes;
    const ANSI_STRING bytes = Describe(source, count);
    UNICODE_STRING text = {0, static_cast<USHORT>(room), target};
    const NTSTATUS status = convert_(&text, &bytes, false);
    written = text.Length / sizeof(wchar_t);
    return status;
}

NativePageWriter::NativePageWriter(OrvCodePage page)
    : measure_(page == OrvCodePageOem ? RtlxUnicodeStringToOemSize : RtlxUnicodeStringToAnsiSize),
      convert_(page == OrvCodePageOem ? RtlUnicodeStringToOemString : RtlUnicodeStringToAnsiString)
{
}

uint32_t NativePageWriter::PieceLength(const wchar_t *source, uint32_t count) const
{
    uint32_t length = count;
    if (length > kLongestPiece)
        length = SurrogateBoundary(source, kLongestPiece);
    if (length > kLongestWidePiece && Measure(source, length) >= kMostBytes)
        length = SurrogateBoundary(source, kLongestWidePiece);
    return length;
}

uint32_t NativePageWriter::Measure(const wchar_t *source, uint32_t count) const
{
    const UNICODE_STRING text = Describe(source, count);
    return measure_(&text) - 1;
}

NTSTATUS NativePageWriter::Convert(char *target, uint32_t capacity, const wchar_t *source, uint32_t count,
                                   uint32_t &written) const
{
    const UNICODE_STRING text = Describe(source, count);
    ANSI_STRING bytes = {0, static_cast<USHORT>(capacity < kMostBytes ? capacity : kMostBytes), target};
    const NTSTATUS status = convert_(&bytes, &text, false);
    written = bytes.Length;
    return status;
}

} // namespace detail

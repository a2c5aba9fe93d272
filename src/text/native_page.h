// Conversions between UTF-16 and the platform's ANSI and OEM pages.
//
// The platform counts the bytes of a text in 16 bits, so a longer text is converted in pieces of at most
// 32766 characters. No piece ends inside a character: not between surrogates, and not between the bytes of a
// multi-byte character. The platform's size functions know whether the page is a multi-byte one, and return
// at once when it is not. The platform's flags for multi-byte pages are not used, because on some systems
// they do not include UTF-8.

#pragma once

#include "nt/nt.h"
#include "orv/text/code_page.h"

namespace detail
{

/// From a page of the platform to UTF-16.
class NativePageReader
{
public:
    typedef char Source;
    typedef wchar_t Target;

    /// OrvCodePageOem selects the OEM page, any other value the ANSI page.
    explicit NativePageReader(OrvCodePage page);

    /// The length of the next piece of a text of `count` bytes.
    uint32_t PieceLength(const char *source, uint32_t count) const;

    uint32_t Measure(const char *source, uint32_t count) const;

    /// Converts a piece and writes a terminator, which `written` does not count.
    NTSTATUS Convert(wchar_t *target, uint32_t capacity, const char *source, uint32_t count,
                     uint32_t &written) const;

private:
    ULONG(NTAPI *measure_)(const ANSI_STRING *);
    NTSTATUS(NTAPI *convert_)(UNICODE_STRING *, const ANSI_STRING *, BOOLEAN);
};

/// From UTF-16 to a page of the platform.
class NativePageWriter
{
public:
    typedef wchar_t Source;
    typedef char Target;

    explicit NativePageWriter(OrvCodePage page);

    uint32_t PieceLength(const wchar_t *source, uint32_t count) const;
    uint32_t Measure(const wchar_t *source, uint32_t count) const;
    NTSTATUS Convert(char *target, uint32_t capacity, const wchar_t *source, uint32_t count,
                     uint32_t &written) const;

private:
    ULONG(NTAPI *measure_)(const UNICODE_STRING *);
    NTSTATUS(NTAPI *convert_)(ANSI_STRING *, const UNICODE_STRING *, BOOLEAN);
};

} // namespace detail

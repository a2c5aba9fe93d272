// The platform's ANSI and OEM pages.
//
// The platform describes a text in 16 bits' worth of bytes, so a longer one is converted piece by piece, at
// most 32766 characters each. No piece ends inside a character: not between surrogates, and not between the
// bytes of a multi-byte page. The platform's size functions know for themselves whether the page is a
// multi-byte one, and answer at once where it is not; its flags for that are not asked, because they do not
// speak of UTF-8 everywhere.

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

    /// Any page but OrvCodePageOem is the ANSI page.
    explicit NativePageReader(OrvCodePage page);

    /// How much of a text of `count` bytes the next piece takes.
    uint32_t PieceLength(const char *source, uint32_t count) const;

    uint32_t Measure(const char *source, uint32_t count) const;

    /// Converts a piece, and writes a terminator; `written` does not count it.
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

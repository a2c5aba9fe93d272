// The table of converters: a row for each source page, a column for each target page. The first row and the
// first column are empty.

#include "text/code_page_matrix.h"

#include "text/latin1.h"
#include "text/utf16.h"
#include "text/utf7.h"
#include "text/utf8.h"
#include "text/utf8_run.h"

namespace detail
{

namespace
{

/// Between encodings without state.
template <typename From, typename To>
OrvResult Convert(const uint8_t *source, uint32_t size, uint8_t *target, uint32_t room, uint64_t &converted)
{
    return target ? Transcode<From, To>(source, size, target, room, converted)
                  : Measure<From, To>(source, size, converted);
}

/// From UTF-7 or to UTF-7.
template <typename Reader, typename Writer>
OrvResult ConvertThrough(const uint8_t *source, uint32_t size, uint8_t *target, uint32_t room,
                         uint64_t &converted)
{
    const Reader reader(source, size);
    if (target)
        return TranscodeThrough(reader, typename Writer::template On<TargetArray>({target, room}), converted);
    return TranscodeThrough(reader, typename Writer::template On<TargetCount>({}), converted);
}

/// From a page to itself: copies the bytes without a check.
OrvResult Copy(const uint8_t *source, uint32_t size, uint8_t *target, uint32_t room, uint64_t &converted)
{
    if (target) {
        if (size > room)
            return ORV_E_BUFFER_TOO_SMALL;
        MoveBytes(target, source, size);
    }
    converted = size;
    return ORV_S_OK;
}

constexpr uint32_t kColumns = 5;

constexpr uint32_t ColumnOf(OrvCodePage page)
{
    switch (page) {
    case OrvCodePageAnsi:
        return 1;
    case OrvCodePageUtf7:
        return 2;
    case OrvCodePageUtf8:
        return 3;
    case OrvCodePageUtf16:
        return 4;
    default:
        return 0;
    }
}

constexpr CodePageConverter kConverters[kColumns][kColumns] = {
    {},
    {nullptr, Copy, ConvertThrough<PlainReader<Latin1>, Utf7Writer>, Convert<Latin1, Utf8>,
     Convert<Latin1, Utf16>},
    {nullptr, ConvertThrough<Utf7Reader, PlainWriter<Latin1>>, Copy,
     ConvertThrough<Utf7Reader, PlainWriter<Utf8>>, ConvertThrough<Utf7Reader, PlainWriter<Utf16>>},
    {nullptr, Convert<Utf8, Latin1>, ConvertThrough<PlainReader<Utf8>, Utf7Writer>, Copy,
     Convert<Utf8, Utf16>},
    {nullptr, Convert<Utf16, Latin1>, ConvertThrough<PlainReader<Utf16>, Utf7Writer>, Convert<Utf16, Utf8>,
     Copy},
};

} // namespace

CodePageConverter FindCodePageConverter(OrvCodePage from, OrvCodePage to)
{
    return kConverters[ColumnOf(from)][ColumnOf(to)];
}

} // namespace detail

// The table of converters: a row for each source, a column for each target. The first of both is empty.

#include "text/code_page_matrix.h"

#include "text/latin1.h"
#include "text/utf16.h"
#include "text/utf7.h"
#include "text/utf8.h"

namespace detail
{

namespace
{

template <typename Reader, template <template <typename> class> class WriterOn>
OrvResult Convert(const uint8_t *source, uint32_t size, uint8_t *target, uint32_t room, uint64_t &converted)
{
    Reader reader(source, size);
    const auto run = [&](auto &writer) {
        const OrvResult result = Transcode(reader, writer);
        if (OrvSucceeded(result))
            converted = writer.Target().Size();
        return result;
    };
    if (target) {
        WriterOn<TargetArray> writer({target, room});
        return run(writer);
    }
    WriterOn<TargetCount> writer({});
    return run(writer);
}

/// From a page to itself, whatever the bytes mean.
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
    {nullptr, Copy, Convert<Latin1Reader, Utf7Writer>, Convert<Latin1Reader, Utf8Writer>,
     Convert<Latin1Reader, Utf16Writer>},
    {nullptr, Convert<Utf7Reader, Latin1Writer>, Copy, Convert<Utf7Reader, Utf8Writer>,
     Convert<Utf7Reader, Utf16Writer>},
    {nullptr, Convert<Utf8Reader, Latin1Writer>, Convert<Utf8Reader, Utf7Writer>, Copy,
     Convert<Utf8Reader, Utf16Writer>},
    {nullptr, Convert<Utf16Reader, Latin1Writer>, Convert<Utf16Reader, Utf7Writer>,
     Convert<Utf16Reader, Utf8Writer>, Copy},
};

} // namespace

CodePageConverter FindCodePageConverter(OrvCodePage from, OrvCodePage to)
{
    return kConverters[ColumnOf(from)][ColumnOf(to)];
}

} // namespace detail

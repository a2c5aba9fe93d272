// Streams that compress to another stream and decompress from one: any pieces, every failure of the stream
// below, and streams that are cut or joined. Fuzz targets damage them. One set of cases runs over all formats.

#include "orv/compress/compressing_stream.h"
#include "orv/compress/decompressing_stream.h"

#include "harness/memory.h"
#include "harness/test.h"
#include "orv/runtime/result.h"
#include "orv/stream/memory_stream.h"

namespace
{

struct Zlib {
    typedef OrvDeflateWriteStream Writer;
    typedef OrvInflateReadStream Reader;
    static OrvResult Create(Writer &writer, IOrvStream &target) { return writer.Create(target); }
    static OrvResult Create(Reader &reader, IOrvStream &source) { return reader.Create(source); }
};
struct RawDeflate : Zlib {
    static OrvResult Create(Writer &writer, IOrvStream &target)
    {
        return writer.Create(target, OrvDeflateRaw, 9);
    }
    static OrvResult Create(Reader &reader, IOrvStream &source)
    {
        return reader.Create(source, OrvDeflateRaw);
    }
};
struct Bzip2 {
    typedef OrvBZ2WriteStream Writer;
    typedef OrvBZ2ReadStream Reader;
    static OrvResult Create(Writer &writer, IOrvStream &target) { return writer.Create(target); }
    static OrvResult Create(Reader &reader, IOrvStream &source) { return reader.Create(source); }
};

/// Takes and gives at most `piece` bytes a call, and fails or lies at the call of a number.
class Below final : public IOrvStream
{
public:
    explicit Below(uint32_t piece, uint32_t failAt = 0, bool lies = false)
        : piece_(piece), failAt_(failAt), lies_(lies)
    {
    }

    OrvResult Read(void *bytes, uint32_t size, uint32_t &read) override
    {
        if (++calls == failAt_)
            return Fail(size, read);
        return buffer.Read(bytes, size < piece_ ? size : piece_, read);
    }

    OrvResult Write(const void *bytes, uint32_t size, uint32_t &written) override
    {
        if (++calls == failAt_)
            return Fail(size, written);
        return buffer.Write(bytes, size < piece_ ? size : piece_, written);
    }

    OrvBufferStream buffer;
    uint32_t calls = 0;

private:
    OrvResult Fail(uint32_t size, uint32_t &count) const
    {
        count = size + 1;
        return lies_ ? ORV_S_OK : ORV_E_DISK_FULL;
    }

    uint32_t piece_;
    uint32_t failAt_;
    bool lies_;
};

constexpr uint32_t kSize = 100000; // more than the buffers of both ends
uint8_t source[kSize];
uint8_t unpacked[kSize + 1];

/// Bytes of which a half can be packed.
void MakeSource()
{
    uint32_t random = 12345;
    for (uint32_t i = 0; i < kSize; i++) {
        random = random * 1664525 + 1013904223;
        source[i] = static_cast<uint8_t>(i / 1000 % 2 ? random >> 24 : "text"[random >> 30]);
    }
}

OrvResult WriteInPieces(IOrvStream &stream, uint32_t size, uint32_t piece)
{
    for (uint32_t at = 0; at < size; at += piece) {
        uint32_t written = 77;
        const uint32_t count = size - at < piece ? size - at : piece;
        const OrvResult result = stream.Write(source + at, count, written);
        if (OrvFailed(result)) {
            CHECK_EQUAL(written, 0u);
            return result;
        }
        CHECK_EQUAL(written, count);
    }
    return ORV_S_OK;
}

/// Reads on until a failure, to an unmapped page. Whether what was read is the start of the source.
OrvResult ReadInPieces(IOrvStream &stream, uint32_t piece, uint32_t &size)
{
    static test::GuardedPages pages(kSize + 1);
    for (size = 0;;) {
        const uint32_t room = kSize + 1 - size < piece ? kSize + 1 - size : piece;
        auto *const bytes = pages.Place<uint8_t>(room);
        uint32_t read = 77;
        const OrvResult result = stream.Read(bytes, room, read);
        if (OrvFailed(result)) {
            CHECK_EQUAL(read, 0u);
            return result;
        }
        CHECK(read > 0 && read <= room);
        __builtin_memcpy(unpacked + size, bytes, read);
        size += read;
    }
}

template <typename Format>
OrvResult Pack(Below &target, uint32_t size, uint32_t piece = kSize)
{
    typename Format::Writer writer;
    OrvResult result = Format::Create(writer, target);
    if (OrvSucceeded(result))
        result = WriteInPieces(writer, size, piece);
    return OrvSucceeded(result) ? writer.Finish() : result;
}

template <typename Format>
void CheckRoundTrips()
{
    const struct {
        uint32_t size;
        uint32_t piece;      // of the caller
        uint32_t belowPiece; // of the stream below
    } cases[] = {{0, 1, 1},        {1, 1, 1},           {3000, 1, 1},
                 {3000, 7, kSize}, {kSize, 999, 16383}, {kSize, kSize, kSize}};
    for (const auto &c : cases) {
        test::Note("case", static_cast<uint32_t>(&c - cases));
        Below below(c.belowPiece);
        CHECK_EQUAL(Pack<Format>(below, c.size, c.piece), ORV_S_OK);
        CHECK(c.size < kSize || below.buffer.GetLength() < kSize * 4 / 5);
        typename Format::Reader reader;
        CHECK_EQUAL(Format::Create(reader, below), ORV_S_OK);
        uint32_t size = 0;
        CHECK_EQUAL(ReadInPieces(reader, c.piece, size), ORV_E_END_OF_DATA);
        CHECK_EQUAL(size, c.size);
        CHECK(__builtin_memcmp(unpacked, source, c.size) == 0);
        uint64_t position = 0;
        CHECK_EQUAL(reader.GetPosition(position), ORV_S_OK);
        CHECK(position == c.size);
        CHECK_EQUAL(reader.GetUnread(), 0u);
    }
}

template <typename Format>
void CheckFailures()
{
    Below whole(kSize);
    CHECK_EQUAL(Pack<Format>(whole, kSize), ORV_S_OK);
    uint32_t written = 0;
    for (uint32_t lies = 0; lies < 2; lies++) {
        const OrvResult expected = lies ? ORV_E_WRITE_FAULT : ORV_E_DISK_FULL;
        OrvResult result = expected;
        uint32_t failAt = 0;
        while (OrvFailed(result) && ++failAt < 100) {
            test::Note("write", failAt);
            Below below(kSize, failAt, lies);
            typename Format::Writer writer;
            CHECK_EQUAL(Format::Create(writer, below), ORV_S_OK);
            result = WriteInPieces(writer, kSize, 5000);
            if (OrvSucceeded(result))
                result = writer.Finish();
            if (OrvSucceeded(result))
                break;
            CHECK_EQUAL(result, expected);
            const uint32_t calls = below.calls;
            CHECK_EQUAL(writer.Write(source, 1, written), expected); // it lasts
            CHECK_EQUAL(writer.Flush(), expected);
            CHECK_EQUAL(writer.Finish(), expected);
            CHECK_EQUAL(below.calls, calls);
            writer.Destroy();
            CHECK_EQUAL(writer.Finish(), ORV_E_INVALID_STATE);
        }
        CHECK(failAt > 2 && failAt < 100); // there were several writes

        Below below(10000, 3, lies);
        below.buffer.Write(whole.buffer.GetBytes(), whole.buffer.GetLength(), written);
        typename Format::Reader reader;
        CHECK_EQUAL(Format::Create(reader, below), ORV_S_OK);
        uint32_t size = 0;
        CHECK_EQUAL(ReadInPieces(reader, kSize, size), lies ? ORV_E_READ_FAULT : ORV_E_DISK_FULL);
        CHECK(__builtin_memcmp(unpacked, source, size) == 0);
        CHECK_EQUAL(below.calls, 3u);
        CHECK_EQUAL(ReadInPieces(reader, 1, size), lies ? ORV_E_READ_FAULT : ORV_E_DISK_FULL);
        CHECK_EQUAL(below.calls, 3u);
    }
}

template <typename Format>
void CheckJoinedStreams()
{
    Below below(5000);
    CHECK_EQUAL(Pack<Format>(below, kSize), ORV_S_OK);
    CHECK_EQUAL(Pack<Format>(below, 10), ORV_S_OK);
    uint32_t written = 0;
    CHECK_EQUAL(below.buffer.Write("x", 1, written), ORV_S_OK);
    typename Format::Reader reader;
    CHECK_EQUAL(reader.NextStream(), ORV_E_INVALID_STATE);
    CHECK_EQUAL(Format::Create(reader, below), ORV_S_OK);
    CHECK_EQUAL(reader.NextStream(), ORV_E_INVALID_STATE);
    uint32_t size = 0;
    CHECK_EQUAL(ReadInPieces(reader, 3000, size), ORV_E_END_OF_DATA);
    CHECK_EQUAL(size, kSize);
    CHECK_EQUAL(reader.NextStream(), ORV_S_OK);
    CHECK_EQUAL(ReadInPieces(reader, 3000, size), ORV_E_END_OF_DATA);
    CHECK_EQUAL(size, 10u);
    CHECK(__builtin_memcmp(unpacked, source, 10) == 0);
    CHECK_EQUAL(reader.GetUnread(), 1u);
    CHECK_EQUAL(reader.NextStream(), ORV_S_OK); // there is something
    CHECK_EQUAL(ReadInPieces(reader, 3000, size), ORV_E_NOT_PRODUCED);
    CHECK_EQUAL(reader.NextStream(), ORV_E_NOT_PRODUCED);
    reader.Destroy();
    Below one(5000);
    CHECK_EQUAL(Pack<Format>(one, 10), ORV_S_OK);
    CHECK_EQUAL(Format::Create(reader, one), ORV_S_OK);
    CHECK_EQUAL(ReadInPieces(reader, 3000, size), ORV_E_END_OF_DATA);
    CHECK_EQUAL(reader.NextStream(), ORV_E_END_OF_DATA);
    reader.Destroy();
    OrvMemoryStream cut(one.buffer.GetBytes(), one.buffer.GetLength() - 1);
    CHECK_EQUAL(Format::Create(reader, cut), ORV_S_OK);
    CHECK_EQUAL(ReadInPieces(reader, 3000, size), ORV_E_NOT_PRODUCED);
}

/// What each state refuses, and that nothing is lost or repeated.
template <typename Format>
void CheckStates()
{
    Below below(kSize);
    uint32_t count = 77;
    uint64_t position = 77;
    typename Format::Writer writer;
    CHECK_EQUAL(writer.Write(source, 1, count), ORV_E_INVALID_STATE);
    CHECK_EQUAL(writer.Flush(), ORV_E_INVALID_STATE);
    CHECK_EQUAL(writer.Finish(), ORV_E_INVALID_STATE);
    CHECK(!writer.IsInitialized());
    CHECK_EQUAL(Format::Create(writer, below), ORV_S_OK);
    CHECK_EQUAL(Format::Create(writer, below), ORV_E_ALREADY_EXISTS);
    CHECK_EQUAL(writer.Write(nullptr, 0, count), ORV_S_OK);
    CHECK_EQUAL(writer.Write(source, 5, count), ORV_S_OK);
    CHECK_EQUAL(writer.Flush(), ORV_S_OK);
    CHECK_EQUAL(writer.Write(source + 5, 5, count), ORV_S_OK);
    CHECK_EQUAL(writer.Close(), ORV_S_OK);
    const uint32_t length = below.buffer.GetLength();
    CHECK_EQUAL(writer.Finish(), ORV_S_OK);
    CHECK_EQUAL(writer.Flush(), ORV_S_OK);
    CHECK_EQUAL(writer.Write(source, 1, count), ORV_E_INVALID_STATE);
    CHECK_EQUAL(below.buffer.GetLength(), length);
    CHECK_EQUAL(writer.GetPosition(position), ORV_S_OK);
    CHECK(position == 10);
    CHECK_EQUAL(Format::Create(writer, below), ORV_E_ALREADY_EXISTS);

    typename Format::Reader reader;
    CHECK_EQUAL(reader.Read(unpacked, 1, count), ORV_E_INVALID_STATE);
    CHECK_EQUAL(Format::Create(reader, below), ORV_S_OK);
    CHECK_EQUAL(Format::Create(reader, below), ORV_E_ALREADY_EXISTS);
    CHECK_EQUAL(reader.Read(nullptr, 0, count), ORV_S_OK);
    CHECK_EQUAL(reader.Read(unpacked, 100, count), ORV_S_OK);
    CHECK(count == 10 && __builtin_memcmp(unpacked, source, 10) == 0);
    CHECK_EQUAL(reader.Read(unpacked, 100, count), ORV_E_END_OF_DATA);
    CHECK_EQUAL(reader.Close(), ORV_S_OK);
    CHECK_EQUAL(reader.Read(unpacked, 100, count), ORV_E_INVALID_STATE);
}

} // namespace

TEST_CASE(StreamsComeBackInAnyPieces)
{
    MakeSource();
    CheckRoundTrips<Zlib>();
    CheckRoundTrips<RawDeflate>();
    CheckRoundTrips<Bzip2>();
}

TEST_CASE(FailuresOfTheStreamBelowLast)
{
    MakeSource();
    CheckFailures<Zlib>();
    CheckFailures<Bzip2>();
}

TEST_CASE(JoinedStreamsAreReadOneByOne)
{
    MakeSource();
    CheckJoinedStreams<Zlib>();
    CheckJoinedStreams<RawDeflate>();
    CheckJoinedStreams<Bzip2>();
}

TEST_CASE(StreamsKeepTheirStates)
{
    MakeSource();
    CheckStates<Zlib>();
    CheckStates<Bzip2>();
    OrvBufferStream target;
    OrvDeflateWriteStream writer;
    OrvInflateReadStream reader;
    CHECK_EQUAL(writer.Create(target, OrvDeflateZlib, 10), ORV_E_INVALID_ARGUMENT);
    CHECK_EQUAL(writer.Create(target, static_cast<OrvDeflateFormat>(2)), ORV_E_INVALID_ARGUMENT);
    CHECK_EQUAL(reader.Create(target, static_cast<OrvDeflateFormat>(2)), ORV_E_INVALID_ARGUMENT);
    CHECK(!writer.IsInitialized() && !reader.IsInitialized());
}

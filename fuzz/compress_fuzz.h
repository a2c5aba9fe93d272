// What the targets of the two compressed formats share. Any bytes are compressed and decompressed to the same
// bytes, in pieces of any sizes. Any bytes as a compressed stream give the same in pieces as at once. If the
// format has a checksum, a stream with one wrong bit either fails or still gives the original bytes.

#pragma once

#include "fuzz.h"

#include "compress/pump.h"
#include "orv/compress/decompressing_stream.h"
#include "orv/stream/memory_stream.h"

using test::Collected;

/// All is one piece, or there are small ones of changing sizes, each in an array of its own size.
class Pieces
{
public:
    explicit Pieces(uint32_t seed) : state_(seed) {}

    uint32_t Next(uint32_t left)
    {
        if (state_ == 0 || left == 0)
            return left;
        state_ = (state_ * 1664525 + 1013904223) | 1;
        const uint32_t most = 1 + (state_ >> 16 & 0x3F);
        const uint32_t size = 1 + (state_ >> 24) % most;
        return size < left ? size : left;
    }

    static ExactArray<uint8_t> In(const uint8_t *bytes, uint32_t count) { return {bytes, count}; }
    static ExactArray<uint8_t> Out(uint32_t count) { return ExactArray<uint8_t>(count); }

private:
    uint32_t state_;
};

template <typename Format>
OrvResult Unpack(const uint8_t *in, uint32_t size, Collected &out, Pieces pieces)
{
    typedef typename Format::Context Context;
    Context context;
    REQUIRE(Format::StartUnpacking(context) == ORV_S_OK);
    const OrvResult result =
        test::Pump<Context>(context, in, size, out, pieces, &Context::Decompress, nullptr);
    REQUIRE(result == ORV_S_OK || result == ORV_S_END_OF_DATA || result == ORV_E_NOT_PRODUCED);
    REQUIRE(result != ORV_S_END_OF_DATA || context.IsFinished());
    REQUIRE(context.Destroy() == ORV_S_OK);
    return result;
}

/// A stream that is written in pieces and gives pieces.
class PiecewiseStream final : public IOrvStream
{
public:
    explicit PiecewiseStream(uint32_t seed) : pieces_(seed) {}

    OrvResult Read(void *bytes, uint32_t size, uint32_t &read) override
    {
        return buffer.Read(bytes, pieces_.Next(size), read);
    }
    OrvResult Write(const void *bytes, uint32_t size, uint32_t &written) override
    {
        return buffer.Write(bytes, pieces_.Next(size), written);
    }

    OrvBufferStream buffer;

private:
    Pieces pieces_;
};

/// The stream classes give what the context gives, in whatever pieces.
template <typename Format>
void CheckReadStream(const uint8_t *in, uint32_t size, uint32_t seed, const Collected &whole, bool hasEnded)
{
    PiecewiseStream packed(seed);
    uint32_t count = 0;
    REQUIRE(packed.buffer.Write(in, size, count) == ORV_S_OK);
    typename Format::Reader reader;
    REQUIRE(Format::Create(reader, packed) == ORV_S_OK);
    static Collected out;
    out.size = 0;
    Pieces pieces(seed * 5);
    OrvResult result = ORV_S_OK;
    while (OrvSucceeded(result) && out.size < Collected::kRoom) {
        const uint32_t room = pieces.Next(Collected::kRoom - out.size);
        ExactArray<uint8_t> bytes(room);
        result = reader.Read(bytes, room, count);
        REQUIRE(OrvFailed(result) ? count == 0 : count > 0 && count <= room);
        memcpy(out.data + out.size, bytes, count);
        out.size += count;
    }
    REQUIRE(OrvSucceeded(result) || result == (hasEnded ? ORV_E_END_OF_DATA : ORV_E_NOT_PRODUCED));
    const uint32_t common = whole.size < out.size ? whole.size : out.size;
    REQUIRE(!hasEnded || whole.size == out.size);
    REQUIRE(memcmp(whole.data, out.data, common) == 0);
}

template <typename Format>
void CheckWriteStream(const uint8_t *source, uint32_t size, uint32_t seed)
{
    PiecewiseStream packed(seed);
    typename Format::Writer writer;
    REQUIRE(Format::Create(writer, packed) == ORV_S_OK);
    Pieces pieces(seed * 7);
    for (uint32_t taken = 0; taken < size;) {
        const uint32_t given = pieces.Next(size - taken);
        ExactArray<uint8_t> bytes(source + taken, given);
        uint32_t written = 0;
        REQUIRE(writer.Write(bytes, given, written) == ORV_S_OK && written == given);
        REQUIRE(seed % 3 || writer.Flush() == ORV_S_OK);
        taken += given;
    }
    REQUIRE(writer.Finish() == ORV_S_OK);
    static Collected unpacked;
    REQUIRE(Unpack<Format>(packed.buffer.GetBytes(), packed.buffer.GetLength(), unpacked, Pieces(0)) ==
            ORV_S_END_OF_DATA);
    REQUIRE(unpacked.size == size && memcmp(unpacked.data, source, size) == 0);
}

template <typename Format>
void CheckStream(const uint8_t *in, uint32_t size, uint32_t seed)
{
    static Collected whole;
    static Collected parts;
    const bool hasEnded = Unpack<Format>(in, size, whole, Pieces(0)) == ORV_S_END_OF_DATA;
    REQUIRE((Unpack<Format>(in, size, parts, Pieces(seed)) == ORV_S_END_OF_DATA) == hasEnded);
    // Where a fault ends both, one may have gone on for longer.
    const uint32_t common = whole.size < parts.size ? whole.size : parts.size;
    REQUIRE(!hasEnded || whole.size == parts.size);
    REQUIRE(memcmp(whole.data, parts.data, common) == 0);
    CheckReadStream<Format>(in, size, seed, whole, hasEnded);
}

template <typename Format>
void CheckRoundTrip(const uint8_t *source, uint32_t size, uint32_t level, uint32_t seed)
{
    typedef typename Format::Context Context;
    static Collected packed;
    Context context;
    REQUIRE(Format::StartPacking(context, level) == ORV_S_OK);
    REQUIRE(test::Pump<Context>(context, source, size, packed, Pieces(seed), &Context::Compress,
                                &Context::CompressFinish) == ORV_S_END_OF_DATA);
    REQUIRE(context.Destroy() == ORV_S_OK);
    static Collected unpacked;
    REQUIRE(Unpack<Format>(packed.data, packed.size, unpacked, Pieces(seed * 3)) == ORV_S_END_OF_DATA);
    REQUIRE(unpacked.size == size && memcmp(unpacked.data, source, size) == 0);
    // Cut off, it has no end.
    REQUIRE(Unpack<Format>(packed.data, seed % packed.size, unpacked, Pieces(0)) != ORV_S_END_OF_DATA);
    CheckWriteStream<Format>(source, size, seed);
    const uint32_t wrong = seed % (packed.size * 8);
    packed.data[wrong / 8] ^= 1 << wrong % 8;
    CheckStream<Format>(packed.data, packed.size, seed);
    static Collected damaged;
    if (Unpack<Format>(packed.data, packed.size, damaged, Pieces(0)) == ORV_S_END_OF_DATA &&
        Format::kHasChecksum)
        REQUIRE(damaged.size == size && memcmp(damaged.data, source, size) == 0);
}

/// One input: the first byte says what is done with the rest.
template <typename Format>
void CheckFormat(Input &input, uint32_t level)
{
    const bool isStream = input.Byte() % 2;
    const uint32_t seed = input.Below(0x10000);
    const uint32_t size = input.Left();
    ExactArray<uint8_t> bytes(input.Bytes(size), size);
    if (isStream)
        CheckStream<Format>(bytes, size, seed);
    else
        CheckRoundTrip<Format>(bytes, size, level, seed);
}

// What the two compressed formats share: any bytes go there and come back, in pieces of any sizes; any bytes
// as a compressed stream give the same in pieces as at once; and a stream in which a bit is wrong is told
// from the one it was, where the format has a checksum.

#pragma once

#include "fuzz.h"

#include "orv/compress/decompressing_stream.h"
#include "orv/runtime/result.h"
#include "orv/stream/memory_stream.h"

/// Bytes that grow up to a limit, so that a stream that unpacks to a multitude ends early.
class Output
{
public:
    static constexpr uint32_t kLimit = 0x40000;

    Output() : bytes_(kLimit) {}

    uint32_t Room() const { return kLimit - size_; }
    uint32_t Size() const { return size_; }
    uint8_t *Bytes() { return bytes_; }

    void Append(const uint8_t *bytes, uint32_t count)
    {
        memcpy(bytes_ + size_, bytes, count);
        size_ += count;
    }

private:
    ExactArray<uint8_t> bytes_;
    uint32_t size_ = 0;
};

/// The sizes of pieces: all is one piece, or small ones of changing sizes.
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

private:
    uint32_t state_;
};

/// Hands the input over and collects the output, each piece in an array of its own size. `finish` may be
/// null. Returns ORV_S_END_OF_DATA at the end of the stream; another code at a fault in it, or when all of
/// the input or room was used up before.
template <typename Context>
OrvResult Pump(Context &context, const uint8_t *in, uint32_t size, Output &out, Pieces pieces,
               OrvResult (Context::*step)(), OrvResult (Context::*finish)())
{
    for (uint32_t taken = 0;;) {
        const uint32_t given = pieces.Next(size - taken);
        const uint32_t room = pieces.Next(out.Room());
        ExactArray<uint8_t> from(in + taken, given);
        ExactArray<uint8_t> to(room);
        context.SetNextIn(from);
        context.SetAvailIn(given);
        context.SetNextOut(to);
        context.SetAvailOut(room);
        const OrvResult result = given == 0 && finish ? (context.*finish)() : (context.*step)();
        const uint32_t consumed = given - context.GetAvailIn();
        const uint32_t produced = room - context.GetAvailOut();
        REQUIRE(consumed <= given && produced <= room);
        REQUIRE(context.GetNextIn() == from + consumed && context.GetNextOut() == to + produced);
        taken += consumed;
        out.Append(to, produced);
        REQUIRE(result == ORV_S_OK || result == ORV_S_END_OF_DATA || result == ORV_E_NOT_PRODUCED);
        if (out.Room() == 0)
            return ORV_S_OK;
        if (result != ORV_S_OK || (given == 0 && produced == 0 && !finish))
            return result;
    }
}

template <typename Format>
OrvResult Unpack(const uint8_t *in, uint32_t size, Output &out, Pieces pieces)
{
    typedef typename Format::Context Context;
    Context context;
    REQUIRE(Format::StartUnpacking(context) == ORV_S_OK);
    const OrvResult result = Pump<Context>(context, in, size, out, pieces, &Context::Decompress, nullptr);
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
void CheckReadStream(const uint8_t *in, uint32_t size, uint32_t seed, Output &whole, bool hasEnded)
{
    PiecewiseStream packed(seed);
    uint32_t count = 0;
    REQUIRE(packed.buffer.Write(in, size, count) == ORV_S_OK);
    typename Format::Reader reader;
    REQUIRE(Format::Create(reader, packed) == ORV_S_OK);
    Output out;
    Pieces pieces(seed * 5);
    OrvResult result = ORV_S_OK;
    while (OrvSucceeded(result) && out.Room()) {
        const uint32_t room = pieces.Next(out.Room());
        ExactArray<uint8_t> bytes(room);
        result = reader.Read(bytes, room, count);
        REQUIRE(OrvFailed(result) ? count == 0 : count > 0 && count <= room);
        out.Append(bytes, count);
    }
    REQUIRE(OrvSucceeded(result) || result == (hasEnded ? ORV_E_END_OF_DATA : ORV_E_NOT_PRODUCED));
    const uint32_t common = whole.Size() < out.Size() ? whole.Size() : out.Size();
    REQUIRE(!hasEnded || whole.Size() == out.Size());
    REQUIRE(memcmp(whole.Bytes(), out.Bytes(), common) == 0);
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
    Output unpacked;
    REQUIRE(Unpack<Format>(packed.buffer.GetBytes(), packed.buffer.GetLength(), unpacked, Pieces(0)) ==
            ORV_S_END_OF_DATA);
    REQUIRE(unpacked.Size() == size && memcmp(unpacked.Bytes(), source, size) == 0);
}

template <typename Format>
void CheckStream(const uint8_t *in, uint32_t size, uint32_t seed)
{
    Output whole;
    Output parts;
    const bool hasEnded = Unpack<Format>(in, size, whole, Pieces(0)) == ORV_S_END_OF_DATA;
    REQUIRE((Unpack<Format>(in, size, parts, Pieces(seed)) == ORV_S_END_OF_DATA) == hasEnded);
    // Where a fault ends both, one may have gone on for longer.
    const uint32_t common = whole.Size() < parts.Size() ? whole.Size() : parts.Size();
    REQUIRE(!hasEnded || whole.Size() == parts.Size());
    REQUIRE(memcmp(whole.Bytes(), parts.Bytes(), common) == 0);
    CheckReadStream<Format>(in, size, seed, whole, hasEnded);
}

template <typename Format>
void CheckRoundTrip(const uint8_t *source, uint32_t size, uint32_t level, uint32_t seed)
{
    typedef typename Format::Context Context;
    Output packed;
    Context context;
    REQUIRE(Format::StartPacking(context, level) == ORV_S_OK);
    REQUIRE(Pump<Context>(context, source, size, packed, Pieces(seed), &Context::Compress,
                          &Context::CompressFinish) == ORV_S_END_OF_DATA);
    REQUIRE(context.Destroy() == ORV_S_OK);
    Output unpacked;
    REQUIRE(Unpack<Format>(packed.Bytes(), packed.Size(), unpacked, Pieces(seed * 3)) == ORV_S_END_OF_DATA);
    REQUIRE(unpacked.Size() == size && memcmp(unpacked.Bytes(), source, size) == 0);

    CheckWriteStream<Format>(source, size, seed);
    const uint32_t wrong = seed % (packed.Size() * 8);
    packed.Bytes()[wrong / 8] ^= 1 << wrong % 8;
    CheckStream<Format>(packed.Bytes(), packed.Size(), seed);
    Output damaged;
    if (Unpack<Format>(packed.Bytes(), packed.Size(), damaged, Pieces(0)) == ORV_S_END_OF_DATA &&
        Format::kHasChecksum)
        REQUIRE(damaged.Size() == size && memcmp(damaged.Bytes(), source, size) == 0);
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

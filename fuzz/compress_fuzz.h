// What the compressed formats share: any bytes go there and come back, in pieces of any sizes; any bytes as a
// compressed stream give the same in pieces as at once; and a stream in which a bit is wrong is told from the
// one it was, where the format has a checksum.

#pragma once

#include "fuzz.h"

#include "orv/runtime/result.h"
#include "orv/stream/memory_stream.h"

/// All is one piece, or there are small ones of changing sizes.
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

/// Bytes as they arrive.
struct Collected {
    static constexpr uint32_t kRoom = 0x40000;

    uint8_t data[kRoom];
    uint32_t size;

    bool Equals(const uint8_t *bytes, uint32_t count) const
    {
        return size == count && memcmp(data, bytes, count) == 0;
    }
};

/// Whether the stream has an end, within the room that there is.
template <typename Format>
bool Unpack(const uint8_t *in, uint32_t size, Collected &out, uint32_t seed)
{
    PiecewiseStream packed(seed);
    uint32_t count = 0;
    REQUIRE(packed.buffer.Write(in, size, count) == ORV_S_OK);
    typename Format::Reader reader;
    REQUIRE(Format::Create(reader, packed) == ORV_S_OK);
    Pieces pieces(seed * 5);
    for (out.size = 0; out.size < Collected::kRoom; out.size += count) {
        const uint32_t room = pieces.Next(Collected::kRoom - out.size);
        ExactArray<uint8_t> bytes(room);
        const OrvResult result = reader.Read(bytes, room, count);
        REQUIRE(OrvFailed(result) ? count == 0 : count > 0 && count <= room);
        REQUIRE(OrvSucceeded(result) || result == ORV_E_END_OF_DATA || result == ORV_E_NOT_PRODUCED);
        if (OrvFailed(result))
            return result == ORV_E_END_OF_DATA;
        memcpy(out.data + out.size, bytes, count);
    }
    return false;
}

template <typename Format>
void Pack(OrvBufferStream &out, const uint8_t *source, uint32_t size, uint32_t level, uint32_t seed)
{
    PiecewiseStream packed(seed);
    typename Format::Writer writer;
    REQUIRE(Format::Create(writer, packed, level) == ORV_S_OK);
    Pieces pieces(seed * 7);
    uint32_t written = 0;
    for (uint32_t taken = 0; taken < size; taken += written) {
        const uint32_t given = pieces.Next(size - taken);
        ExactArray<uint8_t> bytes(source + taken, given);
        REQUIRE(writer.Write(bytes, given, written) == ORV_S_OK && written == given);
        REQUIRE(seed % 3 || writer.Flush() == ORV_S_OK);
    }
    REQUIRE(writer.Finish() == ORV_S_OK);
    REQUIRE(out.Write(packed.buffer.GetBytes(), packed.buffer.GetLength(), written) == ORV_S_OK);
}

template <typename Format>
bool CheckStream(const uint8_t *in, uint32_t size, Collected &whole, uint32_t seed)
{
    static Collected parts;
    const bool hasEnded = Unpack<Format>(in, size, whole, 0);
    REQUIRE(Unpack<Format>(in, size, parts, seed) == hasEnded);
    // Where a fault ends both, one may have gone on for longer.
    const uint32_t common = whole.size < parts.size ? whole.size : parts.size;
    REQUIRE(!hasEnded || whole.size == parts.size);
    REQUIRE(memcmp(whole.data, parts.data, common) == 0);
    return hasEnded;
}

template <typename Format>
void CheckRoundTrip(const uint8_t *source, uint32_t size, uint32_t level, uint32_t seed)
{
    OrvBufferStream stream;
    Pack<Format>(stream, source, size, level, seed);
    const uint32_t length = stream.GetLength();
    ExactArray<uint8_t> packed(stream.GetBytes(), length);
    static Collected unpacked;
    REQUIRE(CheckStream<Format>(packed, length, unpacked, seed * 3) && unpacked.Equals(source, size));
    // Cut off, it has no end.
    REQUIRE(!CheckStream<Format>(packed, seed % length, unpacked, seed));
    const uint32_t wrong = seed % (length * 8);
    packed[wrong / 8] ^= 1 << wrong % 8;
    if (CheckStream<Format>(packed, length, unpacked, seed) && Format::kHasChecksum)
        REQUIRE(unpacked.Equals(source, size));
}

/// One input: the first byte says what is done with the rest.
template <typename Format>
void CheckFormat(Input &input, uint32_t level)
{
    const bool isStream = input.Byte() % 2;
    const uint32_t seed = input.Below(0x10000);
    const uint32_t size = input.Left();
    ExactArray<uint8_t> bytes(input.Bytes(size), size);
    static Collected unpacked;
    if (isStream)
        CheckStream<Format>(bytes, size, unpacked, seed);
    else
        CheckRoundTrip<Format>(bytes, size, level, seed);
}

// The streams over memory.

#include "orv/stream/memory_stream.h"

#include "harness/memory.h"
#include "harness/test.h"

TEST_CASE(MemoryIsReadToItsEnd)
{
    OrvMemoryStream stream(test::GuardedCopy("abcdef", 6), 6);
    char *const bytes = test::GuardedArray<char>(8);
    uint32_t read = 9;
    uint64_t number = 0;
    CHECK_EQUAL(stream.Read(bytes, 4, read), ORV_S_OK);
    CHECK_EQUAL(read, 4u);
    CHECK_EQUAL(stream.Read(bytes + 4, 4, read), ORV_S_OK);
    CHECK_EQUAL(read, 2u);
    CHECK_TEXT(bytes, "abcdef");
    CHECK_EQUAL(stream.Read(bytes, 4, read), ORV_E_END_OF_DATA);
    CHECK_EQUAL(read, 0u);
    CHECK_EQUAL(stream.SetPosition(7), ORV_E_INVALID_ARGUMENT);
    CHECK_EQUAL(stream.SetPosition(0x100000000), ORV_E_INVALID_ARGUMENT);
    CHECK_EQUAL(stream.GetPosition(number), ORV_S_OK);
    CHECK_EQUAL(number, uint64_t(6));
    CHECK_EQUAL(stream.SetPosition(6), ORV_S_OK);
    CHECK_EQUAL(stream.SetPosition(5), ORV_S_OK);
    CHECK_EQUAL(stream.Read(bytes, 0, read), ORV_S_OK);
    CHECK_EQUAL(stream.Read(bytes, 4, read), ORV_S_OK);
    CHECK_EQUAL(bytes[0], 'f');
    CHECK_EQUAL(stream.GetSize(number), ORV_S_OK);
    CHECK_EQUAL(number, uint64_t(6));
    CHECK_EQUAL(stream.Write("x", 1, read), ORV_E_NOT_PROVIDED);

    OrvMemoryStream empty(nullptr, 0);
    CHECK_EQUAL(empty.Read(bytes, 4, read), ORV_E_END_OF_DATA);
}

TEST_CASE(StreamsProvideWhatTheyImplement)
{
    class Bare final : public IOrvStream
    {
    } bare;
    uint64_t number = 7;
    uint32_t count = 7;
    char byte = 7;
    CHECK_EQUAL(bare.Close(), ORV_E_NOT_PROVIDED);
    CHECK_EQUAL(bare.Flush(), ORV_E_NOT_PROVIDED);
    CHECK_EQUAL(bare.GetPosition(number), ORV_E_NOT_PROVIDED);
    CHECK_EQUAL(bare.SetPosition(0), ORV_E_NOT_PROVIDED);
    CHECK_EQUAL(bare.GetSize(number), ORV_E_NOT_PROVIDED);
    CHECK_EQUAL(bare.Read(&byte, 1, count), ORV_E_NOT_PROVIDED);
    CHECK_EQUAL(bare.Write(&byte, 1, count), ORV_E_NOT_PROVIDED);
    CHECK(number == 7 && count == 7 && byte == 7);
}

TEST_CASE(BufferTakesItsOwnBytes)
{
    OrvBufferStream stream;
    uint32_t count = 0;
    CHECK_EQUAL(stream.Write("abcdefg", 7, count), ORV_S_OK);
    while (stream.GetLength() < 1000000) { // the buffer moves more than once
        CHECK_EQUAL(stream.Write(stream.GetBytes(), stream.GetLength(), count), ORV_S_OK);
        CHECK_EQUAL(stream.Write(stream.GetBytes() + 7, stream.GetLength() - 7, count), ORV_S_OK);
    }
    for (uint32_t i = 0; i < stream.GetLength(); i++) {
        if (!CHECK_EQUAL(stream.GetBytes()[i], static_cast<uint8_t>('a' + i % 7)))
            return;
    }
    // Those that were forgotten are there until something else is written.
    stream.Clear();
    CHECK_EQUAL(stream.Write(stream.GetBytes() + 3, 70000, count), ORV_S_OK);
    CHECK(stream.GetBytes()[0] == 'd' && stream.GetBytes()[69999] == 'a' + 70002 % 7);
}

TEST_CASE(BufferGrowsAndReadsBack)
{
    OrvBufferStream stream;
    uint32_t count = 9;
    uint32_t read = 0;
    CHECK_EQUAL(stream.Write(nullptr, 0, count), ORV_S_OK);
    CHECK_EQUAL(count, 0u);
    constexpr uint32_t kPiece = 700;
    auto *const bytes = test::GuardedArray<uint8_t>(kPiece);
    for (uint32_t piece = 0; piece < 40; piece++) {
        for (uint32_t i = 0; i < kPiece; i++)
            bytes[i] = static_cast<uint8_t>(piece + i);
        CHECK_EQUAL(stream.Write(bytes, kPiece, count), ORV_S_OK);
        CHECK_EQUAL(count, kPiece);
    }
    CHECK_EQUAL(stream.GetLength(), 40u * 700);
    uint64_t size = 0;
    CHECK_EQUAL(stream.GetSize(size), ORV_S_OK);
    CHECK_EQUAL(size, uint64_t(40 * 700));
    CHECK_EQUAL(stream.GetBytes()[27999], static_cast<uint8_t>(39 + 699));
    uint64_t position = 0;
    CHECK_EQUAL(stream.SetPosition(700 * 39 + 699), ORV_S_OK);
    CHECK_EQUAL(stream.Read(test::GuardedArray<uint8_t>(1), 5, read), ORV_S_OK);
    CHECK_EQUAL(read, 1u);
    CHECK_EQUAL(stream.GetPosition(position), ORV_S_OK);
    CHECK_EQUAL(position, uint64_t(28000));
    const test::RefusingHeap refusing;
    const uint32_t before = stream.GetLength();
    static uint8_t large[40000];
    CHECK_EQUAL(stream.Write(large, sizeof large, count), ORV_E_OUT_OF_MEMORY);
    CHECK_EQUAL(count, 0u);
    CHECK_EQUAL(stream.GetLength(), before);
    stream.Clear();
    CHECK_EQUAL(stream.GetLength(), 0u);
    CHECK_EQUAL(stream.Write(large, 32768, count), ORV_S_OK); // as much as there is room for
    CHECK_EQUAL(stream.Write(large, 1, count), ORV_E_OUT_OF_MEMORY);
    stream.Clear();
    CHECK_EQUAL(stream.Read(bytes, 5, read), ORV_E_END_OF_DATA);
}

// Both compression contexts: round trips in steps of any size, the mapping of every kind of answer, and what
// a context keeps between its streams. One set of cases runs over both formats.

#include "orv/compress/bz2_context.h"
#include "orv/compress/deflate_context.h"

#include "harness/memory.h"
#include "harness/test.h"
#include "orv/runtime/result.h"

using detail::OrvBZ2Context;
using detail::OrvDeflateContext;

namespace
{

constexpr uint32_t kRoom = 200000;

/// A format under one name: how its context is set up.
struct Zlib : OrvDeflateContext {
    OrvResult Start(bool compress, uint32_t bufferSize = 100) { return Initialize(bufferSize, compress, 6); }
};
struct RawDeflate : OrvDeflateContext {
    OrvResult Start(bool compress, uint32_t bufferSize = 100)
    {
        return Initialize(bufferSize, compress, 9, true);
    }
};
struct Bzip2 : OrvBZ2Context {
    OrvResult Start(bool compress, uint32_t bufferSize = 100) { return Initialize(bufferSize, compress); }
};

struct Bytes {
    unsigned char data[kRoom];
    uint32_t size;
};

Bytes source;
Bytes packed;
Bytes unpacked;

/// Text-like bytes that compress, with stretches that do not.
void MakeSource(uint32_t size)
{
    uint32_t random = 12345;
    source.size = size;
    for (uint32_t i = 0; i < size; i++) {
        random = random * 1664525 + 1013904223;
        source.data[i] =
            static_cast<unsigned char>(i / 1000 % 4 == 3 ? random >> 24 : "a quick brown fox "[random >> 30]);
    }
}

/// Feeds the input in pieces of `chunk` bytes, and gives as much room at a time, both at unmapped pages,
/// until the stream ends or a step fails; an input that ends early ends the loop with what the last step
/// answered.
template <typename Context>
OrvResult Pump(Context &context, const Bytes &in, Bytes &out, uint32_t chunk, OrvResult (Context::*step)(),
               OrvResult (Context::*finish)())
{
    static test::GuardedPages inPages(kRoom);
    static test::GuardedPages outPages(kRoom);
    uint32_t taken = 0;
    out.size = 0;
    for (;;) {
        const uint32_t given = in.size - taken < chunk ? in.size - taken : chunk;
        const uint32_t room = kRoom - out.size < chunk ? kRoom - out.size : chunk;
        const unsigned char *const from = inPages.Copy(in.data + taken, given);
        auto *const to = outPages.Place<unsigned char>(room);
        context.SetNextIn(from);
        context.SetAvailIn(given);
        context.SetNextOut(to);
        context.SetAvailOut(room);
        const bool last = given == 0;
        const OrvResult result = last && finish ? (context.*finish)() : (context.*step)();
        const uint32_t consumed = given - context.GetAvailIn();
        const uint32_t produced = room - context.GetAvailOut();
        CHECK_EQUAL(context.GetNextIn(), from + consumed);
        CHECK_EQUAL(context.GetNextOut(), to + produced);
        __builtin_memcpy(out.data + out.size, to, produced);
        taken += consumed;
        out.size += produced;
        if (result != ORV_S_OK || (last && !finish && produced == 0))
            return result;
    }
}

template <typename Context>
OrvResult Pack(Context &context, uint32_t chunk)
{
    return Pump<Context>(context, source, packed, chunk, &Context::Compress, &Context::CompressFinish);
}

template <typename Context>
OrvResult Unpack(Context &context, uint32_t chunk)
{
    return Pump<Context>(context, packed, unpacked, chunk, &Context::Decompress, nullptr);
}

bool UnpackedIsSource()
{
    return unpacked.size == source.size && __builtin_memcmp(unpacked.data, source.data, source.size) == 0;
}

/// A stream comes back in steps. One in which a byte is wrong, or that ends early, leads to a failure, or to
/// an end that was not reached.
template <typename Context>
void CheckStream(bool hasChecksum)
{
    MakeSource(700);
    Context context;
    CHECK_EQUAL(context.Start(true), ORV_S_OK);
    CHECK_EQUAL(Pack(context, 7), ORV_S_END_OF_DATA);
    CHECK_EQUAL(context.Destroy(), ORV_S_OK);
    CHECK_EQUAL(context.Start(false), ORV_S_OK); // the same context, the other way
    CHECK(!context.IsFinished());
    CHECK_EQUAL(Unpack(context, 7), ORV_S_END_OF_DATA);
    CHECK(context.IsFinished());
    CHECK(UnpackedIsSource());
    CHECK_EQUAL(context.Destroy(), ORV_S_OK);
    CHECK_EQUAL(context.Destroy(), ORV_S_OK);
    const uint32_t whole = packed.size;
    for (uint32_t i = 0; i < whole; i++) {
        test::Note("damaged byte", i);
        Context damaged;
        CHECK_EQUAL(damaged.Start(false), ORV_S_OK);
        packed.data[i] ^= 0x10;
        const OrvResult result = Unpack(damaged, kRoom);
        packed.data[i] ^= 0x10;
        // A bit that the format does not use may change unseen; the data may not, where there is a checksum.
        CHECK(result != ORV_S_END_OF_DATA || !hasChecksum || UnpackedIsSource());
        CHECK(result == ORV_S_END_OF_DATA || result == ORV_E_NOT_PRODUCED || !damaged.IsFinished());
        CHECK(i > 0 || !hasChecksum || result == ORV_E_NOT_PRODUCED); // the header's first byte

        test::Note("truncated at", i);
        Context truncated;
        CHECK_EQUAL(truncated.Start(false), ORV_S_OK);
        packed.size = i;
        const OrvResult cut = Unpack(truncated, kRoom);
        packed.size = whole;
        CHECK(cut == ORV_S_OK || cut == ORV_E_NOT_PRODUCED); // zlib calls a step without progress an error
        CHECK(!truncated.IsFinished());
    }
}

/// Steps that the stream's state does not allow.
template <typename Context>
void CheckMisuse()
{
    Context context;
    CHECK_EQUAL(context.Compress(), ORV_E_NOT_PRODUCED);
    CHECK_EQUAL(context.CompressFinish(), ORV_E_NOT_PRODUCED);
    CHECK_EQUAL(context.Decompress(), ORV_E_NOT_PRODUCED);
    CHECK_EQUAL(context.Destroy(), ORV_S_OK);
    context.SetAvailIn(5);
    context.SetNextOut(packed.data);
    CHECK_EQUAL(context.GetAvailIn() + context.GetAvailOut(), 0u);
    CHECK_EQUAL(context.GetNextOut(), nullptr);
    CHECK_EQUAL(context.GetMaxAvail(), 0xFFFFFFFFu);

    CHECK_EQUAL(context.Start(true), ORV_S_OK);
    CHECK_EQUAL(context.Decompress(), ORV_E_NOT_PRODUCED);
    context.Destroy();
    CHECK_EQUAL(context.Start(false), ORV_S_OK);
    CHECK_EQUAL(context.Compress(), ORV_E_NOT_PRODUCED);
    CHECK_EQUAL(context.CompressFinish(), ORV_E_NOT_PRODUCED);
}

/// The buffer is the output range of a new compressor, and grows by the size that was last asked for.
template <typename Context>
void CheckBuffer()
{
    Context context;
    CHECK_EQUAL(context.GetBuffer(), nullptr);
    CHECK_EQUAL(context.Start(true, 1000), ORV_S_OK);
    unsigned char *const first = context.GetBuffer();
    CHECK_EQUAL(context.GetNextOut(), first);
    CHECK_EQUAL(context.GetAvailOut(), 1000u);
    context.SetAvailIn(0);
    CHECK_EQUAL(context.CompressFinish(), ORV_S_END_OF_DATA); // an empty input: header and trailer
    CHECK(context.GetAvailOut() < 1000);
    context.Destroy();
    CHECK_EQUAL(context.GetBuffer(), first);
    CHECK_EQUAL(context.Start(true, 10), ORV_S_OK);
    CHECK_EQUAL(context.GetBuffer(), first);
    CHECK_EQUAL(context.GetBufferSize(), 10u);
    context.Destroy();
    CHECK_EQUAL(context.Start(false, 500), ORV_S_OK); // larger than the last size: another buffer
    CHECK_EQUAL(context.GetBufferSize(), 500u);
    CHECK(context.GetBuffer() != first);
    CHECK_EQUAL(context.GetAvailOut(), 0u);
    context.Destroy();

    Context poor;
    {
        const test::RefusingHeap refusing;
        CHECK_EQUAL(poor.Start(true), ORV_E_OUT_OF_MEMORY);
        CHECK_EQUAL(poor.GetBuffer(), nullptr);
    }
    CHECK_EQUAL(poor.Compress(), ORV_E_NOT_PRODUCED);
}

} // namespace

TEST_CASE(StreamsComeBackWholeOrNotAtAll)
{
    CheckStream<Zlib>(true);
    CheckStream<RawDeflate>(false);
    CheckStream<Bzip2>(true);
}

TEST_CASE(StepsWithoutTheirStreamFail)
{
    CheckMisuse<Zlib>();
    CheckMisuse<Bzip2>();
}

TEST_CASE(BuffersFollowTheLastSize)
{
    CheckBuffer<Zlib>();
    CheckBuffer<Bzip2>();
}

TEST_CASE(DeflateLevelsAndFormats)
{
    struct {
        int level;
        OrvResult result;
    } const cases[] = {{0, ORV_S_OK},
                       {9, ORV_S_OK},
                       {OrvDeflateContext::kDefaultLevel, ORV_S_OK},
                       {10, ORV_E_INVALID_ARGUMENT},
                       {-1, ORV_E_INVALID_ARGUMENT},
                       {4095, ORV_E_INVALID_ARGUMENT}};
    for (const auto &c : cases) {
        test::Note("level", static_cast<uint32_t>(c.level));
        OrvDeflateContext context;
        CHECK_EQUAL(context.Initialize(100, true, c.level), c.result);
        CHECK_EQUAL(context.GetNextOut(), OrvSucceeded(c.result) ? context.GetBuffer() : nullptr);
        CHECK(context.GetBuffer() != nullptr);
    }
    // The formats differ in what stands around the same data.
    MakeSource(0);
    Zlib zlib;
    CHECK_EQUAL(zlib.Start(true), ORV_S_OK);
    CHECK_EQUAL(Pack(zlib, kRoom), ORV_S_END_OF_DATA);
    CHECK_EQUAL(packed.size, 8u);
    CHECK_EQUAL(packed.data[0], 0x78);
    RawDeflate raw;
    CHECK_EQUAL(raw.Start(true), ORV_S_OK);
    CHECK_EQUAL(Pack(raw, kRoom), ORV_S_END_OF_DATA);
    CHECK_EQUAL(packed.size, 2u);
}

TEST_CASE(Bzip2BlocksAndOrder)
{
    struct {
        unsigned char blockSize;
        char digit;
    } const cases[] = {{0, '1'}, {1, '1'}, {5, '5'}, {9, '9'}, {200, '9'}};
    MakeSource(10);
    for (const auto &c : cases) {
        test::Note("block size", c.blockSize);
        Bzip2 context;
        CHECK_EQUAL(context.Initialize(100, true, c.blockSize), ORV_S_OK);
        CHECK_EQUAL(Pack(context, kRoom), ORV_S_END_OF_DATA);
        CHECK_EQUAL(packed.data[3], static_cast<unsigned char>(c.digit));
        CHECK_EQUAL(context.Compress(), ORV_E_NOT_PRODUCED); // finished: no longer running
    }
    Bzip2 context;
    CHECK_EQUAL(context.Start(false), ORV_S_OK);
    CHECK_EQUAL(Unpack(context, kRoom), ORV_S_END_OF_DATA);
    CHECK_EQUAL(context.Decompress(), ORV_E_NOT_PRODUCED); // a step behind the end
    CHECK(context.IsFinished());
}

TEST_CASE(UnfinishedCompressionIsToldOfWhenItEnds)
{
    MakeSource(100000);
    Zlib context;
    CHECK_EQUAL(context.Start(true), ORV_S_OK);
    context.SetNextIn(source.data);
    context.SetAvailIn(source.size);
    CHECK_EQUAL(context.Compress(), ORV_S_OK);
    CHECK_EQUAL(context.Destroy(), ORV_E_NOT_PRODUCED);
    CHECK_EQUAL(context.Destroy(), ORV_S_OK);
}

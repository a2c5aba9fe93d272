// Both compression contexts: round trips in steps of any size, the mapping of every kind of answer, and what
// a context keeps between its streams. One set of cases runs over both formats.

#include "orv/compress/bz2_context.h"
#include "orv/compress/deflate_context.h"

#include "compress/pump.h"
#include "harness/memory.h"
#include "harness/test.h"
#include "orv/runtime/result.h"

using detail::OrvBZ2Context;
using detail::OrvDeflateContext;

namespace
{

using test::Collected;

constexpr uint32_t kAll = Collected::kRoom; ///< in one piece

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

Collected source;
Collected packed;
Collected unpacked;

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

/// Pieces of one size, at unmapped pages.
struct Pieces {
    uint32_t size;

    uint32_t Next(uint32_t left) const { return left < size ? left : size; }
    static const uint8_t *In(const uint8_t *bytes, uint32_t count)
    {
        static test::GuardedPages pages(kAll);
        return pages.Copy(bytes, count);
    }
    static uint8_t *Out(uint32_t count)
    {
        static test::GuardedPages pages(kAll);
        return pages.Place<uint8_t>(count);
    }
};

template <typename Context>
OrvResult Pack(Context &context, uint32_t chunk)
{
    return test::Pump<Context>(context, source.data, source.size, packed, Pieces{chunk}, &Context::Compress,
                               &Context::CompressFinish);
}

template <typename Context>
OrvResult Unpack(Context &context, uint32_t chunk)
{
    return test::Pump<Context>(context, packed.data, packed.size, unpacked, Pieces{chunk},
                               &Context::Decompress, nullptr);
}

bool UnpackedIsSource()
{
    return unpacked.size == source.size && __builtin_memcmp(unpacked.data, source.data, source.size) == 0;
}

/// A stream comes back in steps. Fuzz targets damage streams and cut them off.
template <typename Context>
void CheckStream()
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
}

} // namespace

TEST_CASE(StreamsComeBack)
{
    CheckStream<Zlib>();
    CheckStream<RawDeflate>();
    CheckStream<Bzip2>();
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
    CHECK_EQUAL(Pack(zlib, kAll), ORV_S_END_OF_DATA);
    CHECK_EQUAL(packed.size, 8u);
    CHECK_EQUAL(packed.data[0], 0x78);
    RawDeflate raw;
    CHECK_EQUAL(raw.Start(true), ORV_S_OK);
    CHECK_EQUAL(Pack(raw, kAll), ORV_S_END_OF_DATA);
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
        CHECK_EQUAL(Pack(context, kAll), ORV_S_END_OF_DATA);
        CHECK_EQUAL(packed.data[3], static_cast<unsigned char>(c.digit));
        CHECK_EQUAL(context.Compress(), ORV_E_NOT_PRODUCED); // finished: no longer running
    }
    Bzip2 context;
    CHECK_EQUAL(context.Start(false), ORV_S_OK);
    CHECK_EQUAL(Unpack(context, kAll), ORV_S_END_OF_DATA);
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

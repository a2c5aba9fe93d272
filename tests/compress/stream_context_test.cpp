// Both compression contexts: the mapping of every kind of answer, and what a context keeps between its
// streams. One set of cases runs over both formats; fuzz targets take the steps in any size.

#include "orv/compress/bz2_context.h"
#include "orv/compress/deflate_context.h"

#include "harness/test.h"
#include "orv/runtime/result.h"

using detail::OrvBZ2Context;
using detail::OrvDeflateContext;

namespace
{

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

constexpr uint32_t kSourceSize = 100000;
const uint8_t source[kSourceSize] = {};

struct {
    uint8_t bytes[kSourceSize];
    uint32_t size;
} packed;

/// Packs the first `size` bytes of the source at once. The ranges say what was taken and given.
template <typename Context>
OrvResult Pack(Context &context, uint32_t size)
{
    context.SetNextIn(source);
    context.SetAvailIn(size);
    context.SetNextOut(packed.bytes);
    context.SetAvailOut(kSourceSize);
    OrvResult result = context.Compress();
    if (result == ORV_S_OK)
        result = context.CompressFinish();
    packed.size = kSourceSize - context.GetAvailOut();
    CHECK_EQUAL(context.GetAvailIn(), 0u);
    CHECK_EQUAL(context.GetNextIn(), source + size);
    CHECK_EQUAL(context.GetNextOut(), packed.bytes + packed.size);
    return result;
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
    context.SetNextOut(packed.bytes);
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
    Zlib zlib;
    CHECK_EQUAL(zlib.Start(true), ORV_S_OK);
    CHECK_EQUAL(Pack(zlib, 0), ORV_S_END_OF_DATA);
    CHECK_EQUAL(packed.size, 8u);
    CHECK_EQUAL(packed.bytes[0], 0x78);
    RawDeflate raw;
    CHECK_EQUAL(raw.Start(true), ORV_S_OK);
    CHECK_EQUAL(Pack(raw, 0), ORV_S_END_OF_DATA);
    CHECK_EQUAL(packed.size, 2u);
}

TEST_CASE(Bzip2BlocksAndOrder)
{
    struct {
        unsigned char blockSize;
        char digit;
    } const cases[] = {{0, '1'}, {1, '1'}, {5, '5'}, {9, '9'}, {200, '9'}};
    for (const auto &c : cases) {
        test::Note("block size", c.blockSize);
        Bzip2 context;
        CHECK_EQUAL(context.Initialize(100, true, c.blockSize), ORV_S_OK);
        CHECK_EQUAL(Pack(context, 10), ORV_S_END_OF_DATA);
        CHECK_EQUAL(packed.bytes[3], static_cast<unsigned char>(c.digit));
        CHECK_EQUAL(context.Compress(), ORV_E_NOT_PRODUCED); // finished: no longer running
    }
    Bzip2 context;
    uint8_t unpacked[11];
    CHECK_EQUAL(context.Start(false), ORV_S_OK);
    context.SetNextIn(packed.bytes);
    context.SetAvailIn(packed.size);
    context.SetNextOut(unpacked);
    context.SetAvailOut(sizeof unpacked);
    CHECK(!context.IsFinished());
    CHECK_EQUAL(context.Decompress(), ORV_S_END_OF_DATA);
    CHECK_EQUAL(context.GetAvailOut(), 1u);
    CHECK_EQUAL(context.Decompress(), ORV_E_NOT_PRODUCED); // a step behind the end
    CHECK(context.IsFinished());
}

TEST_CASE(UnfinishedCompressionIsToldOfWhenItEnds)
{
    Zlib context;
    CHECK_EQUAL(context.Start(true), ORV_S_OK);
    context.SetNextIn(source);
    context.SetAvailIn(kSourceSize);
    CHECK_EQUAL(context.Compress(), ORV_S_OK);
    CHECK_EQUAL(context.Destroy(), ORV_E_NOT_PRODUCED);
    CHECK_EQUAL(context.Destroy(), ORV_S_OK);
}

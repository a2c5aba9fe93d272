// The compression contexts, compared with the bare libraries on the same data and with the same steps.

#include "bench.h"

#include "crt/memory.h"
#include "orv/orv.h"
#include "runtime/heap.h"

#include <bzlib.h>
#include <zlib.h>

namespace
{

constexpr uint32_t kSize = 1 << 20;

uint8_t source[kSize];
uint8_t packed[kSize + kSize / 2];
uint8_t unpacked[kSize];

/// Words from a small dictionary: similar to text, and compressed to about a quarter.
void MakeSource()
{
    static const char kWords[] = "result handle buffer status length object section thread ";
    uint32_t random = 1;
    for (uint32_t i = 0; i < kSize;) {
        random = random * 1664525 + 1013904223;
        uint32_t word = random >> 16 & 0x1F;
        while (i < kSize && kWords[word] != ' ')
            source[i++] = static_cast<uint8_t>(kWords[word++]);
        if (i < kSize)
            source[i++] = static_cast<uint8_t>(' ' + (random >> 24 & 0xF));
    }
}

template <typename Context>
uint32_t Pack(Context &context)
{
    context.SetNextIn(source);
    context.SetAvailIn(kSize);
    context.SetNextOut(packed);
    context.SetAvailOut(sizeof packed);
    while (context.CompressFinish() == ORV_S_OK) {
    }
    const uint32_t size = sizeof packed - context.GetAvailOut();
    context.Destroy();
    return size;
}

template <typename Context>
void Unpack(Context &context, uint32_t size)
{
    context.SetNextIn(packed);
    context.SetAvailIn(size);
    context.SetNextOut(unpacked);
    context.SetAvailOut(kSize);
    while (context.Decompress() == ORV_S_OK) {
    }
    context.Destroy();
}

void *Allocate(void *, uInt items, uInt size)
{
    return detail::AllocateBytes(items * size);
}

void Free(void *, void *block)
{
    detail::FreeBytes(block);
}

void *AllocateForBzip2(void *, int items, int size)
{
    return detail::AllocateBytes(static_cast<size_t>(items) * static_cast<size_t>(size));
}

} // namespace

BENCHMARK(CompressDeflate)
{
    MakeSource();
    detail::OrvDeflateContext context;
    context.Initialize(0, true, 6);
    const uint32_t size = Pack(context);
    bench::Compare(
        {"deflate context", kSize, "bare zlib"},
        [&context] {
            context.Initialize(0, true, 6);
            Pack(context);
        },
        [] {
            z_stream stream = {};
            stream.zalloc = Allocate;
            stream.zfree = Free;
            deflateInit(&stream, 6);
            stream.next_in = source;
            stream.avail_in = kSize;
            stream.next_out = packed;
            stream.avail_out = sizeof packed;
            while (deflate(&stream, Z_FINISH) == Z_OK) {
            }
            deflateEnd(&stream);
        });
    bench::Compare(
        {"inflate context", kSize, "bare zlib"},
        [&context, size] {
            context.Initialize(0, false, 6);
            Unpack(context, size);
        },
        [size] {
            z_stream stream = {};
            stream.zalloc = Allocate;
            stream.zfree = Free;
            inflateInit(&stream);
            stream.next_in = packed;
            stream.avail_in = size;
            stream.next_out = unpacked;
            stream.avail_out = kSize;
            while (inflate(&stream, Z_NO_FLUSH) == Z_OK) {
            }
            inflateEnd(&stream);
        });
}

BENCHMARK(CompressBzip2)
{
    MakeSource();
    detail::OrvBZ2Context context;
    bench::Compare(
        {"bzip2 context", kSize, "bare libbzip2"},
        [&context] {
            context.Initialize(0, true);
            Pack(context);
        },
        [] {
            bz_stream stream = {};
            stream.bzalloc = AllocateForBzip2;
            stream.bzfree = Free;
            BZ2_bzCompressInit(&stream, 9, 0, 0);
            stream.next_in = reinterpret_cast<char *>(source);
            stream.avail_in = kSize;
            stream.next_out = reinterpret_cast<char *>(packed);
            stream.avail_out = sizeof packed;
            while (BZ2_bzCompress(&stream, BZ_FINISH) == BZ_FINISH_OK) {
            }
            BZ2_bzCompressEnd(&stream);
        });
}

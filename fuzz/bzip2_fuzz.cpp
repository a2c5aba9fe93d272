// The bzip2 format.

#include "compress_fuzz.h"

#include "orv/compress/compressing_stream.h"
#include "orv/compress/decompressing_stream.h"

namespace
{

struct Bzip2 {
    typedef OrvBZ2WriteStream Writer;
    typedef OrvBZ2ReadStream Reader;
    static constexpr bool kHasChecksum = true;

    static OrvResult Create(Writer &writer, IOrvStream &target, uint32_t level)
    {
        return writer.Create(target, static_cast<unsigned char>(level));
    }
    static OrvResult Create(Reader &reader, IOrvStream &source) { return reader.Create(source); }
};

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    Input input(data, size);
    const uint8_t choice = input.Byte();
    // Small blocks mostly: large ones take long to set up.
    CheckFormat<Bzip2>(input, choice % 4 ? 1 : choice / 4);
    return 0;
}

// Deflate and inflate, raw and in the zlib format.

#include "compress_fuzz.h"

#include "orv/compress/compressing_stream.h"
#include "orv/compress/decompressing_stream.h"

namespace
{

template <OrvDeflateFormat format>
struct Deflate {
    typedef OrvDeflateWriteStream Writer;
    typedef OrvInflateReadStream Reader;
    static constexpr bool kHasChecksum = format == OrvDeflateZlib;

    static OrvResult Create(Writer &writer, IOrvStream &target, uint32_t level)
    {
        constexpr uint32_t kLevels = 10;
        return writer.Create(target, format, static_cast<int>(level % kLevels));
    }
    static OrvResult Create(Reader &reader, IOrvStream &source) { return reader.Create(source, format); }
};

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    Input input(data, size);
    const uint8_t choice = input.Byte();
    if (choice % 2)
        CheckFormat<Deflate<OrvDeflateRaw>>(input, choice / 2);
    else
        CheckFormat<Deflate<OrvDeflateZlib>>(input, choice / 2);
    return 0;
}

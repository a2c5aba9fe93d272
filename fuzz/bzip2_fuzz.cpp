// The bzip2 format.

#include "compress_fuzz.h"

#include "orv/compress/bz2_context.h"

namespace
{

struct Bzip2 {
    typedef detail::OrvBZ2Context Context;
    typedef OrvBZ2WriteStream Writer;
    typedef OrvBZ2ReadStream Reader;
    static constexpr bool kHasChecksum = true;

    static OrvResult StartPacking(Context &context, uint32_t level)
    {
        return context.Initialize(0, true, static_cast<unsigned char>(level));
    }
    static OrvResult StartUnpacking(Context &context) { return context.Initialize(0, false); }
    static OrvResult Create(Writer &writer, IOrvStream &target) { return writer.Create(target, 1); }
    static OrvResult Create(Reader &reader, IOrvStream &source) { return reader.Create(source); }
};

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    Input input(data, size);
    const uint8_t choice = input.Byte();
    CheckFormat<Bzip2>(input,
                       choice % 4 ? 1 : choice / 4); // small blocks mostly: large ones take long to set up
    return 0;
}

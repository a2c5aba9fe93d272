// Deflate and inflate, raw and in the zlib format.

#include "compress_fuzz.h"

#include "orv/compress/deflate_context.h"

namespace
{

template <bool isRaw>
struct Deflate {
    typedef detail::OrvDeflateContext Context;
    typedef OrvDeflateWriteStream Writer;
    typedef OrvInflateReadStream Reader;
    static constexpr bool kHasChecksum = !isRaw;

    static OrvResult StartPacking(Context &context, uint32_t level)
    {
        constexpr uint32_t kLevels = 10;
        const uint32_t wanted = level % (kLevels + 1);
        return context.Initialize(
            0, true, wanted < kLevels ? static_cast<int>(wanted) : Context::kDefaultLevel, isRaw);
    }
    static OrvResult StartUnpacking(Context &context) { return context.Initialize(0, false, 0, isRaw); }

    /// Of a writer or a reader.
    template <typename Stream>
    static OrvResult Create(Stream &stream, IOrvStream &other)
    {
        return stream.Create(other, isRaw ? OrvDeflateRaw : OrvDeflateZlib);
    }
};

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    Input input(data, size);
    const uint8_t choice = input.Byte();
    if (choice % 2)
        CheckFormat<Deflate<true>>(input, choice / 2);
    else
        CheckFormat<Deflate<false>>(input, choice / 2);
    return 0;
}

#include "orv/orv.h"

namespace
{

typedef detail::OrvDeflateContext Context;

/// Takes steps until the stream is complete, and writes the output of each step to `out`. The context's own
/// buffer is the output range.
OrvResult Run(Context &context, OrvResult (Context::*step)(), OrvMbCharHeapBuffer &out)
{
    OrvResult result = ORV_S_OK;
    while (result == ORV_S_OK) {
        context.SetNextOut(context.GetBuffer());
        context.SetAvailOut(context.GetBufferSize());
        result = (context.*step)();
        const OrvResult taken = out.Append(reinterpret_cast<const char *>(context.GetBuffer()),
                                           context.GetBufferSize() - context.GetAvailOut());
        if (OrvFailed(taken))
            return taken;
    }
    return result;
}

} // namespace

int OrvMain(int, wchar_t **)
{
    OrvMbCharHeapBuffer text;
    for (uint32_t i = 0; i < 100; i++) {
        if (OrvFailed(text.Append("One line among many. ")))
            return 1;
    }

    // Compression: all of the input is there, so the first step already asks for the end.
    Context context;
    OrvMbCharHeapBuffer packed;
    OrvResult result = context.Initialize(256, true, Context::kDefaultLevel);
    context.SetNextIn(reinterpret_cast<const unsigned char *>(text.GetValue()));
    context.SetAvailIn(text.GetInternal().length);
    if (OrvSucceeded(result))
        result = Run(context, &Context::CompressFinish, packed);
    OrvPrint(L"%u bytes, compressed: fewer than 100: %s, %08X\n", text.GetInternal().length,
             packed.GetInternal().length < 100 ? L"yes" : L"no", result);
    if (OrvFailed(result) || OrvFailed(context.Destroy())) // empty a context before you use it again
        return 1;

    OrvMbCharHeapBuffer unpacked;
    result = context.Initialize(256, false, Context::kDefaultLevel);
    context.SetNextIn(reinterpret_cast<const unsigned char *>(packed.GetValue()));
    context.SetAvailIn(packed.GetInternal().length);
    if (OrvSucceeded(result))
        result = Run(context, &Context::Decompress, unpacked);
    const bool same = OrvCompareString(text.GetValue(), unpacked.GetValue()) == 0;
    OrvPrint(L"%u bytes again, the same: %s\n", unpacked.GetInternal().length, same ? L"yes" : L"no");
    if (OrvFailed(result))
        return 1;

    // The same through streams, which take the steps themselves: into any stream, and back.
    OrvBufferStream file;
    OrvBZ2WriteStream writer;
    uint32_t count = 0;
    result = writer.Create(file);
    if (OrvSucceeded(result))
        result = writer.Write(text.GetValue(), text.GetInternal().length, count);
    if (OrvSucceeded(result))
        result = writer.Finish();
    OrvBZ2ReadStream reader;
    if (OrvSucceeded(result))
        result = reader.Create(file);
    uint32_t total = 0;
    char piece[500];
    while (OrvSucceeded(result)) {
        result = reader.Read(piece, sizeof piece, count);
        total += count;
    }
    OrvPrint(L"%u bytes once more, %08X: the end\n", total, result);
    return result == ORV_E_END_OF_DATA ? 0 : 1;
}

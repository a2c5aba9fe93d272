// Writes a result made of pieces into buffers that grow.

#include "fs/path_text.h"
#include "orv/runtime/result.h"

namespace detail
{

OrvResult WritePath(OrvUtf16CharHeapBuffer &out, const PathPieces &pieces)
{
    if (pieces.Length() >= OrvTerminated)
        return ORV_E_OUT_OF_MEMORY;
    const auto length = static_cast<uint32_t>(pieces.Length());
    _ORV_UTF16CHAR_STR &text = out.GetInternal();
    if (length >= text.capacity || pieces.IsWithin(text.characters, text.capacity)) {
        // A piece may be in the present array, so that is freed only after all pieces have been read.
        OrvUtf16CharHeapBuffer larger;
        const OrvResult result = larger.ReserveElements(length);
        if (OrvFailed(result))
            return result;
        pieces.WriteTo(larger.GetBuffer());
        larger.GetInternal().length = length;
        out.Swap(larger);
        return ORV_S_OK;
    }
    pieces.WriteTo(text.characters);
    text.length = length;
    return ORV_S_OK;
}

OrvResult WritePath(const OrvMutableStringRefBase2<wchar_t> &out, const PathPieces &pieces)
{
    if (pieces.Length() >= OrvTerminated)
        return ORV_E_OUT_OF_MEMORY;
    if (pieces.StandsIn(out.view.characters, out.view.length)) {
        OrvUtf16CharHeapBuffer copy; // the owner may move its characters when it grows
        const OrvResult result = WritePath(copy, pieces);
        if (OrvFailed(result))
            return result;
        return WritePath(out, PathPieces(PathText(copy.GetBuffer(), copy.GetInternal().length)));
    }
    const OrvResult result =
        out.operations->resize(out.view, static_cast<uint32_t>(pieces.Length()), out.owner);
    if (OrvSucceeded(result) && pieces.Length())
        pieces.WriteTo(out.view.characters);
    return result;
}

} // namespace detail

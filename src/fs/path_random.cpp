// Names that are not taken yet, most likely.

#include "fs/path_text.h"
#include "orv/random/create_guid.h"

namespace
{

using detail::PathPieces;
using detail::PathText;
using detail::WritePath;

constexpr uint32_t kGuidLength = 36;
constexpr uint32_t kNameLength = 40;
constexpr uint32_t kTempFileNameLength = 44;

/// A random name with an extension, before it is written.
class RandomName
{
public:
    explicit RandomName(const PathText &extension) : pieces_(PathText(L"orv-", 4))
    {
        _OrvGuid guid;
        OrvGuidUtils::CreateLuid(guid); // never fails
        _ORV_UTF16CHAR_STR text = {0, kGuidLength + 1, characters_};
        OrvGuidUtils::GetString(guid, text);
        pieces_.Add(PathText(characters_, kGuidLength));
        pieces_.Add(extension);
    }
    RandomName(const RandomName &) = delete;
    RandomName &operator=(const RandomName &) = delete;

    const PathPieces &Pieces() const { return pieces_; }

private:
    wchar_t characters_[kGuidLength + 1];
    PathPieces pieces_;
};

} // namespace

namespace OrvBasPath
{

uint32_t GetRandomNameSize()
{
    return kNameLength;
}

uint32_t GetRandomTempFileNameSize()
{
    return kTempFileNameLength;
}

OrvResult GetRandomName(_ORV_UTF16CHAR_STR &out, unsigned int *required)
{
    return WritePath(out, RandomName(PathText()).Pieces(), required);
}

OrvResult GetRandomName(OrvUtf16CharHeapBuffer &out)
{
    return WritePath(out, RandomName(PathText()).Pieces());
}

OrvResult GetRandomName(const OrvMutableStringRefBase2<wchar_t> &out)
{
    return WritePath(out, RandomName(PathText()).Pieces());
}

OrvResult GetRandomTempFileName(_ORV_UTF16CHAR_STR &out, unsigned int *required)
{
    const OrvResult result = WritePath(out, RandomName(PathText(L".tmp", 4)).Pieces(), nullptr);
    if (result == ORV_E_BUFFER_TOO_SMALL && required)
        *required = kTempFileNameLength; // callers have come to add the terminator themselves
    return result;
}

OrvResult GetRandomTempFileName(OrvUtf16CharHeapBuffer &out)
{
    return WritePath(out, RandomName(PathText(L".tmp", 4)).Pieces());
}

OrvResult GetRandomTempFileName(const OrvMutableStringRefBase2<wchar_t> &out)
{
    return WritePath(out, RandomName(PathText(L".tmp", 4)).Pieces());
}

} // namespace OrvBasPath

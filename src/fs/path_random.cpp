// Random names for files, which very probably do not exist yet.

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

/// The parts of a random name.
class RandomName
{
public:
    RandomName()
    {
        _OrvGuid guid;
        OrvGuidUtils::CreateLuid(guid); // never fails
        _ORV_UTF16CHAR_STR text = {0, kGuidLength + 1, guid_};
        OrvGuidUtils::GetString(guid, text);
    }

    static PathText Prefix() { return PathText(L"orv-", 4); }
    PathText Guid() const { return PathText(guid_, kGuidLength); }
    static PathText TempExtension() { return PathText(L".tmp", 4); }

    PathPieces Pieces() const
    {
        PathPieces pieces(Prefix());
        pieces.Add(Guid());
        return pieces;
    }

    PathPieces TempFilePieces() const
    {
        PathPieces pieces = Pieces();
        pieces.Add(TempExtension());
        return pieces;
    }

private:
    wchar_t guid_[kGuidLength + 1];
};

/// Appends a text to the owner's text.
OrvResult Append(const OrvMutableStringRefBase2<wchar_t> &out, const PathText &text)
{
    const uint32_t start = out.view.length;
    const OrvResult result = out.operations->resize(out.view, start + text.length, out.owner);
    if (OrvSucceeded(result))
        detail::MoveBytes(out.view.characters + start, text.characters, text.length * sizeof(wchar_t));
    return result;
}

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
    return WritePath(out, RandomName().Pieces(), required);
}

OrvResult GetRandomName(OrvUtf16CharHeapBuffer &out)
{
    return WritePath(out, RandomName().Pieces());
}

OrvResult GetRandomName(const OrvMutableStringRefBase2<wchar_t> &out)
{
    OrvResult result = out.operations->resize(out.view, 0, out.owner);
    if (OrvSucceeded(result))
        result = out.operations->reserve(out.view.characters, kNameLength, out.owner);
    if (OrvSucceeded(result))
        result = Append(out, RandomName::Prefix());
    return OrvSucceeded(result) ? Append(out, RandomName().Guid()) : result;
}

OrvResult GetRandomTempFileName(_ORV_UTF16CHAR_STR &out, unsigned int *required)
{
    const OrvResult result = WritePath(out, RandomName().TempFilePieces(), nullptr);
    if (result == ORV_E_BUFFER_TOO_SMALL && required)
        *required = kTempFileNameLength; // without the terminator: callers rely on that and add it
    return result;
}

OrvResult GetRandomTempFileName(OrvUtf16CharHeapBuffer &out)
{
    return WritePath(out, RandomName().TempFilePieces());
}

OrvResult GetRandomTempFileName(const OrvMutableStringRefBase2<wchar_t> &out)
{
    OrvResult result = out.operations->reserve(out.view.characters, kTempFileNameLength, out.owner);
    if (OrvSucceeded(result))
        result = GetRandomName(out);
    return OrvSucceeded(result) ? Append(out, RandomName::TempExtension()) : result;
}

} // namespace OrvBasPath

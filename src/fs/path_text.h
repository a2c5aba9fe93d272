// What all path operations share: the kinds of characters, a result made of pieces, and the three places to
// which a result can be written.

#pragma once

#include "orv/fs/path.h"
#include "orv/runtime/result.h"
#include "orv/text/character.h"
#include "text/length.h"
#include "text/vector.h"

namespace detail
{

/// A text to read, with its length.
struct PathText {
    const wchar_t *characters;
    uint32_t length;

    PathText() : characters(nullptr), length(0) {}
    PathText(const wchar_t *text, uint32_t count) : characters(text), length(ResolveLength(text, count)) {}
    explicit PathText(const OrvStringRefBase<wchar_t> &text) : PathText(text.characters, text.length) {}

    wchar_t operator[](uint32_t index) const { return LoadUnit(characters + index); }
    bool IsEmpty() const { return length == 0; }
    wchar_t Last() const { return (*this)[length - 1]; }
    PathText From(uint32_t start) const { return PathText(characters + start, length - start); }
    PathText UpTo(uint32_t end) const { return PathText(characters, end); }
};

inline bool IsSeparator(wchar_t character)
{
    return character == L'\\' || character == L'/';
}

/// Whether the text starts with the prefix, in any letter case. The prefix must be in upper case.
inline bool StartsWith(const PathText &text, const wchar_t *prefix)
{
    uint32_t i = 0;
    while (prefix[i] && i < text.length && OrvToASCIIUpper(text[i]) == prefix[i])
        i++;
    return !prefix[i];
}

/// The prefix of a path to a server that the platform takes literally.
constexpr wchar_t kLiteralServers[] = L"\\\\?\\UNC\\";

/// Whether a backward scan for the start of a name's extension stops here.
inline bool EndsName(wchar_t character)
{
    return IsSeparator(character) || character == L':';
}

/// Whether the path is "D:" alone, "D:\..." or "\\...".
inline bool IsAbsolute(const PathText &path)
{
    if (path.length < 2)
        return false;
    if (path[1] == L':')
        return path.length == 2 || IsSeparator(path[2]);
    return IsSeparator(path[0]) && IsSeparator(path[1]);
}

/// A result before it is written: pieces of the inputs and constant texts, one after another.
class PathPieces
{
public:
    PathPieces() = default;
    explicit PathPieces(const PathText &only) { Add(only); }

    void Add(const PathText &piece)
    {
        if (piece.length)
            pieces_[count_++] = piece;
        length_ += piece.length;
    }

    /// Whether an empty result may be written where there is no room even for a terminator.
    bool needsNoRoomWhenEmpty = false;

    uint64_t Length() const { return length_; }

    /// Writes the pieces and a terminator. The first piece may already be at `target`.
    void WriteTo(wchar_t *target) const
    {
        for (uint32_t i = 0; i < count_; i++) {
            MoveBytes(target, pieces_[i].characters, pieces_[i].length * sizeof(wchar_t));
            target += pieces_[i].length;
        }
        StoreUnit(target, wchar_t(0));
    }

    /// Whether a piece starts inside the array. The first piece does not count if it is at the array's start.
    bool IsWithin(const wchar_t *array, uint32_t capacity) const
    {
        for (uint32_t i = 0; i < count_; i++) {
            const bool staysInPlace = i == 0 && pieces_[i].characters == array;
            if (!staysInPlace && pieces_[i].characters >= array && pieces_[i].characters < array + capacity)
                return true;
        }
        return false;
    }

    bool StandsIn(const wchar_t *array, uint32_t capacity) const
    {
        return IsWithin(array, capacity) || (count_ && capacity && pieces_[0].characters == array);
    }

private:
    PathText pieces_[3];
    uint32_t count_ = 0;
    uint64_t length_ = 0;
};

inline OrvResult WritePath(_ORV_UTF16CHAR_STR &out, const PathPieces &pieces, unsigned int *required)
{
    if (out.capacity == 0 && pieces.Length() == 0 && pieces.needsNoRoomWhenEmpty) {
        out.length = 0;
        return ORV_S_OK;
    }
    if (pieces.Length() >= out.capacity) {
        if (required)
            *required = SizeWithTerminator(pieces.Length());
        return ORV_E_BUFFER_TOO_SMALL;
    }
    if (!out.characters)
        return ORV_E_INVALID_ARGUMENT;
    pieces.WriteTo(out.characters);
    out.length = static_cast<uint32_t>(pieces.Length());
    return ORV_S_OK;
}

OrvResult WritePath(OrvUtf16CharHeapBuffer &out, const PathPieces &pieces);
OrvResult WritePath(const OrvMutableStringRefBase2<wchar_t> &out, const PathPieces &pieces);

} // namespace detail

// Any path: its parts, and its combination with another path, written into buffers and arrays.

#include "fuzz.h"

#include "orv/fs/path.h"
#include "orv/runtime/result.h"

namespace
{

using namespace OrvBasPath;
typedef OrvUtf16CharHeapBuffer Buffer;

struct Text {
    const wchar_t *characters;
    uint32_t length;
};

bool Equal(const Buffer &buffer, const wchar_t *characters, uint32_t length)
{
    const _ORV_UTF16CHAR_STR &text = buffer.GetInternal();
    return text.length == length && memcmp(buffer.GetValue(), characters, length * sizeof(wchar_t)) == 0;
}

/// Writes the result into a buffer, into an array that just holds it, and not into one that does not.
template <typename Operation>
void CheckForms(Buffer &result, Operation operation)
{
    const OrvResult expected = operation(result);
    const uint32_t length = result.GetInternal().length;
    REQUIRE(result.GetValue()[length] == 0);
    ExactArray<wchar_t> array(length + 1);
    _ORV_UTF16CHAR_STR exact = {77, length + 1, array};
    REQUIRE(operation(exact) == expected);
    REQUIRE(Equal(result, array, exact.length) && array[length] == 0);
    if (length) {
        ExactArray<wchar_t> shorter(length);
        _ORV_UTF16CHAR_STR tooSmall = {77, length, shorter};
        REQUIRE(operation(tooSmall) == ORV_E_BUFFER_TOO_SMALL && tooSmall.length == 77);
    }
}

/// The same for an operation on one path, which may also stand in the buffer or array that is written to.
template <typename Operation>
void CheckSplit(Buffer &result, const Text &path, Operation operation)
{
    ExactArray<wchar_t> counted(path.characters, path.length); // no terminator to lean on
    CheckForms(result, [&](auto &out) { return operation(out, counted, path.length); });
    Buffer own;
    own.Assign(path.characters, path.length);
    operation(own, own.GetBuffer(), path.length);
    REQUIRE(Equal(own, result.GetValue(), result.GetInternal().length));

    ExactArray<wchar_t> array(path.length + 3); // room for what an operation adds to the path
    memcpy(array, path.characters, path.length * sizeof(wchar_t));
    _ORV_UTF16CHAR_STR inPlace = {0, path.length + 3, array};
    operation(inPlace, array, path.length);
    REQUIRE(Equal(result, array, inPlace.length));
}

// One function for both forms of an operation.
#define FORMS(operation)                                                                                     \
    [](auto &out, const wchar_t *path, uint32_t length) { return operation(out, path, length); }

bool IsSeparator(wchar_t character)
{
    return character == L'\\' || character == L'/';
}

bool HasAny(const Text &text, bool (*predicate)(wchar_t))
{
    for (uint32_t i = 0; i < text.length; i++) {
        if (predicate(text.characters[i]))
            return true;
    }
    return false;
}

bool EndsName(wchar_t character)
{
    return IsSeparator(character) || character == L':';
}

void CheckRoot(const Text &path)
{
    const uint32_t length = GetPathRootLength(path.characters, path.length);
    REQUIRE(length <= path.length);
    REQUIRE(GetPathRootLength(path.characters, length) == length);
    REQUIRE(IsPathRooted(path.characters, path.length) == (length != 0));
    Buffer root;
    CheckForms(root, [&](auto &out) { return GetPathRoot(out, path.characters); });
    REQUIRE(Equal(root, path.characters, length));
}

void CheckJoin(const Text &first, const Text &second)
{
    ExactArray<wchar_t> firstCounted(first.characters, first.length);
    ExactArray<wchar_t> secondCounted(second.characters, second.length);
    Buffer combined;
    Buffer part;
    CheckForms(combined, [&](auto &out) {
        return CombinePaths(out, firstCounted, secondCounted, first.length, second.length);
    });
    if (second.length && !HasAny(second, EndsName)) {
        // A plain name comes out again, and so does the directory, but for the separators at its end.
        REQUIRE(GetFilename(part, combined.GetValue()) == 0);
        REQUIRE(Equal(part, second.characters, second.length));
        uint32_t end = first.length;
        while (end > 1 && IsSeparator(first.characters[end - 1]))
            end--;
        REQUIRE(GetDirectoryPathFromFilenamePath(part, combined.GetValue()) == 0);
        const bool isDrive = end >= 2 && first.characters[end - 1] == L':';
        REQUIRE(part.GetInternal().length == end + isDrive);
        REQUIRE(memcmp(part.GetValue(), first.characters, end * sizeof(wchar_t)) == 0);
    }

    // Appending puts a separator between, and nothing else, whatever the part is.
    Buffer appended;
    appended.Assign(first.characters, first.length);
    REQUIRE(AppendPath(appended, second.characters) == 0);
    const bool isSeparated = first.length == 0 || IsSeparator(first.characters[first.length - 1]);
    const uint32_t start = first.length + !isSeparated;
    REQUIRE(appended.GetInternal().length == start + second.length);
    REQUIRE(isSeparated || appended[first.length] == L'\\');
    REQUIRE(memcmp(appended.GetValue(), first.characters, first.length * sizeof(wchar_t)) == 0);
    REQUIRE(memcmp(appended.GetValue() + start, second.characters, second.length * sizeof(wchar_t)) == 0);

    if (first.length == 0)
        return;
    Buffer changed;
    CheckForms(changed, [&](auto &out) {
        return ChangeExtension(out, firstCounted, secondCounted, first.length, second.length);
    });
    Buffer before;
    REQUIRE(GetFilenameWithoutExtension(before, first.characters) == 0);
    const bool isPlain = !HasAny(second, [](wchar_t c) { return EndsName(c) || c == L'.'; });
    if (isPlain && !EndsName(first.characters[first.length - 1])) {
        REQUIRE(GetFilenameWithoutExtension(part, changed.GetValue()) == 0);
        REQUIRE(Equal(part, before.GetValue(), before.GetInternal().length));
        REQUIRE(HasExtension(changed.GetValue()) == (second.length != 0));
    }
}

/// Half of a path is what paths have a meaning for.
wchar_t Letter(uint8_t byte)
{
    constexpr uint16_t kLetters[] = {'\\', '/', ':', '.', '?',  '~',    ' ',    'a',
                                     'A',  'b', 'D', 'z', 0xE9, 0x0131, 0xFFFF, 0xD83D};
    return static_cast<wchar_t>(kLetters[byte % (sizeof kLetters / sizeof kLetters[0])]);
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    if (size == 0)
        return 0;
    const auto total = static_cast<uint32_t>(size - 1);
    const uint32_t firstLength = data[0] < total ? data[0] : total;
    const uint32_t secondLength = total - firstLength;
    ExactArray<wchar_t> first(firstLength + 1);
    ExactArray<wchar_t> second(secondLength + 1);
    for (uint32_t i = 0; i < firstLength; i++)
        first[i] = Letter(data[1 + i]);
    for (uint32_t i = 0; i < secondLength; i++)
        second[i] = Letter(data[1 + firstLength + i]);
    first[firstLength] = 0;
    second[secondLength] = 0;

    const Text path = {first, firstLength};
    CheckRoot(path);
    Buffer result;
    CheckSplit(result, path, FORMS(GetVolumeFromPath));
    CheckSplit(result, path, FORMS(GetFilename));
    CheckSplit(result, path, FORMS(GetFilenameExtension));
    REQUIRE(HasExtension(path.characters, path.length) == !result.IsEmpty());
    CheckSplit(result, path, FORMS(GetFilenameWithoutExtension));
    CheckSplit(result, path, FORMS(GetDirectoryPathFromFilenamePath));
    CheckJoin(path, {second, secondLength});
    return 0;
}

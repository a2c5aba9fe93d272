// Any path: what is taken out of it, and what it makes with another, in every form and at every capacity that
// matters.

#include "fuzz.h"

#include "orv/fs/path.h"
#include "orv/runtime/result.h"

namespace
{

using namespace OrvBasPath;
typedef OrvUtf16CharHeapBuffer Buffer;
typedef OrvMutableStringRefBase2<wchar_t> Reference;

struct Text {
    const wchar_t *characters;
    uint32_t length;
};

bool Equal(const Buffer &buffer, const wchar_t *characters, uint32_t length)
{
    const _ORV_UTF16CHAR_STR &text = buffer.GetInternal();
    return text.length == length && memcmp(buffer.GetValue(), characters, length * sizeof(wchar_t)) == 0;
}

/// Runs `operation`, which takes any of the three targets and where to report the capacity that is required.
template <typename Operation>
void CheckForms(Buffer &result, Operation operation)
{
    const OrvResult expected = operation(result, nullptr);
    const uint32_t length = result.GetInternal().length;
    REQUIRE(result.GetValue()[length] == 0);

    const bool needsNoRoom = [&] {
        _ORV_UTF16CHAR_STR none = {77, 0, nullptr};
        unsigned int required = 0;
        const OrvResult query = operation(none, &required);
        REQUIRE(query == expected || (query == ORV_E_BUFFER_TOO_SMALL && required == length + 1));
        REQUIRE(none.length == (query == expected ? 0 : 77));
        return query == expected;
    }();
    REQUIRE(!needsNoRoom || length == 0);
    constexpr uint32_t kMostTried = 24; // the least and the largest that do not fit
    for (uint32_t capacity = 1; capacity <= length; capacity++) {
        if (capacity == kMostTried / 2 && length > kMostTried)
            capacity = length - kMostTried / 2;
        ExactArray<wchar_t> shorter(capacity);
        memset(shorter, '#', capacity * sizeof(wchar_t));
        _ORV_UTF16CHAR_STR tooSmall = {77, capacity, shorter};
        REQUIRE(operation(tooSmall, nullptr) == ORV_E_BUFFER_TOO_SMALL && tooSmall.length == 77);
        for (uint32_t i = 0; i < capacity; i++)
            REQUIRE(shorter[i] == 0x2323);
    }
    ExactArray<wchar_t> array(length + 1);
    _ORV_UTF16CHAR_STR exact = {77, length + 1, array};
    REQUIRE(operation(exact, nullptr) == expected);
    REQUIRE(Equal(result, array, exact.length) && array[length] == 0);

    Buffer owner;
    owner.Assign(L"before");
    const Reference reference = OrvMakeMutableStringRef(owner);
    REQUIRE(operation(reference, nullptr) == expected);
    REQUIRE(Equal(owner, result.GetValue(), length));
}

/// The same for an operation on one path, which may also stand in the buffer or array that is written to.
template <typename Operation>
void CheckSplit(Buffer &result, const Text &path, Operation operation)
{
    ExactArray<wchar_t> counted(path.characters, path.length); // no terminator to lean on
    CheckForms(result, [&](auto &out, unsigned int *required) {
        return operation(out, counted, path.length, required);
    });
    Buffer own;
    own.Assign(path.characters, path.length);
    operation(own, own.GetBuffer(), path.length, nullptr);
    REQUIRE(Equal(own, result.GetValue(), result.GetInternal().length));

    ExactArray<wchar_t> array(path.length + 3); // room for what an operation adds to the path
    memcpy(array, path.characters, path.length * sizeof(wchar_t));
    _ORV_UTF16CHAR_STR inPlace = {0, path.length + 3, array};
    operation(inPlace, array, path.length, nullptr);
    REQUIRE(Equal(result, array, inPlace.length));
}

template <typename Out>
constexpr bool kIsArray = __is_same(Out, _ORV_UTF16CHAR_STR &);
template <typename Out>
constexpr bool kIsReference = __is_same(Out, const Reference &);

// One function for the three forms of an operation.
#define SPLITTER(operation)                                                                                  \
    [](auto &out, const wchar_t *path, uint32_t length, unsigned int *required) {                            \
        if constexpr (kIsArray<decltype(out)>)                                                               \
            return operation(out, path, length, required);                                                   \
        else if constexpr (kIsReference<decltype(out)>)                                                      \
            return operation(out, OrvStringRefBase<wchar_t>(path, length));                                  \
        else                                                                                                 \
            return operation(out, path, length);                                                             \
    }

#define JOINER(operation, first, second)                                                                     \
    [&](auto &out, unsigned int *required) {                                                                 \
        if constexpr (kIsArray<decltype(out)>)                                                               \
            return operation(out, first.characters, second.characters, first.length, second.length,          \
                             required);                                                                      \
        else if constexpr (kIsReference<decltype(out)>)                                                      \
            return operation(out, OrvStringRefBase<wchar_t>(first.characters, first.length),                 \
                             OrvStringRefBase<wchar_t>(second.characters, second.length));                   \
        else                                                                                                 \
            return operation(out, first.characters, second.characters, first.length, second.length);         \
    }

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
    CheckForms(root, [&](auto &out, unsigned int *required) {
        if constexpr (kIsArray<decltype(out)>)
            return GetPathRoot(out, path.characters, required);
        else if constexpr (kIsReference<decltype(out)>)
            return GetPathRoot(out, OrvStringRefBase<wchar_t>(path.characters, path.length));
        else
            return GetPathRoot(out, path.characters);
    });
    REQUIRE(Equal(root, path.characters, length));
}

void CheckJoin(const Text &first, const Text &second)
{
    ExactArray<wchar_t> firstCounted(first.characters, first.length);
    ExactArray<wchar_t> secondCounted(second.characters, second.length);
    const Text counted[] = {{firstCounted, first.length}, {secondCounted, second.length}};
    Buffer combined;
    Buffer part;
    CheckForms(combined, JOINER(CombinePaths, counted[0], counted[1]));
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
    CheckForms(changed, JOINER(ChangeExtension, counted[0], counted[1]));
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
    CheckSplit(result, path, SPLITTER(GetVolumeFromPath));
    CheckSplit(result, path, SPLITTER(GetFilename));
    CheckSplit(result, path, SPLITTER(GetFilenameExtension));
    REQUIRE(HasExtension(path.characters, path.length) == !result.IsEmpty());
    CheckSplit(result, path, SPLITTER(GetFilenameWithoutExtension));
    CheckSplit(result, path, SPLITTER(GetDirectoryPathFromFilenamePath));
    CheckJoin(path, {second, secondLength});
    return 0;
}

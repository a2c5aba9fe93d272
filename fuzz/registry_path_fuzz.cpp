// Any text as a place in the registry: its parts can be joined to the same place again, and the root has the
// name in the text. And any path: the part for the 32-bit view can be inserted at one place only.

#include "fuzz.h"

#include "orv/registry/registry_handle.h"
#include "orv/runtime/result.h"
#include "orv/text/character.h"
#include "orv/text/heap_string.h"
#include "orv/text/string.h"
#include "registry/registry_path.h"
#include "registry/registry_roots.h"

namespace
{

typedef OrvBasWinRegistryHandle Handle;
typedef OrvStringRefBase<wchar_t> Text;

struct Location {
    OrvBasWinRegistryRootType root = OrvRegistryNoRoot;
    OrvUtf16HeapString path;
    bool hasValue = false;
    OrvUtf16HeapString value;

    OrvResult Split(const Text &text) { return Handle::SplitRegistryPath(root, path, hasValue, value, text); }
    Text Path() const { return {path.GetCharacters(), path.GetLength()}; }
    Text Value() const { return {value.GetCharacters(), value.GetLength()}; }
};

bool Equal(const Text &a, const Text &b)
{
    return a.length == b.length && memcmp(a.characters, b.characters, a.length * sizeof(wchar_t)) == 0;
}

bool EqualWithoutCase(const wchar_t *text, uint32_t length, const wchar_t *name)
{
    uint32_t i = 0;
    while (i < length && name[i] && OrvToUpper(text[i]) == OrvToUpper(name[i]))
        i++;
    return i == length && !name[i];
}

void CheckLocation(const wchar_t *characters, uint32_t length)
{
    uint32_t rootLength = 0;
    while (rootLength < length && characters[rootLength] != L'\\')
        rootLength++;
    bool isRoot = false;
    for (const detail::RegistryRoot &root : detail::kRegistryRoots) {
        isRoot = isRoot || EqualWithoutCase(characters, rootLength, root.shortName) ||
                 EqualWithoutCase(characters, rootLength, root.longName);
    }
    Location location;
    const OrvResult result = location.Split({characters, length});
    REQUIRE(result == (isRoot ? ORV_S_OK : ORV_E_INVALID_ARGUMENT));
    if (OrvFailed(result)) {
        REQUIRE(location.root == OrvRegistryNoRoot && !location.hasValue && location.path.GetLength() == 0);
        return;
    }
    // Two separators in a row start a value's name, and only the first two.
    const Text path = location.Path();
    for (uint32_t i = 1; i < path.length; i++)
        REQUIRE(path.characters[i - 1] != L'\\' || path.characters[i] != L'\\');

    OrvUtf16HeapString text;
    REQUIRE((location.hasValue ? Handle::CombineRegistryPath(text, location.root, path, location.Value())
                               : Handle::CombineRegistryPath(text, location.root, path)) == ORV_S_OK);
    Location again;
    REQUIRE(again.Split({text.GetCharacters(), text.GetLength()}) == ORV_S_OK);
    REQUIRE(again.root == location.root && again.hasValue == location.hasValue);
    REQUIRE(Equal(again.Path(), path) && Equal(again.Value(), location.Value()));
    // What stands behind the root comes again, but for a separator that ends it.
    const uint32_t behind = length - rootLength;
    const uint32_t written =
        text.GetLength() - OrvGetStringSizeInElements(detail::FindRegistryRoot(location.root)->shortName);
    const bool endsWithRoot = behind == 1;
    REQUIRE(written == (endsWithRoot ? 0 : behind));
    REQUIRE(memcmp(text.GetCharacters() + text.GetLength() - written, characters + length - written,
                   written * sizeof(wchar_t)) == 0);
}

void CheckView(OrvBasWinRegistryRootType root, const Text &path)
{
    const uint32_t position = detail::FindWow6432NodePosition(root, path.characters, path.length);
    REQUIRE(position <= path.length);
    if (position == 0)
        return;
    REQUIRE(position == path.length || path.characters[position] == L'\\');
    REQUIRE(root == OrvRegistryLocalMachine || root == OrvRegistryUsers);
    // With the part in its place there is none to put there.
    OrvUtf16CharHeapBuffer moved;
    moved.Append(path.characters, position);
    moved.Append(L"\\Wow6432Node");
    moved.Append(path.characters + position, path.length - position);
    REQUIRE(detail::FindWow6432NodePosition(root, moved.GetValue(), moved.GetInternal().length) == 0);
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    // A first byte that stands for a start which would take the fuzzer long to find.
    static const wchar_t *const kStarts[] = {L"", L"HKLM", L"HKEY_CURRENT_USER", L"SOFTWARE\\Wow6432Node"};
    Input input(data, size);
    OrvUtf16CharHeapBuffer text;
    text.Append(kStarts[input.Byte() % 4]);
    while (input.Left()) {
        const uint8_t byte = input.Byte();
        text.Append(static_cast<wchar_t>(byte < 0xF0 ? byte : byte | 0x0100));
    }
    const uint32_t length = text.GetInternal().length;
    ExactArray<wchar_t> exact(text.GetValue(), length);
    CheckLocation(exact, length);
    CheckView(OrvRegistryLocalMachine, {exact, length});
    CheckView(OrvRegistryUsers, {exact, length});
    return 0;
}

// Key paths as text: split, combined, and with the path part of the 32-bit view.

#include "registry/registry_path.h"

#include "nt/nt.h"
#include "orv/registry/registry_handle.h"
#include "orv/runtime/result.h"
#include "orv/text/character.h"
#include "registry/registry_roots.h"
#include "runtime/status.h"
#include "text/length.h"

namespace
{

constexpr wchar_t kMachine[] = L"\\REGISTRY\\MACHINE";
constexpr uint32_t kMachineLength = 17;
constexpr wchar_t kUser[] = L"\\REGISTRY\\USER";
constexpr uint32_t kUserLength = 14;
constexpr wchar_t kNodePart[] = L"\\WOW6432NODE";
constexpr uint32_t kNodePartLength = 12;
constexpr wchar_t kClassesEnd[] = L"_CLASSES";
constexpr uint32_t kClassesEndLength = 8;

/// Whether `part` is at the position, in any letter case, and its last name ends with it. `part` must be in
/// upper case.
bool HasPartAt(const wchar_t *text, uint32_t length, uint32_t position, const wchar_t *part,
               uint32_t partLength)
{
    if (length - position < partLength)
        return false;
    for (uint32_t i = 0; i < partLength; i++) {
        if (OrvToASCIIUpper(text[position + i]) != part[i])
            return false;
    }
    return length - position == partLength || text[position + partLength] == L'\\';
}

uint32_t FindSeparator(const wchar_t *text, uint32_t length, uint32_t position)
{
    while (position < length && text[position] != L'\\')
        position++;
    return position;
}

/// The text after a root's name, without the separator if there is one.
struct Rest {
    Rest(const wchar_t *text, uint32_t length, uint32_t start)
    {
        start += start < length;
        characters = text + start;
        count = length - start;
    }

    const wchar_t *characters;
    uint32_t count;
};

/// Splits a name under "\REGISTRY\USER". The name must be in upper case.
OrvResult SplitUserKeyName(const wchar_t *name, uint32_t length, OrvBasWinRegistryRootType &root,
                           OrvUtf16CharHeapBuffer &path)
{
    UNICODE_STRING own = {};
    OrvResult result = detail::ResultFromCall(RtlFormatCurrentUserKeyPath(&own));
    if (OrvFailed(result))
        return result;
    const uint32_t ownLength = own.Length / sizeof(wchar_t);
    bool isOwn = length >= ownLength;
    for (uint32_t i = 0; isOwn && i < ownLength; i++)
        isOwn = OrvToUpper(own.Buffer[i]) == name[i];
    RtlFreeUnicodeString(&own);

    Rest rest(name, length, kUserLength);
    OrvBasWinRegistryRootType found = OrvRegistryUsers;
    if (isOwn && (length == ownLength || name[ownLength] == L'\\')) {
        found = OrvRegistryCurrentUser;
        rest = Rest(name, length, ownLength);
    } else if (isOwn && HasPartAt(name, length, ownLength, kClassesEnd, kClassesEndLength)) {
        found = OrvRegistryClassesRoot;
        rest = Rest(name, length, ownLength + kClassesEndLength);
    }
    result = path.Assign(rest.characters, rest.count);
    if (OrvSucceeded(result))
        root = found;
    return result;
}

OrvResult Append(OrvUtf16CharHeapBuffer &text, const OrvStringRefBase<wchar_t> &piece)
{
    return text.Append(piece.characters, detail::ResolveLength(piece.characters, piece.length));
}

OrvResult Combine(IOrvString<wchar_t> &text, OrvBasWinRegistryRootType root,
                  const OrvStringRefBase<wchar_t> &path, const OrvStringRefBase<wchar_t> *valueName)
{
    OrvUtf16CharHeapBuffer combined;
    const detail::RegistryRoot *const found = detail::FindRegistryRoot(root);
    OrvResult result = found ? combined.Append(found->shortName) : ORV_S_OK;
    if (OrvSucceeded(result) && detail::ResolveLength(path.characters, path.length)) {
        result = combined.Append(L'\\');
        if (OrvSucceeded(result))
            result = Append(combined, path);
    }
    if (OrvSucceeded(result) && valueName) {
        result = combined.Append(L"\\\\");
        if (OrvSucceeded(result))
            result = Append(combined, *valueName);
    }
    return OrvSucceeded(result) ? text.Set(combined.GetValue(), combined.GetInternal().length) : result;
}

} // namespace

namespace detail
{

const wchar_t kWow6432Node[12] = L"Wow6432Node";

uint32_t FindWow6432NodePosition(OrvBasWinRegistryRootType root, const wchar_t *path, uint32_t length)
{
    constexpr wchar_t kSoftware[] = L"SOFTWARE";
    constexpr uint32_t kSoftwareLength = 8;
    uint32_t position = 0;
    if (root == OrvRegistryUsers) {
        // After the user's name: "S-1-5-...\Software" or "S-1-5-..._Classes".
        const uint32_t end = FindSeparator(path, length, 0);
        if (end >= kClassesEndLength &&
            HasPartAt(path, end, end - kClassesEndLength, kClassesEnd, kClassesEndLength))
            return HasPartAt(path, length, end, kNodePart, kNodePartLength) ? 0 : end;
        if (end == length)
            return 0;
        position = end + 1;
    } else if (root != OrvRegistryLocalMachine) {
        return 0;
    }
    if (!HasPartAt(path, length, position, kSoftware, kSoftwareLength))
        return 0;
    position += kSoftwareLength;
    return HasPartAt(path, length, position, kNodePart, kNodePartLength) ? 0 : position;
}

OrvResult SplitNativeKeyName(const wchar_t *name, uint32_t length, OrvBasWinRegistryRootType &root,
                             OrvUtf16CharHeapBuffer &path, uint32_t &access)
{
    OrvUtf16CharHeapBuffer upper;
    OrvResult result = upper.Resize(length);
    if (OrvFailed(result))
        return result;
    for (uint32_t i = 0; i < length; i++)
        upper[i] = OrvToUpper(name[i]);
    if (HasPartAt(upper.GetBuffer(), length, 0, kUser, kUserLength))
        return SplitUserKeyName(upper.GetBuffer(), length, root, path);
    if (!HasPartAt(upper.GetBuffer(), length, 0, kMachine, kMachineLength))
        return ORV_E_NOT_PROVIDED;

    uint32_t newAccess = access;
    // Only the first match counts, even if it is the start of a longer name.
    const wchar_t *const part = OrvFindSubString(upper.GetValue(), kNodePart, length, kNodePartLength);
    const auto position = part ? static_cast<uint32_t>(part - upper.GetValue()) : length;
    if (HasPartAt(upper.GetBuffer(), length, position, kNodePart, kNodePartLength)) {
        upper.Erase(position, kNodePartLength);
        newAccess = (newAccess ^ KEY_WOW64_64KEY) | KEY_WOW64_32KEY;
    }
    const Rest rest(upper.GetBuffer(), upper.GetInternal().length, kMachineLength);
    result = path.Assign(rest.characters, rest.count);
    if (OrvFailed(result))
        return result;
    root = OrvRegistryLocalMachine;
    access = newAccess;
    return ORV_S_OK;
}

} // namespace detail

const wchar_t *OrvBasWinRegistryHandle::GetWow6432NodeName()
{
    return detail::kWow6432Node;
}

OrvResult OrvBasWinRegistryHandle::SplitRegistryPath(OrvBasWinRegistryRootType &root,
                                                     IOrvString<wchar_t> &path, bool &hasValue,
                                                     IOrvString<wchar_t> &valueName, const Name &text)
{
    const wchar_t *const characters = text.characters;
    const uint32_t length = detail::ResolveLength(characters, text.length);
    const uint32_t rootEnd = FindSeparator(characters, length, 0);
    const detail::RegistryRoot *const found = detail::FindRegistryRoot(characters, rootEnd);
    if (!found)
        return ORV_E_INVALID_ARGUMENT;

    uint32_t pathEnd = rootEnd;
    while (pathEnd < length &&
           !(characters[pathEnd] == L'\\' && pathEnd + 1 < length && characters[pathEnd + 1] == L'\\'))
        pathEnd++;
    const bool isValueGiven = pathEnd < length;
    const Rest key(characters, pathEnd, rootEnd);
    const uint32_t valueStart = isValueGiven ? pathEnd + 2 : length;
    OrvResult result = path.Set(key.characters, key.count);
    if (OrvSucceeded(result))
        result = valueName.Set(characters + valueStart, length - valueStart);
    if (OrvFailed(result))
        return result;
    root = found->type;
    hasValue = isValueGiven;
    return ORV_S_OK;
}

OrvResult OrvBasWinRegistryHandle::CombineRegistryPath(IOrvString<wchar_t> &text,
                                                       OrvBasWinRegistryRootType root, const Name &path)
{
    return Combine(text, root, path, nullptr);
}

OrvResult OrvBasWinRegistryHandle::CombineRegistryPath(IOrvString<wchar_t> &text,
                                                       OrvBasWinRegistryRootType root, const Name &path,
                                                       const Name &valueName)
{
    return Combine(text, root, path, &valueName);
}

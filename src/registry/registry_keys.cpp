// The registry handle's operations on keys: create, delete, describe.

#include "orv/registry/registry_handle.h"

#include "orv/runtime/result.h"
#include "registry/registry_key.h"
#include "registry/registry_path.h"
#include "runtime/growth.h"
#include "runtime/native_handle.h"
#include "runtime/small_array.h"
#include "runtime/status.h"

namespace
{

/// Owns the keys from the one to be deleted down to the one that is being emptied. Many keys are kept on the
/// heap, because only the platform limits the depth.
class KeyStack
{
public:
    KeyStack() = default;
    KeyStack(const KeyStack &) = delete;
    KeyStack &operator=(const KeyStack &) = delete;
    ~KeyStack()
    {
        while (!IsEmpty())
            Pop();
    }

    bool IsEmpty() const { return count_ == 0; }
    HANDLE Top() const { return keys_.Get()[count_ - 1]; }

    /// Takes ownership of the key. False when the heap refuses; the caller then still owns the key.
    bool Push(detail::NativeHandle &key)
    {
        if (count_ == keys_.Capacity() &&
            !keys_.ReserveKeeping(detail::GrownCapacity(count_, count_ + 1, kOnStack), count_))
            return false;
        keys_.Get()[count_++] = key.Detach();
        return true;
    }

    void Pop() { detail::NativeHandle(keys_.Get()[--count_]).Close(); }

private:
    static constexpr uint32_t kOnStack = 16;

    detail::SmallArray<HANDLE, kOnStack> keys_;
    uint32_t count_ = 0;
};

constexpr ACCESS_MASK kToDeleteTree = DELETE | KEY_ENUMERATE_SUB_KEYS;

bool IsGone(OrvResult result)
{
    return result == ORV_E_FILE_NOT_FOUND || result == ORV_E_PATH_NOT_FOUND ||
           result == detail::ResultFromStatus(STATUS_KEY_DELETED);
}

OrvResult QueryInfo(HANDLE key, OrvBasWinRegistryKeyInfo &info)
{
    KEY_FULL_INFORMATION full = {};
    ULONG needed = 0;
    const NTSTATUS status = ZwQueryKey(key, KeyFullInformation, &full, sizeof full, &needed);
    // An overflow only means that the key's class did not fit, and the class is not needed.
    if (!NT_SUCCESS(status) && status != STATUS_BUFFER_OVERFLOW)
        return detail::ResultFromStatus(status);
    info.lastWriteTime = static_cast<uint64_t>(full.LastWriteTime);
    info.subKeyCount = full.SubKeys;
    info.longestSubKeyName = full.MaxNameLen / sizeof(WCHAR);
    info.valueCount = full.Values;
    info.longestValueName = full.MaxValueNameLen / sizeof(WCHAR);
    info.largestValue = full.MaxValueDataLen;
    return ORV_S_OK;
}

} // namespace

bool OrvBasWinRegistryHandle::Exists(const Name &path, OrvWinTransaction *transaction)
{
    detail::NativeHandle key;
    const OrvResult result = CreateHandleInternal(*key.Receive(), path, KEY_QUERY_VALUE, transaction);
    return OrvSucceeded(result) || result == ORV_E_ACCESS_DENIED;
}

bool OrvBasWinRegistryHandle::KeyExists(const Name &path)
{
    return Exists(path, nullptr);
}

bool OrvBasWinRegistryHandle::KeyExistsTransacted(OrvWinTransaction &transaction, const Name &path)
{
    return Exists(path, &transaction);
}

OrvResult OrvBasWinRegistryHandle::CreateBelow(const Name &path, OrvWinTransaction *transaction,
                                               Creation creation)
{
    detail::NativeHandle key;
    return Open(kFromCurrentKey, path, KEY_QUERY_VALUE, transaction, creation, *key.Receive());
}

OrvResult OrvBasWinRegistryHandle::CreateKey(const Name &path)
{
    return CreateBelow(path, nullptr, kCreateLast);
}

OrvResult OrvBasWinRegistryHandle::CreateKeyTransacted(OrvWinTransaction &transaction, const Name &path)
{
    return CreateBelow(path, &transaction, kCreateLast);
}

OrvResult OrvBasWinRegistryHandle::CreateKeys(const Name &path)
{
    return CreateBelow(path, nullptr, kCreateAll);
}

OrvResult OrvBasWinRegistryHandle::CreateKeysTransacted(OrvWinTransaction &transaction, const Name &path)
{
    return CreateBelow(path, &transaction, kCreateAll);
}

OrvResult OrvBasWinRegistryHandle::Delete(const Name &path, bool recursive, OrvWinTransaction *transaction)
{
    detail::NativeHandle key;
    const ACCESS_MASK access = recursive ? kToDeleteTree : DELETE;
    const OrvResult result = Open(kFromCurrentKey, path, access, transaction, kOpenLink, *key.Receive());
    if (OrvFailed(result))
        return result;
    return recursive ? DeleteTree(key, transaction) : detail::ResultFromCall(ZwDeleteKey(key.Get()));
}

/// Deletes the key `top`, which it takes ownership of, and all keys below it. If another thread or process
/// deletes one of them first, that counts as success, except for `top` itself.
OrvResult OrvBasWinRegistryHandle::DeleteTree(detail::NativeHandle &top, OrvWinTransaction *transaction) const
{
    KeyStack keys;
    if (!keys.Push(top))
        return ORV_E_OUT_OF_MEMORY;
    OrvBasWinRegistryEnumerator children;
    while (!keys.IsEmpty()) {
        detail::NativeHandle child;
        children.key_ = keys.Top();
        OrvResult result = OpenFirstChild(*child.Receive(), children, transaction);
        if (OrvFailed(result))
            return result;
        if (child) {
            if (!keys.Push(child))
                return ORV_E_OUT_OF_MEMORY;
            continue;
        }
        result = detail::ResultFromCall(ZwDeleteKey(keys.Top()));
        keys.Pop();
        if (OrvFailed(result) && (!IsGone(result) || keys.IsEmpty()))
            return result;
    }
    return ORV_S_OK;
}

/// Opens the first child of a key that is being emptied. Null when there is none, or when the key itself no
/// longer exists.
OrvResult OrvBasWinRegistryHandle::OpenFirstChild(void *&child, OrvBasWinRegistryEnumerator &children,
                                                  OrvWinTransaction *transaction) const
{
    constexpr uint32_t kPatience = 100; // a name that is listed but never found must not loop for ever
    OrvResult result = ORV_S_OK;
    for (uint32_t attempt = 0; attempt < kPatience; attempt++) {
        children.index_ = 0;
        OrvStringzRefBase<wchar_t> name(nullptr);
        bool found = false;
        result = children.Next(name, found);
        if (OrvFailed(result))
            return IsGone(result) ? ORV_S_OK : result;
        if (!found)
            return ORV_S_OK;
        result = OpenBelow(children.key_, Name(name.characters, children.GetLength()), kToDeleteTree,
                           transaction, kOpenLink, child);
        if (!IsGone(result))
            return result;
    }
    return result;
}

OrvResult OrvBasWinRegistryHandle::DeleteKey(const Name &path, bool recursive)
{
    return Delete(path, recursive, nullptr);
}

OrvResult OrvBasWinRegistryHandle::DeleteKeyTransacted(OrvWinTransaction &transaction, const Name &path,
                                                       bool recursive)
{
    return Delete(path, recursive, &transaction);
}

OrvResult OrvBasWinRegistryHandle::Describe(OrvBasWinRegistryKeyInfo &info,
                                            OrvWinTransaction *transaction) const
{
    return WithKey(KEY_QUERY_VALUE, transaction, [&info](HANDLE key) { return QueryInfo(key, info); });
}

OrvResult OrvBasWinRegistryHandle::GetKeyInfo(OrvBasWinRegistryKeyInfo &info)
{
    return Describe(info, nullptr);
}

OrvResult OrvBasWinRegistryHandle::GetKeyInfoTransacted(OrvWinTransaction &transaction,
                                                        OrvBasWinRegistryKeyInfo &info)
{
    return Describe(info, &transaction);
}

OrvResult OrvBasWinRegistryHandle::SplitCurrentKeyName(OrvBasWinRegistryRootType &root,
                                                       IOrvString<wchar_t> &path, uint32_t &access) const
{
    constexpr uint32_t kOrdinarySize = 512;
    HANDLE key = nullptr;
    OrvResult result = CurrentKey(key);
    if (OrvFailed(result))
        return result;
    detail::SmallArray<uint64_t, kOrdinarySize / sizeof(uint64_t)> bytes;
    for (;;) {
        const ULONG room = bytes.Capacity() * sizeof(uint64_t);
        ULONG needed = 0;
        const NTSTATUS status = ZwQueryKey(key, KeyNameInformation, bytes.Get(), room, &needed);
        if ((status == STATUS_BUFFER_OVERFLOW || status == STATUS_BUFFER_TOO_SMALL) && needed > room) {
            if (!bytes.Reserve(needed / sizeof(uint64_t) + 1))
                return ORV_E_OUT_OF_MEMORY;
            continue;
        }
        if (!NT_SUCCESS(status))
            return detail::ResultFromStatus(status);
        const auto &information = *reinterpret_cast<const KEY_NAME_INFORMATION *>(bytes.Get());
        OrvUtf16CharHeapBuffer text;
        OrvBasWinRegistryRootType found = OrvRegistryNoRoot;
        uint32_t newAccess = access;
        result = detail::SplitNativeKeyName(information.Name, information.NameLength / sizeof(WCHAR), found,
                                            text, newAccess);
        if (OrvSucceeded(result))
            result = path.Set(text.GetValue(), text.GetInternal().length);
        if (OrvFailed(result))
            return result;
        root = found;
        access = newAccess;
        return ORV_S_OK;
    }
}

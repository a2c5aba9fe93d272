// Enumerates the names of a key's subkeys or values, one for each native call.

#include "orv/registry/registry_enumerator.h"

#include "nt/nt.h"
#include "orv/registry/registry_handle.h"
#include "orv/runtime/result.h"
#include "runtime/growth.h"
#include "runtime/status.h"

namespace
{

typedef OrvBasWinRegistryHandle::NameInserter NameInserter;

OrvResult InsertAll(OrvBasWinRegistryEnumerator &names, NameInserter &inserter)
{
    for (;;) {
        OrvStringzRefBase<wchar_t> name(nullptr);
        bool found = false;
        OrvResult result = names.Next(name, found);
        if (OrvFailed(result) || !found)
            return result;
        result = inserter.Insert(OrvStringRefBase<wchar_t>(name.characters, names.GetLength()));
        if (OrvFailed(result))
            return result;
    }
}

} // namespace

OrvResult OrvBasWinRegistryEnumerator::Next(OrvStringzRefBase<wchar_t> &name, bool &found)
{
    constexpr uint32_t kFirstSize = 528; // the longest name of a key fits
    found = false;
    if (!key_)
        return ORV_S_OK;
    if (!buffer_.GetCapacity()) {
        const OrvResult result = buffer_.ReserveElements(kFirstSize);
        if (OrvFailed(result))
            return result;
    }
    for (;;) {
        // Leaves two bytes for a terminator.
        const ULONG room = buffer_.GetCapacity() - sizeof(WCHAR);
        ULONG needed = 0;
        const NTSTATUS status =
            ofValues_ ? ZwEnumerateValueKey(key_, index_, KeyValueBasicInformation, buffer_.GetBuffer(), room,
                                            &needed)
                      : ZwEnumerateKey(key_, index_, KeyBasicInformation, buffer_.GetBuffer(), room, &needed);
        if (status == STATUS_NO_MORE_ENTRIES)
            return ORV_S_OK;
        if ((status == STATUS_BUFFER_OVERFLOW || status == STATUS_BUFFER_TOO_SMALL) && needed > room) {
            // Doubling makes this rare, even if each name is longer than the one before.
            const OrvResult result = buffer_.ReserveElements(
                detail::GrownCapacity(buffer_.GetCapacity(), needed + sizeof(WCHAR), kFirstSize));
            if (OrvFailed(result))
                return result;
            continue;
        }
        if (!NT_SUCCESS(status))
            return detail::ResultFromStatus(status);
        WCHAR *characters = nullptr;
        if (ofValues_) {
            auto &value = *reinterpret_cast<KEY_VALUE_BASIC_INFORMATION *>(buffer_.GetBuffer());
            characters = value.Name;
            length_ = value.NameLength / sizeof(WCHAR);
        } else {
            auto &key = *reinterpret_cast<KEY_BASIC_INFORMATION *>(buffer_.GetBuffer());
            characters = key.Name;
            length_ = key.NameLength / sizeof(WCHAR);
        }
        characters[length_] = 0;
        name.characters = characters;
        found = true;
        index_++;
        return ORV_S_OK;
    }
}

OrvResult OrvBasWinRegistryHandle::GetChildrenEnumeratorImpl(OrvBasWinRegistryEnumerator &enumerator)
{
    enumerator.ofValues_ = false;
    enumerator.index_ = 0;
    enumerator.key_ = nullptr;
    return CurrentKey(enumerator.key_);
}

OrvResult OrvBasWinRegistryHandle::GetValuesEnumeratorImpl(OrvBasWinRegistryEnumerator &enumerator)
{
    const OrvResult result = GetChildrenEnumeratorImpl(enumerator);
    enumerator.ofValues_ = true;
    return result;
}

OrvResult OrvBasWinRegistryHandle::EnumKeys(NameInserter &names)
{
    OrvBasWinRegistryEnumerator children;
    const OrvResult result = GetChildrenEnumeratorImpl(children);
    return OrvSucceeded(result) ? InsertAll(children, names) : result;
}

OrvResult OrvBasWinRegistryHandle::EnumValues(NameInserter &names)
{
    OrvBasWinRegistryEnumerator values;
    const OrvResult result = GetValuesEnumeratorImpl(values);
    return OrvSucceeded(result) ? InsertAll(values, names) : result;
}

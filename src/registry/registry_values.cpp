// The registry handle's operations on values. A value is read into an array on the stack, which is large
// enough for almost every value. Only a larger value needs a second call and a block of the heap.

#include "orv/registry/registry_handle.h"

#include "crt/memory.h"
#include "orv/fs/dos_path.h"
#include "orv/runtime/result.h"
#include "registry/registry_key.h"
#include "runtime/growth.h"
#include "runtime/small_array.h"
#include "runtime/status.h"

namespace
{

typedef OrvBasWinRegistryHandle::Name Name;

constexpr uint32_t kHeaderSize = offsetof(KEY_VALUE_PARTIAL_INFORMATION, Data);
constexpr uint32_t kTerminatorRoom = 3 * sizeof(WCHAR) - 1; ///< a byte for an even size, and two terminators

uint32_t TurnRound(uint32_t value)
{
    return value >> 24 | (value >> 8 & 0xFF00) | (value << 8 & 0xFF0000) | value << 24;
}

/// A value that was read: its type and its bytes, terminated as its type requires.
class ReadValue
{
public:
    OrvResult Read(HANDLE key, const Name &name)
    {
        detail::CountedName counted;
        if (!counted.Set(name))
            return ORV_E_INVALID_NAME;
        for (;;) {
            ULONG needed = 0;
            const uint32_t room = bytes_.Capacity() - kTerminatorRoom;
            const NTSTATUS status =
                ZwQueryValueKey(key, counted.Get(), KeyValuePartialInformation, bytes_.Get(), room, &needed);
            if (NT_SUCCESS(status)) {
                Terminate();
                return ORV_S_OK;
            }
            // The value may grow between the calls. Each round has more room than the one before.
            if ((status != STATUS_BUFFER_OVERFLOW && status != STATUS_BUFFER_TOO_SMALL) || needed <= room)
                return detail::ResultFromStatus(status);
            if (needed > UINT32_MAX - kTerminatorRoom || !bytes_.Reserve(needed + kTerminatorRoom))
                return ORV_E_OUT_OF_MEMORY;
        }
    }

    OrvBasWinRegistryValueType Type() { return static_cast<OrvBasWinRegistryValueType>(Information().Type); }
    const uint8_t *Data() { return Information().Data; }
    uint32_t Size() { return Information().DataLength; }

    OrvResult CopyTo(IOrvBuffer<unsigned char> &bytes)
    {
        const OrvResult result = bytes.Resize(Size());
        if (OrvSucceeded(result) && Size())
            memcpy(bytes.GetElements(), Data(), Size());
        return result;
    }

private:
    static constexpr uint32_t kOnStack = 256; ///< bytes of the value

    KEY_VALUE_PARTIAL_INFORMATION &Information()
    {
        return *reinterpret_cast<KEY_VALUE_PARTIAL_INFORMATION *>(bytes_.Get());
    }

    bool EndsWithZero(uint32_t fromEnd)
    {
        const uint32_t size = Size();
        return size >= fromEnd * sizeof(WCHAR) &&
               reinterpret_cast<const WCHAR *>(Data() + size)[-static_cast<int>(fromEnd)] == 0;
    }

    void Append(uint8_t byte) { Information().Data[Information().DataLength++] = byte; }

    void Terminate()
    {
        const bool isMulti = Type() == OrvRegistryMultiString;
        if ((Type() != OrvRegistryString && Type() != OrvRegistryExpandString && !isMulti) || Size() == 0)
            return;
        if (Size() % sizeof(WCHAR))
            Append(0);
        while (!EndsWithZero(1) || (isMulti && !EndsWithZero(2))) {
            Append(0);
            Append(0);
        }
    }

    detail::SmallArray<uint8_t, kHeaderSize + kOnStack + kTerminatorRoom> bytes_;
};

/// Gives the value as a number of this type. A big-endian value is converted if a little-endian one is
/// wanted.
template <typename T>
OrvResult ToNumber(T &number, ReadValue &value, OrvBasWinRegistryValueType type)
{
    const bool isTurned = type == OrvRegistryDWord && value.Type() == OrvRegistryDWordBigEndian;
    if (value.Type() != type && !isTurned)
        return ORV_E_VALUE_TYPE;
    if (value.Size() != sizeof(T))
        return ORV_E_INVALID_DATA;
    T read;
    memcpy(&read, value.Data(), sizeof read);
    number = isTurned ? TurnRound(static_cast<uint32_t>(read)) : read;
    return ORV_S_OK;
}

template <typename T>
OrvResult OrDefault(OrvResult result, T &number, T defaultValue)
{
    if (result != ORV_E_FILE_NOT_FOUND)
        return result;
    number = defaultValue;
    return ORV_S_NOT_SET;
}

} // namespace

OrvResult OrvBasWinRegistryHandle::Set(OrvBasWinRegistryValueType type, const void *bytes, uint32_t size,
                                       const Name &name, OrvWinTransaction *transaction)
{
    return WithKey(KEY_SET_VALUE, transaction, [&](HANDLE key) -> OrvResult {
        if (!bytes && size)
            return ORV_E_INVALID_ARGUMENT;
        detail::CountedName counted;
        if (!counted.Set(name))
            return ORV_E_INVALID_NAME;
        return detail::ResultFromCall(ZwSetValueKey(key, counted.Get(), 0, type, bytes, size));
    });
}

OrvResult OrvBasWinRegistryHandle::SetValue(OrvBasWinRegistryValueType type, const void *bytes, uint32_t size,
                                            const Name &name)
{
    return Set(type, bytes, size, name, nullptr);
}

OrvResult OrvBasWinRegistryHandle::SetValueTransacted(OrvWinTransaction &transaction,
                                                      OrvBasWinRegistryValueType type, const void *bytes,
                                                      uint32_t size, const Name &name)
{
    return Set(type, bytes, size, name, &transaction);
}

OrvResult OrvBasWinRegistryHandle::Query(OrvBasWinRegistryValueType &type, IOrvBuffer<unsigned char> &bytes,
                                         const Name &name, OrvWinTransaction *transaction)
{
    return WithKey(KEY_QUERY_VALUE, transaction, [&](HANDLE key) {
        ReadValue value;
        OrvResult result = value.Read(key, name);
        if (OrvSucceeded(result))
            result = value.CopyTo(bytes);
        if (OrvSucceeded(result))
            type = value.Type();
        return result;
    });
}

OrvResult OrvBasWinRegistryHandle::QueryValue(OrvBasWinRegistryValueType &type,
                                              IOrvBuffer<unsigned char> &bytes, const Name &name)
{
    return Query(type, bytes, name, nullptr);
}

OrvResult OrvBasWinRegistryHandle::QueryValueTransacted(OrvWinTransaction &transaction,
                                                        OrvBasWinRegistryValueType &type,
                                                        IOrvBuffer<unsigned char> &bytes, const Name &name)
{
    return Query(type, bytes, name, &transaction);
}

OrvResult OrvBasWinRegistryHandle::GetBinaryValue(IOrvBuffer<unsigned char> &bytes, const Name &name)
{
    ReadValue value;
    const OrvResult result =
        WithKey(KEY_QUERY_VALUE, nullptr, [&](HANDLE key) { return value.Read(key, name); });
    if (OrvFailed(result))
        return result;
    return value.Type() == OrvRegistryBinary ? value.CopyTo(bytes) : ORV_E_VALUE_TYPE;
}

OrvResult OrvBasWinRegistryHandle::SetBinaryValue(const void *bytes, uint32_t size, const Name &name)
{
    return SetValue(OrvRegistryBinary, bytes, size, name);
}

OrvResult OrvBasWinRegistryHandle::GetDWordValue(uint32_t &value, const Name &name)
{
    return WithKey(KEY_QUERY_VALUE, nullptr, [&](HANDLE key) {
        ReadValue read;
        const OrvResult result = read.Read(key, name);
        return OrvSucceeded(result) ? ToNumber(value, read, OrvRegistryDWord) : result;
    });
}

OrvResult OrvBasWinRegistryHandle::GetDWordValueWithDefault(uint32_t &value, const Name &name,
                                                            uint32_t defaultValue)
{
    return OrDefault(GetDWordValue(value, name), value, defaultValue);
}

OrvResult OrvBasWinRegistryHandle::SetDWordValue(uint32_t value, const Name &name, bool bigEndian)
{
    const uint32_t stored = bigEndian ? TurnRound(value) : value;
    return SetValue(bigEndian ? OrvRegistryDWordBigEndian : OrvRegistryDWord, &stored, sizeof stored, name);
}

OrvResult OrvBasWinRegistryHandle::GetQWordValue(uint64_t &value, const Name &name)
{
    return WithKey(KEY_QUERY_VALUE, nullptr, [&](HANDLE key) {
        ReadValue read;
        const OrvResult result = read.Read(key, name);
        return OrvSucceeded(result) ? ToNumber(value, read, OrvRegistryQWord) : result;
    });
}

OrvResult OrvBasWinRegistryHandle::GetQWordValueWithDefault(uint64_t &value, const Name &name,
                                                            uint64_t defaultValue)
{
    return OrDefault(GetQWordValue(value, name), value, defaultValue);
}

OrvResult OrvBasWinRegistryHandle::SetQWordValue(uint64_t value, const Name &name)
{
    return SetValue(OrvRegistryQWord, &value, sizeof value, name);
}

OrvResult OrvBasWinRegistryHandle::GetStringValue(IOrvString<wchar_t> &value, const Name &name, bool expand)
{
    ReadValue read;
    OrvResult result = WithKey(KEY_QUERY_VALUE, nullptr, [&](HANDLE key) { return read.Read(key, name); });
    if (OrvFailed(result))
        return result;
    if (read.Type() != OrvRegistryString && read.Type() != OrvRegistryExpandString)
        return ORV_E_VALUE_TYPE;
    const wchar_t *const text = read.Size() ? reinterpret_cast<const wchar_t *>(read.Data()) : L"";
    if (!expand || read.Type() != OrvRegistryExpandString)
        return value.Set(text, OrvGetStringSizeInElements(text));
    OrvUtf16CharHeapBuffer expanded;
    result = OrvNtdll_RtlExpandEnvironmentStrings_T(text, expanded);
    return OrvSucceeded(result) ? value.Set(expanded.GetValue(), expanded.GetInternal().length) : result;
}

OrvResult OrvBasWinRegistryHandle::GetStringValueWithDefault(IOrvString<wchar_t> &value, const Name &name,
                                                             const Name &defaultValue, bool expand)
{
    OrvResult result = GetStringValue(value, name, expand);
    if (result != ORV_E_FILE_NOT_FOUND)
        return result;
    result = value.Set(defaultValue.characters ? defaultValue.characters : L"",
                       detail::ResolveLength(defaultValue.characters, defaultValue.length));
    return OrvFailed(result) ? result : ORV_S_NOT_SET;
}

OrvResult OrvBasWinRegistryHandle::SetStringValue(const Name &value, const Name &name, bool expandable)
{
    constexpr uint32_t kLongest = UINT32_MAX / sizeof(wchar_t) - 1;
    const OrvBasWinRegistryValueType type = expandable ? OrvRegistryExpandString : OrvRegistryString;
    const uint32_t length = detail::ResolveLength(value.characters, value.length);
    if (length > kLongest)
        return ORV_E_INVALID_ARGUMENT;
    // A terminated text can be stored without a copy.
    if (value.length == OrvTerminated && value.characters)
        return SetValue(type, value.characters, (length + 1) * sizeof(wchar_t), name);
    OrvUtf16CharHeapBuffer terminated;
    const OrvResult result = terminated.Append(value.characters, length);
    return OrvSucceeded(result) ? SetValue(type, terminated.GetBuffer(), (length + 1) * sizeof(wchar_t), name)
                                : result;
}

OrvResult OrvBasWinRegistryHandle::GetStringArrayValue(NameInserter &strings, const Name &name)
{
    ReadValue value;
    OrvResult result = WithKey(KEY_QUERY_VALUE, nullptr, [&](HANDLE key) { return value.Read(key, name); });
    if (OrvFailed(result))
        return result;
    if (value.Type() != OrvRegistryMultiString)
        return ORV_E_VALUE_TYPE;
    auto *next = reinterpret_cast<const wchar_t *>(value.Data());
    while (value.Size() && *next) {
        const uint32_t length = OrvGetStringSizeInElements(next);
        result = strings.Insert(Name(next, length));
        if (OrvFailed(result))
            return result;
        next += length + 1;
    }
    return ORV_S_OK;
}

OrvResult OrvBasWinRegistryHandle::SetStringArrayValue(NameEnumerator &strings, const Name &name)
{
    constexpr uint32_t kFirstCapacity = 128;
    OrvUtf16CharHeapBuffer joined;
    for (;;) {
        OrvStringzRefBase<wchar_t> item(nullptr);
        bool found = false;
        OrvResult result = strings.Next(item, found);
        if (OrvFailed(result))
            return result;
        if (!found)
            break;
        if (!item.characters || !*item.characters)
            return ORV_E_INVALID_ARGUMENT;
        const uint32_t length = joined.GetInternal().length;
        const uint32_t added = OrvGetStringSizeInElements(item.characters) + 1;
        if (joined.GetCapacity() - length < added)
            result = joined.ReserveElements(
                detail::GrownCapacity(joined.GetCapacity(), length + added, kFirstCapacity));
        if (OrvSucceeded(result))
            result = joined.Append(item.characters, added);
        if (OrvFailed(result))
            return result;
    }
    const OrvResult result = joined.Append(wchar_t(0));
    if (OrvFailed(result))
        return result;
    const uint32_t length = joined.GetInternal().length;
    if (length > UINT32_MAX / sizeof(wchar_t))
        return ORV_E_INVALID_ARGUMENT;
    return SetValue(OrvRegistryMultiString, joined.GetBuffer(), length * sizeof(wchar_t), name);
}

OrvResult OrvBasWinRegistryHandle::Remove(const Name &name, OrvWinTransaction *transaction)
{
    return WithKey(KEY_SET_VALUE, transaction, [&name](HANDLE key) {
        detail::CountedName counted;
        return counted.Set(name) ? detail::ResultFromCall(ZwDeleteValueKey(key, counted.Get()))
                                 : ORV_E_INVALID_NAME;
    });
}

OrvResult OrvBasWinRegistryHandle::DeleteValue(const Name &name)
{
    return Remove(name, nullptr);
}

OrvResult OrvBasWinRegistryHandle::DeleteValueTransacted(OrvWinTransaction &transaction, const Name &name)
{
    return Remove(name, &transaction);
}

bool OrvBasWinRegistryHandle::HasValue(const Name &name, OrvWinTransaction *transaction)
{
    const OrvResult result = WithKey(KEY_QUERY_VALUE, transaction, [&name](HANDLE key) -> OrvResult {
        detail::CountedName counted;
        if (!counted.Set(name))
            return ORV_E_INVALID_NAME;
        KEY_VALUE_PARTIAL_INFORMATION information = {};
        ULONG needed = 0;
        const NTSTATUS status = ZwQueryValueKey(key, counted.Get(), KeyValuePartialInformation, &information,
                                                sizeof information, &needed);
        const bool isLarger = status == STATUS_BUFFER_OVERFLOW || status == STATUS_BUFFER_TOO_SMALL;
        return isLarger ? ORV_S_OK : detail::ResultFromCall(status);
    });
    return OrvSucceeded(result);
}

bool OrvBasWinRegistryHandle::ValueExists(const Name &name)
{
    return HasValue(name, nullptr);
}

bool OrvBasWinRegistryHandle::ValueExistsTransacted(OrvWinTransaction &transaction, const Name &name)
{
    return HasValue(name, &transaction);
}

// The registry handle's operations on hives, privileges, and waiting for changes.

#include "fs/nt_path.h"
#include "orv/env/os_info.h"
#include "orv/fs/path.h"
#include "orv/registry/registry_handle.h"
#include "orv/runtime/ntdll_entry_points.h"
#include "orv/runtime/result.h"
#include "registry/registry_key.h"
#include "runtime/status.h"

namespace
{

typedef OrvBasWinRegistryHandle::Name Name;

/// Attributes for the key at `path` below `base`, as the calls that load and unload a hive take them.
OBJECT_ATTRIBUTES KeyAttributes(HANDLE base, const detail::CountedName &path)
{
    return {sizeof(OBJECT_ATTRIBUTES), base,    const_cast<UNICODE_STRING *>(path.Get()),
            OBJ_CASE_INSENSITIVE,      nullptr, nullptr};
}

OrvResult Load(HANDLE base, const Name &path, const wchar_t *file)
{
    detail::CountedName name;
    if (!name.Set(path) || name.Get()->Length == 0)
        return ORV_E_INVALID_NAME;
    detail::NtPath filePath;
    const OrvResult result = filePath.Build(file);
    if (OrvFailed(result))
        return result;
    const OBJECT_ATTRIBUTES target = KeyAttributes(base, name);
    const OBJECT_ATTRIBUTES source = filePath.Attributes();
    return detail::ResultFromCall(ZwLoadKey(&target, &source));
}

} // namespace

OrvResult OrvBasWinRegistryHandle::LoadKey(const wchar_t *file)
{
    HANDLE base = nullptr;
    const OrvResult result = ParentKey(base);
    return OrvSucceeded(result) ? Load(base, Name(path_.GetValue(), path_.GetInternal().length), file)
                                : result;
}

OrvResult OrvBasWinRegistryHandle::LoadKey(const Name &key, const wchar_t *file)
{
    HANDLE base = nullptr;
    OrvResult result = ParentKey(base);
    OrvUtf16CharHeapBuffer path;
    if (OrvSucceeded(result))
        result = path.Assign(key.characters, key.length);
    if (OrvSucceeded(result))
        result = Load(base, key, file);
    if (OrvFailed(result))
        return result;
    CloseKey();
    path_.Swap(path);
    return ORV_S_OK;
}

OrvResult OrvBasWinRegistryHandle::UnLoadKey()
{
    CloseKey();
    HANDLE base = nullptr;
    const OrvResult result = ParentKey(base);
    if (OrvFailed(result))
        return result;
    detail::CountedName name;
    if (!name.Set(Name(path_.GetValue(), path_.GetInternal().length)) || name.Get()->Length == 0)
        return ORV_E_INVALID_NAME;
    const OBJECT_ATTRIBUTES target = KeyAttributes(base, name);
    return detail::ResultFromCall(ZwUnloadKey(&target));
}

OrvResult OrvBasWinRegistryHandle::SaveKey(const wchar_t *file)
{
    HANDLE key = nullptr;
    OrvResult result = CurrentKey(key);
    detail::NtPath path;
    if (OrvSucceeded(result))
        result = path.Build(file);
    if (OrvFailed(result))
        return result;
    const OBJECT_ATTRIBUTES attributes = path.Attributes();
    {
        detail::NativeHandle target;
        IO_STATUS_BLOCK status = {};
        result = detail::ResultFromCall(ZwCreateFile(target.Receive(), GENERIC_WRITE | SYNCHRONIZE,
                                                     &attributes, &status, nullptr, FILE_ATTRIBUTE_NORMAL, 0,
                                                     FILE_CREATE, FILE_SYNCHRONOUS_IO_NONALERT, nullptr, 0));
        if (OrvFailed(result))
            return result;
        result = detail::ResultFromCall(ZwSaveKey(key, target.Get()));
    }
    if (OrvFailed(result))
        ZwDeleteFile(&attributes);
    return result;
}

OrvResult OrvBasWinRegistryHandle::RestoreKey(const wchar_t *file, IOrvString<wchar_t> *path)
{
    HANDLE key = nullptr;
    OrvResult result = CurrentKey(key);
    detail::NtPath nativePath;
    if (OrvSucceeded(result))
        result = nativePath.Build(file);
    OrvUtf16CharHeapBuffer fullPath;
    if (OrvSucceeded(result) && path)
        result = OrvBasPath::GetFullPath(fullPath, file);
    if (OrvSucceeded(result) && path)
        result = path->Set(fullPath.GetValue(), fullPath.GetInternal().length);
    if (OrvFailed(result))
        return result;
    const OBJECT_ATTRIBUTES attributes = nativePath.Attributes();
    detail::NativeHandle source;
    IO_STATUS_BLOCK status = {};
    result = detail::ResultFromCall(ZwOpenFile(source.Receive(), GENERIC_READ | SYNCHRONIZE, &attributes,
                                               &status, FILE_SHARE_READ, FILE_SYNCHRONOUS_IO_NONALERT));
    return OrvSucceeded(result) ? detail::ResultFromCall(ZwRestoreKey(key, source.Get(), 0)) : result;
}

OrvResult OrvBasWinRegistryHandle::StartSingleWatchingKeyChange(OrvBasEvent &event, bool subtree)
{
    // Static: the kernel writes it when the change fires, perhaps after this object is gone. Never read.
    static IO_STATUS_BLOCK status;
    constexpr ULONG kChanges = REG_NOTIFY_CHANGE_NAME | REG_NOTIFY_CHANGE_ATTRIBUTES |
                               REG_NOTIFY_CHANGE_LAST_SET | REG_NOTIFY_CHANGE_SECURITY;
    // The handle that owns the open key also owns its watch, so that its CloseKey ends the watch.
    if (!IsOpened() && parent_)
        return parent_->StartSingleWatchingKeyChange(event, subtree);
    OrvResult result = MakeState();
    if (OrvFailed(result))
        return result;
    detail::NativeHandle &key = state_->watchKeys[subtree];
    if (!key)
        result = CreateHandleInternal(*key.Receive(), Name(), KEY_NOTIFY);
    if (OrvFailed(result))
        return result;
    // Without the flag the watch ends with this thread, and its end sets the event. Older systems refuse the
    // flag.
    const bool mayOutliveThread = OrvEnvironment::OsInfo::IsAtLeast(6, 2);
    const ULONG filter = mayOutliveThread ? kChanges | REG_NOTIFY_THREAD_AGNOSTIC : kChanges;
    return detail::ResultFromCall(ZwNotifyChangeKey(key.Get(), event.GetHandle(), nullptr, nullptr, &status,
                                                    filter, subtree, nullptr, 0, true));
}

OrvResult OrvBasWinRegistryHandle::EnablePrivilege(OrvBasWinRegistryPrivilege privilege, bool enable)
{
    constexpr ACCESS_MASK kAdjustAndQuery = TOKEN_ADJUST_PRIVILEGES | TOKEN_QUERY | TOKEN_QUERY_SOURCE;
    if (!OrvNtdllIsTableInitialized() || !OrvNtdll_FunctionExists("ZwOpenProcessToken"))
        return ORV_E_NOT_SUPPORTED;
    detail::NativeHandle token;
    const OrvResult result = detail::ResultFromCall(
        OrvNtdll_ZwOpenProcessToken(NtCurrentProcess(), kAdjustAndQuery, token.Receive()));
    if (OrvFailed(result))
        return result;
    const ULONG number = privilege == OrvRegistryBackupPrivilege    ? SE_BACKUP_PRIVILEGE
                         : privilege == OrvRegistryRestorePrivilege ? SE_RESTORE_PRIVILEGE
                                                                    : 0;
    const TOKEN_PRIVILEGES privileges = {1, {number, 0}, enable ? SE_PRIVILEGE_ENABLED : 0};
    const NTSTATUS status =
        ZwAdjustPrivilegesToken(token.Get(), false, &privileges, sizeof privileges, nullptr, nullptr);
    return status == STATUS_NOT_ALL_ASSIGNED ? ORV_E_ACCESS_DENIED : detail::ResultFromCall(status);
}

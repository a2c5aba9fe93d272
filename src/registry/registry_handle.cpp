// The registry handle: its parents, its view, and opening keys.

#include "orv/registry/registry_handle.h"

#include "orv/env/os_info.h"
#include "orv/runtime/ntdll_entry_points.h"
#include "orv/runtime/result.h"
#include "registry/registry_key.h"
#include "registry/registry_path.h"
#include "registry/registry_root_keys.h"
#include "registry/registry_roots.h"
#include "runtime/status.h"

namespace
{

constexpr uint32_t kViewBits = 0xF;

uint32_t ViewOf(OrvBasWinRegistryHandle::ViewMode mode)
{
    return mode.GetBits() & kViewBits;
}

ACCESS_MASK ViewAccess(OrvBasWinRegistryHandle::ViewMode mode)
{
    switch (ViewOf(mode)) {
    case OrvRegistryView64:
        return KEY_WOW64_64KEY;
    case OrvRegistryView32:
        return KEY_WOW64_32KEY;
    default:
        return 0;
    }
}

/// Whether the path part "Wow6432Node" has a meaning below this root.
bool HasNodeView(OrvBasWinRegistryRootType root)
{
    return root == OrvRegistryLocalMachine || root == OrvRegistryUsers || root == OrvRegistryNoRoot;
}

NTSTATUS OpenNative(const OBJECT_ATTRIBUTES &attributes, ACCESS_MASK access, HANDLE transaction, HANDLE &key)
{
    return transaction ? OrvNtdll_ZwOpenKeyTransacted(&key, access, &attributes, transaction)
                       : ZwOpenKey(&key, access, &attributes);
}

NTSTATUS CreateNative(const OBJECT_ATTRIBUTES &attributes, ACCESS_MASK access, HANDLE transaction,
                      HANDLE &key, ULONG &disposition)
{
    return transaction ? OrvNtdll_ZwCreateKeyTransacted(&key, access, &attributes, 0, nullptr, 0, transaction,
                                                        &disposition)
                       : ZwCreateKey(&key, access, &attributes, 0, nullptr, 0, &disposition);
}

/// Creates the keys of the path except the last one.
NTSTATUS CreateParents(const OBJECT_ATTRIBUTES &attributes, ACCESS_MASK viewAccess, HANDLE transaction)
{
    const UNICODE_STRING &path = *attributes.ObjectName;
    for (uint32_t i = 0; i < path.Length / sizeof(WCHAR); i++) {
        if (path.Buffer[i] != L'\\' || i == 0)
            continue;
        const auto size = static_cast<USHORT>(i * sizeof(WCHAR));
        UNICODE_STRING parent = {size, size, path.Buffer};
        OBJECT_ATTRIBUTES parentAttributes = attributes;
        parentAttributes.ObjectName = &parent;
        detail::NativeHandle key;
        ULONG disposition = 0;
        const NTSTATUS status = CreateNative(parentAttributes, KEY_CREATE_SUB_KEY | viewAccess, transaction,
                                             *key.Receive(), disposition);
        // An existing key may deny the right to create subkeys: only the last of these keys needs it.
        if (!NT_SUCCESS(status) && status != STATUS_ACCESS_DENIED)
            return status;
    }
    return STATUS_SUCCESS;
}

} // namespace

OrvBasWinRegistryHandle::OrvBasWinRegistryHandle(OrvBasWinRegistryRootType root)
    : state_(nullptr), root_(root), parent_(nullptr)
{
    static_assert(offsetof(OrvBasWinRegistryHandle, root_) == 4);
    static_assert(offsetof(OrvBasWinRegistryHandle, parent_) == 8);
    static_assert(offsetof(OrvBasWinRegistryHandle, viewMode_) == 12);
    static_assert(offsetof(OrvBasWinRegistryHandle, path_) == 16);
}

OrvBasWinRegistryHandle::OrvBasWinRegistryHandle(OrvBasWinRegistryHandle &parent)
    : state_(nullptr), root_(OrvRegistryNoRoot), parent_(&parent), viewMode_(parent.viewMode_)
{
}

OrvBasWinRegistryHandle::~OrvBasWinRegistryHandle()
{
    delete state_;
}

OrvResult OrvBasWinRegistryHandle::ChangeRoot(OrvBasWinRegistryRootType root)
{
    if (ViewOf(viewMode_) == OrvRegistryViewNode && !HasNodeView(root))
        return ORV_E_VIEW_ROOT;
    CloseKey();
    path_.Clear();
    root_ = root;
    parent_ = nullptr;
    return ORV_S_OK;
}

OrvResult OrvBasWinRegistryHandle::SetParent(OrvBasWinRegistryRootType root)
{
    if (root == OrvRegistryNoRoot)
        return ORV_E_INVALID_HANDLE;
    return detail::FindRegistryRoot(root) ? ChangeRoot(root) : ORV_E_INVALID_ARGUMENT;
}

void OrvBasWinRegistryHandle::SetParent(OrvBasWinRegistryHandle &parent)
{
    CloseKey();
    path_.Clear();
    root_ = OrvRegistryNoRoot;
    parent_ = &parent;
    viewMode_ = parent.viewMode_;
}

OrvResult OrvBasWinRegistryHandle::OpenRegistryRoot(OrvBasWinRegistryRootType root)
{
    HANDLE key = nullptr;
    const OrvResult result = detail::GetRegistryRootKey(root, key);
    return OrvSucceeded(result) ? ChangeRoot(root) : result;
}

void OrvBasWinRegistryHandle::CloseKey()
{
    if (!state_)
        return;
    state_->key.Close();
    for (detail::NativeHandle &key : state_->watchKeys)
        key.Close();
}

bool OrvBasWinRegistryHandle::IsOpened() const
{
    return state_ && state_->key;
}

OrvResult OrvBasWinRegistryHandle::GetCurrentKeyPath(IOrvString<wchar_t> &path) const
{
    return path.Set(path_.GetValue(), path_.GetInternal().length);
}

bool OrvBasWinRegistryHandle::IsWow64ViewModeSupported()
{
    enum : long { kUnknown, kYes, kNo };
    static volatile long answer = kUnknown; // every thread finds the same answer
    if (answer == kUnknown) {
        const auto processor = OrvEnvironment::OsInfo::GetFacts().processorArchitecture;
        answer = processor == OrvEnvironment::ProcessorX64 || processor == OrvEnvironment::ProcessorItanium
                     ? kYes
                     : kNo;
    }
    return answer == kYes;
}

OrvResult OrvBasWinRegistryHandle::SetViewMode(ViewMode mode)
{
    const uint32_t view = ViewOf(mode);
    if (IsOpened() ? view != ViewOf(viewMode_) : parent_ && view != ViewOf(parent_->viewMode_))
        return ORV_E_NOT_SUPPORTED;
    if ((view == OrvRegistryView64 || view == OrvRegistryView32) && !IsWow64ViewModeSupported())
        return ORV_E_VIEW_NOT_SUPPORTED;
    if (view == OrvRegistryViewNode && !HasNodeView(root_))
        return ORV_E_VIEW_ROOT;
    viewMode_ = mode;
    return ORV_S_OK;
}

OrvBasWinRegistryHandle::ViewMode OrvBasWinRegistryHandle::GetViewMode() const
{
    return viewMode_;
}

OrvResult OrvBasWinRegistryHandle::ParentKey(void *&key) const
{
    return parent_ ? parent_->CurrentKey(key) : detail::GetRegistryRootKey(root_, key);
}

OrvResult OrvBasWinRegistryHandle::CurrentKey(void *&key) const
{
    if (!IsOpened())
        return ParentKey(key);
    key = state_->key.Get();
    return ORV_S_OK;
}

OrvResult OrvBasWinRegistryHandle::MakeState()
{
    if (!state_)
        state_ = new detail::RegistryState;
    return state_ ? ORV_S_OK : ORV_E_OUT_OF_MEMORY;
}

/// Gives the root and the path below it, joined from the paths of the open keys between.
OrvResult OrvBasWinRegistryHandle::FindWay(Origin origin, OrvBasWinRegistryRootType &root,
                                           OrvUtf16CharHeapBuffer &way) const
{
    OrvResult result = ORV_S_OK;
    if (parent_)
        result = parent_->FindWay(kFromCurrentKey, root, way);
    else
        root = root_;
    if (OrvFailed(result) || origin == kFromParent || !IsOpened() || path_.IsEmpty())
        return result;
    if (!way.IsEmpty())
        result = way.Append(L'\\');
    return OrvSucceeded(result) ? way.Append(path_) : result;
}

/// Inserts the path part of the 32-bit view into `path` if it belongs there. `changed` then owns the new
/// path.
OrvResult OrvBasWinRegistryHandle::ApplyView(Origin origin, Name &path, OrvUtf16CharHeapBuffer &changed) const
{
    if (ViewOf(viewMode_) != OrvRegistryViewNode)
        return ORV_S_OK;
    const uint32_t length = detail::ResolveLength(path.characters, path.length);
    OrvBasWinRegistryRootType root = OrvRegistryNoRoot;
    OrvUtf16CharHeapBuffer way;
    OrvResult result = FindWay(origin, root, way);
    if (OrvSucceeded(result) && !way.IsEmpty())
        result = way.Append(L'\\');
    const uint32_t start = way.GetInternal().length;
    if (OrvSucceeded(result))
        result = way.Append(path.characters, length);
    if (OrvFailed(result))
        return result;
    const uint32_t found = detail::FindWow6432NodePosition(root, way.GetValue(), way.GetInternal().length);
    if (found <= start)
        return ORV_S_OK;
    const uint32_t position = found - start;
    result = changed.Append(path.characters, position);
    if (OrvSucceeded(result))
        result = changed.Append(L'\\');
    if (OrvSucceeded(result))
        result = changed.Append(detail::kWow6432Node);
    if (OrvSucceeded(result))
        result = changed.Append(path.characters + position, length - position);
    path = Name(changed.GetValue(), changed.GetInternal().length);
    return result;
}

OrvResult OrvBasWinRegistryHandle::Open(Origin origin, const Name &path, uint32_t access,
                                        OrvWinTransaction *transaction, Creation creation,
                                        void *&handle) const
{
    HANDLE base = nullptr;
    OrvResult result = origin == kFromParent ? ParentKey(base) : CurrentKey(base);
    Name inView = path;
    OrvUtf16CharHeapBuffer changed;
    if (OrvSucceeded(result))
        result = ApplyView(origin, inView, changed);
    return OrvSucceeded(result) ? OpenBelow(base, inView, access, transaction, creation, handle) : result;
}

/// Opens the key at exactly this path, without the view's path part.
OrvResult OrvBasWinRegistryHandle::OpenBelow(void *base, const Name &path, uint32_t access,
                                             OrvWinTransaction *transaction, Creation creation,
                                             void *&handle) const
{
    // Some systems export the transacted functions for keys but have no transactions.
    if (transaction &&
        !(OrvNtdll_FunctionExists("ZwCreateTransaction") && OrvNtdll_FunctionExists("ZwOpenKeyTransacted")))
        return ORV_E_NOT_SUPPORTED;
    const HANDLE inside = transaction ? transaction->GetHandle() : nullptr;

    detail::CountedName name;
    if (!name.Set(path))
        return ORV_E_INVALID_NAME;
    const ULONG flags = OBJ_CASE_INSENSITIVE | (creation == kOpenLink ? OBJ_OPENLINK : 0);
    const OBJECT_ATTRIBUTES attributes = {
        sizeof attributes, base, const_cast<UNICODE_STRING *>(name.Get()), flags, nullptr, nullptr};
    const ACCESS_MASK viewAccess = ViewAccess(viewMode_);
    HANDLE opened = nullptr;
    ULONG disposition = REG_OPENED_EXISTING_KEY;
    NTSTATUS status = 0;
    const bool creates = creation == kCreateLast || creation == kCreateAll;
    // The empty path is the base itself, which exists. Not every platform reports that when it is asked to
    // create the key.
    if (!creates || name.Get()->Length == 0) {
        status = OpenNative(attributes, access | viewAccess, inside, opened);
    } else {
        status = CreateNative(attributes, access | viewAccess, inside, opened, disposition);
        if (creation == kCreateAll &&
            (status == STATUS_OBJECT_NAME_NOT_FOUND || status == STATUS_OBJECT_PATH_NOT_FOUND)) {
            status = CreateParents(attributes, viewAccess, inside);
            if (NT_SUCCESS(status))
                status = CreateNative(attributes, access | viewAccess, inside, opened, disposition);
        }
    }
    if (!NT_SUCCESS(status))
        return detail::ResultFromStatus(status);
    handle = opened;
    return creates && disposition == REG_OPENED_EXISTING_KEY ? ORV_S_ALREADY_EXISTS : ORV_S_OK;
}

OrvResult OrvBasWinRegistryHandle::ReplaceKey(const Name &path, uint32_t access,
                                              OrvWinTransaction *transaction, Creation creation)
{
    OrvResult result = MakeState();
    if (OrvFailed(result))
        return result;
    OrvUtf16CharHeapBuffer newPath;
    result = newPath.Assign(path.characters, path.length);
    if (OrvFailed(result))
        return result;
    detail::NativeHandle opened;
    result = Open(kFromParent, path, access, transaction, creation, *opened.Receive());
    if (creation == kOpenOnly && (result == ORV_E_FILE_NOT_FOUND || result == ORV_E_PATH_NOT_FOUND))
        return ORV_E_KEY_NOT_FOUND;
    if (OrvFailed(result))
        return result;
    CloseKey();
    state_->key.Reset(opened.Detach());
    path_.Swap(newPath);
    return result;
}

OrvResult OrvBasWinRegistryHandle::OpenOrCreateKey(const Name &path, OrvWinRegistryRights rights)
{
    return ReplaceKey(path, rights, nullptr, kCreateAll);
}

OrvResult OrvBasWinRegistryHandle::OpenOrCreateKeyTransacted(OrvWinTransaction &transaction, const Name &path,
                                                             OrvWinRegistryRights rights)
{
    return ReplaceKey(path, rights, &transaction, kCreateAll);
}

OrvResult OrvBasWinRegistryHandle::OpenKeyIfExists(const Name &path, OrvWinRegistryRights rights)
{
    return ReplaceKey(path, rights, nullptr, kOpenOnly);
}

OrvResult OrvBasWinRegistryHandle::OpenKeyIfExistsTransacted(OrvWinTransaction &transaction, const Name &path,
                                                             OrvWinRegistryRights rights)
{
    return ReplaceKey(path, rights, &transaction, kOpenOnly);
}

OrvResult OrvBasWinRegistryHandle::CreateHandleInternal(void *&handle, const Name &path, uint32_t access,
                                                        OrvWinTransaction *transaction)
{
    return Open(kFromCurrentKey, path, access, transaction, kOpenOnly, handle);
}

// Opens the predefined keys. Handles are cached without a lock: a thread that opens a root that another
// thread has just opened closes its own handle again.

#include "registry/registry_root_keys.h"

#include "orv/runtime/result.h"
#include "orv/sync/interlocked.h"
#include "registry/registry_roots.h"
#include "runtime/native_handle.h"
#include "runtime/status.h"

namespace
{

/// All rights that the caller can get. Each key below a root is opened with the rights that it needs.
constexpr ACCESS_MASK kRootAccess = MAXIMUM_ALLOWED;

// One handle for each root, in the order of the table; 0 until it is open.
volatile long rootKeys[detail::kRegistryRootCount];

NTSTATUS OpenRoot(const detail::RegistryRoot &root, HANDLE &key)
{
    if (!root.objectName)
        return RtlOpenCurrentUser(kRootAccess, &key);
    UNICODE_STRING name;
    RtlInitUnicodeString(&name, root.objectName);
    const OBJECT_ATTRIBUTES attributes = {sizeof attributes,    nullptr, &name,
                                          OBJ_CASE_INSENSITIVE, nullptr, nullptr};
    const NTSTATUS status = ZwOpenKey(&key, kRootAccess, &attributes);
    if (NT_SUCCESS(status))
        return status;
    const NTSTATUS created = ZwCreateKey(&key, kRootAccess, &attributes, 0, nullptr, 0, nullptr);
    return NT_SUCCESS(created) ? created : status;
}

} // namespace

namespace detail
{

OrvResult GetRegistryRootKey(OrvBasWinRegistryRootType type, HANDLE &key)
{
    if (type == OrvRegistryNoRoot)
        return ORV_E_INVALID_HANDLE;
    const RegistryRoot *const root = FindRegistryRoot(type);
    if (!root)
        return ORV_E_INVALID_ARGUMENT;
    volatile long &cached = rootKeys[root - kRegistryRoots];
    if (cached) {
        key = reinterpret_cast<HANDLE>(cached);
        return ORV_S_OK;
    }
    NativeHandle opened;
    const OrvResult result = ResultFromCall(OpenRoot(*root, *opened.Receive()));
    if (OrvFailed(result))
        return result;
    if (const long first = _InterlockedCompareExchange(&cached, reinterpret_cast<long>(opened.Get()), 0)) {
        key = reinterpret_cast<HANDLE>(first);
    } else {
        key = opened.Detach();
    }
    return ORV_S_OK;
}

} // namespace detail

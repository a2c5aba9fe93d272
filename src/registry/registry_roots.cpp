// Handles are cached without a lock: whoever opens a root that another thread has just opened closes his own
// handle again.

#include "registry/registry_roots.h"

#include "orv/runtime/result.h"
#include "orv/sync/interlocked.h"
#include "orv/text/character.h"
#include "runtime/status.h"

namespace
{

using detail::RegistryRoot;

#define PERFLIB L"\\REGISTRY\\MACHINE\\SOFTWARE\\Microsoft\\Windows NT\\CurrentVersion\\Perflib\\009"
#define PROFILE L"\\REGISTRY\\MACHINE\\SYSTEM\\CurrentControlSet\\Hardware Profiles\\Current"

// Names are looked for in this order. The roots with an object name that is no path exist in Win32 only.
constexpr RegistryRoot kRoots[] = {
    {OrvRegistryClassesRoot, L"HKCR", L"HKEY_CLASSES_ROOT", L"\\REGISTRY\\MACHINE\\SOFTWARE\\Classes"},
    {OrvRegistryCurrentUser, L"HKCU", L"HKEY_CURRENT_USER", nullptr},
    {OrvRegistryLocalMachine, L"HKLM", L"HKEY_LOCAL_MACHINE", L"\\REGISTRY\\MACHINE"},
    {OrvRegistryUsers, L"HKU", L"HKEY_USERS", L"\\REGISTRY\\USER"},
    {OrvRegistryPerformanceData, L"HKPD", L"HKEY_PERFORMANCE_DATA", L"HKEY_PERFORMANCE_DATA"},
    {OrvRegistryPerformanceText, L"HKPT", L"HKEY_PERFORMANCE_TEXT", PERFLIB},
    {OrvRegistryPerformanceNlsText, L"HKPN", L"HKEY_PERFORMANCE_NLSTEXT", L"HKEY_PERFORMANCE_NLSTEXT"},
    {OrvRegistryCurrentConfig, L"HKCC", L"HKEY_CURRENT_CONFIG", PROFILE},
    {OrvRegistryDynData, L"HKDD", L"HKEY_DYN_DATA", L"HKEY_DYN_DATA"},
};

#undef PERFLIB
#undef PROFILE

constexpr uint32_t kRootCount = sizeof(kRoots) / sizeof(kRoots[0]);

/// As much as the caller may have: what is opened below a root asks for its own rights.
constexpr ACCESS_MASK kRootAccess = MAXIMUM_ALLOWED;

// One handle a root, in the order of the table; 0 until it is open.
volatile long rootKeys[kRootCount];

bool IsName(const wchar_t *text, uint32_t length, const wchar_t *name)
{
    uint32_t i = 0;
    while (i < length && name[i] && OrvToASCIIUpper(text[i]) == name[i])
        i++;
    return i == length && !name[i];
}

NTSTATUS OpenRoot(const RegistryRoot &root, HANDLE &key)
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

const RegistryRoot *FindRegistryRoot(OrvBasWinRegistryRootType type)
{
    for (const RegistryRoot &root : kRoots) {
        if (root.type == type)
            return &root;
    }
    return nullptr;
}

const RegistryRoot *FindRegistryRoot(const wchar_t *name, uint32_t length)
{
    for (const RegistryRoot &root : kRoots) {
        if (IsName(name, length, root.shortName) || IsName(name, length, root.longName))
            return &root;
    }
    return nullptr;
}

OrvResult GetRegistryRootKey(OrvBasWinRegistryRootType type, HANDLE &key)
{
    if (type == OrvRegistryNoRoot)
        return ORV_E_INVALID_HANDLE;
    const RegistryRoot *const root = FindRegistryRoot(type);
    if (!root)
        return ORV_E_INVALID_ARGUMENT;
    volatile long &cached = rootKeys[root - kRoots];
    if (cached) {
        key = reinterpret_cast<HANDLE>(cached);
        return 0;
    }
    HANDLE opened = nullptr;
    const OrvResult result = ResultFromCall(OpenRoot(*root, opened));
    if (OrvFailed(result))
        return result;
    if (const long first = _InterlockedCompareExchange(&cached, reinterpret_cast<long>(opened), 0)) {
        ZwClose(opened);
        opened = reinterpret_cast<HANDLE>(first);
    }
    key = opened;
    return 0;
}

} // namespace detail

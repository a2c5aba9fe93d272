// The table of the predefined keys, and the search in it.

#include "registry/registry_roots.h"

#include "orv/text/character.h"

namespace detail
{

namespace
{

bool IsName(const wchar_t *text, uint32_t length, const wchar_t *name)
{
    uint32_t i = 0;
    while (i < length && name[i] && OrvToASCIIUpper(text[i]) == name[i])
        i++;
    return i == length && !name[i];
}

} // namespace

#define PERFLIB L"\\REGISTRY\\MACHINE\\SOFTWARE\\Microsoft\\Windows NT\\CurrentVersion\\Perflib\\009"
#define PROFILE L"\\REGISTRY\\MACHINE\\SYSTEM\\CurrentControlSet\\Hardware Profiles\\Current"

// Names are searched in this order. A root whose object name is not a path exists only in Win32.
const RegistryRoot kRegistryRoots[kRegistryRootCount] = {
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

const RegistryRoot *FindRegistryRoot(OrvBasWinRegistryRootType type)
{
    for (const RegistryRoot &root : kRegistryRoots) {
        if (root.type == type)
            return &root;
    }
    return nullptr;
}

const RegistryRoot *FindRegistryRoot(const wchar_t *name, uint32_t length)
{
    for (const RegistryRoot &root : kRegistryRoots) {
        if (IsName(name, length, root.shortName) || IsName(name, length, root.longName))
            return &root;
    }
    return nullptr;
}

} // namespace detail

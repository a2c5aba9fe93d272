// Parses places in the registry.

#include "reg_location.h"

#include "orv/runtime/result.h"
#include "orv/text/string.h"

namespace orvtool
{

OrvResult ParseRegistryLocation(RegistryLocation &location, const OrvBasWinRegistryHandle::Name &text)
{
    const uint32_t length =
        text.length == OrvTerminated ? OrvGetStringSizeInElements(text.characters) : text.length;
    const OrvResult result = OrvBasWinRegistryHandle::SplitRegistryPath(
        location.root, location.path, location.hasValue, location.valueName, text);
    if (OrvFailed(result))
        return result;
    return !location.hasValue && text.characters[length - 1] == L'\\' ? ORV_E_INVALID_ARGUMENT : ORV_S_OK;
}

const wchar_t *LongNameOfRoot(OrvBasWinRegistryRootType root)
{
    switch (root) {
    case OrvRegistryClassesRoot:
        return L"HKEY_CLASSES_ROOT";
    case OrvRegistryCurrentUser:
        return L"HKEY_CURRENT_USER";
    case OrvRegistryLocalMachine:
        return L"HKEY_LOCAL_MACHINE";
    case OrvRegistryUsers:
        return L"HKEY_USERS";
    case OrvRegistryPerformanceData:
        return L"HKEY_PERFORMANCE_DATA";
    case OrvRegistryPerformanceText:
        return L"HKEY_PERFORMANCE_TEXT";
    case OrvRegistryPerformanceNlsText:
        return L"HKEY_PERFORMANCE_NLSTEXT";
    case OrvRegistryCurrentConfig:
        return L"HKEY_CURRENT_CONFIG";
    case OrvRegistryDynData:
        return L"HKEY_DYN_DATA";
    default:
        return L"";
    }
}

} // namespace orvtool

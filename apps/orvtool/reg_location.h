// Places in the registry as text: "HKCU\Software\Orv" is a key, "HKCU\Software\Orv\\Name" a value of it, and
// "HKCU\Software\Orv\\" its default value. A root has its short or its long name.

#pragma once

#include "orv/registry/registry_handle.h"
#include "orv/text/heap_string.h"

namespace orvtool
{

struct RegistryLocation {
    OrvBasWinRegistryRootType root = OrvRegistryNoRoot;
    OrvUtf16HeapString path; ///< of the key below the root; empty for the root itself
    bool hasValue = false;
    OrvUtf16HeapString valueName;

    OrvBasWinRegistryHandle::Name Path() const { return {path.GetCharacters(), path.GetLength()}; }
    OrvBasWinRegistryHandle::Name ValueName() const
    {
        return {valueName.GetCharacters(), valueName.GetLength()};
    }
};

/// Parses a text. A key that ends with one backslash is refused: the second backslash, which names the
/// default value, may have been lost in the quotation marks of a shell.
///
/// Returns 0; ORV_E_INVALID_ARGUMENT when the text is not a location; ORV_E_OUT_OF_MEMORY.
OrvResult ParseRegistryLocation(RegistryLocation &location, const OrvBasWinRegistryHandle::Name &text);

/// The long name of a root, such as "HKEY_CURRENT_USER".
const wchar_t *LongNameOfRoot(OrvBasWinRegistryRootType root);

} // namespace orvtool

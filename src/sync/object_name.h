// Full native names of kernel objects, and opening by such a name.
//
// Creation distinguishes letter case, and opens the object if it exists. Opening ignores letter case. Other
// programs rely on this difference.

#pragma once

#include "nt/nt.h"
#include "nt/teb.h"
#include "orv/security/security_descriptor.h"
#include "orv/sync/object_name_space.h"
#include "runtime/native_handle.h"
#include "runtime/small_array.h"

namespace detail
{

/// The full name, made of a caller's name and its name space. A name of ordinary length is stored in the
/// object itself and needs no allocation. Must not be moved: a counted name points into it.
class ObjectName
{
public:
    ObjectName() = default;
    ObjectName(const ObjectName &) = delete;
    ObjectName &operator=(const ObjectName &) = delete;

    /// In every name space, null or an empty name gives the empty full name. Returns 0,
    /// ORV_E_INVALID_ARGUMENT for a name space outside its enumeration, ORV_E_INVALID_NAME for a full name
    /// too long to be counted, or ORV_E_OUT_OF_MEMORY.
    OrvResult Build(const WCHAR *name, OrvBasWinSyncObjectNameSpace nameSpace,
                    ULONG sessionId = NtCurrentPeb()->SessionId);

    bool IsEmpty() const { return counted_.Length == 0; }
    const WCHAR *GetText() const { return counted_.Buffer; }

    /// Fills the attributes for the creation of an event or a semaphore and returns their address; returns
    /// null if there is no name.
    const OBJECT_ATTRIBUTES *ForCreation(OBJECT_ATTRIBUTES &attributes,
                                         const OrvWinSecurityDescriptor *securityDescriptor);

    /// Fills the attributes for opening an object and returns their address.
    const OBJECT_ATTRIBUTES *ForOpening(OBJECT_ATTRIBUTES &attributes);

private:
    OrvResult Format(uint32_t nameLength, const WCHAR *format, ...);

    UNICODE_STRING counted_;
    SmallArray<WCHAR, 192> text_;
};

typedef NTSTATUS(NTAPI *OpenFunction)(HANDLE *handle, ACCESS_MASK access,
                                      const OBJECT_ATTRIBUTES *attributes);

/// Opens an object by a caller's name. Returns as ObjectName::Build, or the converted status.
OrvResult OpenByName(OpenFunction open, const WCHAR *name, OrvBasWinSyncObjectNameSpace nameSpace,
                     ACCESS_MASK access, NativeHandle &opened);

} // namespace detail

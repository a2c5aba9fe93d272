// Full native names of kernel objects, and opening by such a name.
//
// Creating matches letter case and opens what exists; opening disregards letter case. Other programs rely on
// this difference.

#pragma once

#include "nt/nt.h"
#include "nt/teb.h"
#include "orv/security/security_descriptor.h"
#include "orv/sync/object_name_space.h"
#include "runtime/native_handle.h"
#include "runtime/small_array.h"

namespace detail
{

/// The full name made of a caller's name and its name space. Names of an ordinary length stand in the object
/// itself, so that making one costs no allocation. Not to be moved: a counted name points into it.
class ObjectName
{
public:
    ObjectName() = default;
    ObjectName(const ObjectName &) = delete;
    ObjectName &operator=(const ObjectName &) = delete;

    /// Null or an empty name gives the empty full name, whatever the name space. Returns 0,
    /// ORV_E_INVALID_ARGUMENT for a name space outside its enumeration, ORV_E_INVALID_NAME for a full name
    /// too long to be counted, or ORV_E_OUT_OF_MEMORY.
    OrvResult Build(const WCHAR *name, OrvBasWinSyncObjectNameSpace nameSpace,
                    ULONG sessionId = NtCurrentPeb()->SessionId);

    bool IsEmpty() const { return counted_.Length == 0; }
    const WCHAR *GetText() const { return counted_.Buffer; }

    /// Fills the attributes to create or open an event or a semaphore with, and returns their address: null
    /// without a name.
    const OBJECT_ATTRIBUTES *ForCreation(OBJECT_ATTRIBUTES &attributes,
                                         const OrvWinSecurityDescriptor *securityDescriptor);

    /// Fills the attributes to open an object with.
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

// Making full native names.

#include "sync/object_name.h"

#include "orv/runtime/result.h"
#include "orv/text/format.h"
#include "runtime/status.h"
#include "sync/native_object.h"

namespace detail
{

OrvResult ObjectName::Build(const WCHAR *name, OrvBasWinSyncObjectNameSpace nameSpace, ULONG sessionId)
{
    if (!name || !*name) {
        CountName(L"", counted_);
        return ORV_S_OK;
    }
    if (nameSpace == OrvBasWinSyncLibrary)
        return Format(L"\\OrvObjects\\%s", name);
    if (nameSpace != OrvBasWinSyncGlobal && nameSpace != OrvBasWinSyncSession)
        return ORV_E_INVALID_ARGUMENT;
    const WCHAR *const prefix = nameSpace == OrvBasWinSyncGlobal ? L"Global\\" : L"";
    if (sessionId == 0)
        return Format(L"\\BaseNamedObjects\\%s%s", prefix, name);
    return Format(L"\\Sessions\\%d\\BaseNamedObjects\\%s%s", sessionId, prefix, name);
}

OrvResult ObjectName::Format(const WCHAR *format, ...)
{
    va_list arguments;
    va_start(arguments, format);
    const WCHAR *text = short_;
    OrvResult result = OrvFormatStringV(OrvCodePageDefault, short_, sizeof short_ / sizeof *short_, format,
                                        nullptr, arguments);
    va_end(arguments);
    if (result == ORV_E_BUFFER_TOO_SMALL) {
        va_start(arguments, format);
        result = OrvFormatStringV(OrvCodePageDefault, long_, format, arguments);
        va_end(arguments);
        text = long_.GetValue();
    }
    if (OrvFailed(result))
        return result;
    return CountName(text, counted_) ? ORV_S_OK : ORV_E_INVALID_NAME;
}

const OBJECT_ATTRIBUTES *ObjectName::ForCreation(OBJECT_ATTRIBUTES &attributes,
                                                 const OrvWinSecurityDescriptor *securityDescriptor)
{
    if (IsEmpty())
        return nullptr;
    attributes = {sizeof attributes, nullptr, &counted_, OBJ_OPENIF, nullptr, nullptr};
    if (securityDescriptor)
        attributes.SecurityDescriptor = securityDescriptor->GetNative();
    return &attributes;
}

const OBJECT_ATTRIBUTES *ObjectName::ForOpening(OBJECT_ATTRIBUTES &attributes)
{
    attributes = {sizeof attributes, nullptr, &counted_, OBJ_CASE_INSENSITIVE, nullptr, nullptr};
    return &attributes;
}

OrvResult OpenByName(OpenFunction open, const WCHAR *name, OrvBasWinSyncObjectNameSpace nameSpace,
                     ACCESS_MASK access, HANDLE &handle)
{
    ObjectName fullName;
    const OrvResult result = fullName.Build(name, nameSpace);
    if (OrvFailed(result))
        return result;
    OBJECT_ATTRIBUTES attributes;
    return ResultFromCall(open(&handle, access, fullName.ForOpening(attributes)));
}

} // namespace detail

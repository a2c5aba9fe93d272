// Makes full native names of kernel objects, and opens objects by them.

#include "sync/object_name.h"

#include "nt/counted_string.h"
#include "orv/runtime/result.h"
#include "orv/text/format.h"
#include "orv/text/string.h"
#include "runtime/status.h"

namespace detail
{

OrvResult ObjectName::Build(const WCHAR *name, OrvBasWinSyncObjectNameSpace nameSpace, ULONG sessionId)
{
    if (!name || !*name) {
        counted_ = CountedLiteral(L"");
        return ORV_S_OK;
    }
    if (nameSpace > OrvBasWinSyncLibrary)
        return ORV_E_INVALID_ARGUMENT;
    const uint32_t length = OrvGetStringSizeInElements(name, kLongestCounted + 1);
    if (length > kLongestCounted)
        return ORV_E_INVALID_NAME;
    if (nameSpace == OrvBasWinSyncLibrary)
        return Format(length, L"\\OrvObjects\\%s", name);
    const WCHAR *const prefix = nameSpace == OrvBasWinSyncGlobal ? L"Global\\" : L"";
    if (sessionId == 0)
        return Format(length, L"\\BaseNamedObjects\\%s%s", prefix, name);
    return Format(length, L"\\Sessions\\%d\\BaseNamedObjects\\%s%s", sessionId, prefix, name);
}

OrvResult ObjectName::Format(uint32_t nameLength, const WCHAR *format, ...)
{
    constexpr uint32_t kLongestPrefix = 63; // of the formats above, and a little more
    if (!text_.Reserve(kLongestPrefix + nameLength + 1))
        return ORV_E_OUT_OF_MEMORY;
    uint32_t written = 0;
    va_list arguments;
    va_start(arguments, format);
    const OrvResult result =
        OrvFormatStringV(OrvCodePageDefault, text_.Get(), text_.Capacity(), format, &written, arguments);
    va_end(arguments);
    if (OrvFailed(result))
        return result;
    return CountText(text_.Get(), written, counted_) ? ORV_S_OK : ORV_E_INVALID_NAME;
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
                     ACCESS_MASK access, NativeHandle &opened)
{
    ObjectName fullName;
    const OrvResult result = fullName.Build(name, nameSpace);
    if (OrvFailed(result))
        return result;
    OBJECT_ATTRIBUTES attributes;
    return ResultFromCall(open(opened.Receive(), access, fullName.ForOpening(attributes)));
}

} // namespace detail

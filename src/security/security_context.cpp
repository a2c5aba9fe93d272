// Builds security descriptors: who may access an object, and its mandatory level.

#include "orv/security/security_context.h"

#include "crt/memory.h"
#include "orv/runtime/ntdll_entry_points.h"
#include "orv/runtime/result.h"
#include "runtime/native_handle.h"
#include "runtime/status.h"
#include "security/well_known_sid.h"

namespace
{

// In the order of OrvWellKnownGroup.
constexpr detail::WellKnownSid kGroups[] = {
    detail::MakeSid(detail::kWorldAuthority, SECURITY_WORLD_RID),
    detail::MakeSid(detail::kNtAuthority, SECURITY_ANONYMOUS_LOGON_RID),
    detail::MakeSid(detail::kNtAuthority, SECURITY_AUTHENTICATED_USER_RID),
    detail::MakeSid(detail::kNtAuthority, SECURITY_LOCAL_SYSTEM_RID),
    detail::MakeSid(detail::kNtAuthority, SECURITY_BUILTIN_DOMAIN_RID, DOMAIN_ALIAS_RID_ADMINS),
};

/// The sub-authority of a mandatory level is the level's number times this.
constexpr ULONG kMandatoryStep = 0x1000;

/// A mandatory label, laid out as an entry of an access control list. It is added as a ready entry, because
/// the platform's own function for it has different orders of arguments on different platforms.
struct LabelEntry {
    UCHAR type;
    UCHAR flags;
    USHORT size; ///< size of the whole entry, in bytes
    ACCESS_MASK policy;
    detail::WellKnownSid sid;
};
constexpr USHORT kLabelSize = offsetof(LabelEntry, sid) + 12; ///< one sub-authority
static_assert(kLabelSize == 20);

/// Opens the token that applies to the calling thread: the one it impersonates, else the process's.
OrvResult OpenEffectiveToken(detail::NativeHandle &token)
{
    // With the rights of the process: an impersonated user may have no right to read its own token.
    const NTSTATUS status = ZwOpenThreadToken(NtCurrentThread(), TOKEN_QUERY, true, token.Receive());
    if (status != STATUS_NO_TOKEN)
        return detail::ResultFromCall(status);
    if (!OrvNtdll_FunctionExists("ZwOpenProcessToken"))
        return ORV_E_NOT_SUPPORTED;
    return detail::ResultFromCall(
        OrvNtdll_ZwOpenProcessToken(NtCurrentProcess(), TOKEN_QUERY, token.Receive()));
}

/// The user for whom the calling thread acts.
class CurrentUser
{
public:
    OrvResult Query()
    {
        detail::NativeHandle token;
        const OrvResult result = OpenEffectiveToken(token);
        if (OrvFailed(result))
            return result;
        ULONG needed = 0;
        return detail::ResultFromCall(
            ZwQueryInformationToken(token.Get(), TokenUser, &information_, sizeof information_, &needed));
    }

    PVOID GetSid() const { return information_.user.Sid; }

private:
    struct {
        TOKEN_USER user;
        UCHAR sid[SECURITY_MAX_SID_SIZE]; ///< the platform stores the identifier that `user` points to here
    } information_;
};

} // namespace

static_assert(sizeof(SECURITY_DESCRIPTOR) == sizeof(uint32_t[5]));

OrvSecurityCtx::OrvSecurityCtx(void *native) : descriptor_(native) {}

OrvResult OrvSecurityCtx::Allow(OrvWellKnownGroup group, uint32_t rights)
{
    if (group >= sizeof(kGroups) / sizeof(kGroups[0]))
        return ORV_E_INVALID_ARGUMENT;
    detail::WellKnownSid sid = kGroups[group];
    return AllowSid(&sid, rights);
}

OrvResult OrvSecurityCtx::AllowCurrentUser(uint32_t rights)
{
    CurrentUser user;
    const OrvResult result = user.Query();
    return OrvSucceeded(result) ? AllowSid(user.GetSid(), rights) : result;
}

OrvResult OrvSecurityCtx::AllowPrivate(uint32_t rights)
{
    uint32_t before[sizeof entries_ / sizeof entries_[0]];
    memcpy(before, entries_, sizeof entries_);
    const bool hadEntries = hasEntries_;
    OrvResult result = AllowCurrentUser(rights);
    if (OrvSucceeded(result))
        result = Allow(OrvGroupLocalSystem, rights);
    if (OrvSucceeded(result))
        result = Allow(OrvGroupAdministrators, rights);
    if (OrvFailed(result)) {
        memcpy(entries_, before, sizeof entries_);
        hasEntries_ = hadEntries;
    }
    return result;
}

OrvResult OrvSecurityCtx::AllowSid(void *sid, uint32_t rights)
{
    const auto list = reinterpret_cast<_ACL *>(entries_);
    if (!hasEntries_) {
        const OrvResult result = detail::ResultFromCall(RtlCreateAcl(list, sizeof(entries_), ACL_REVISION));
        if (OrvFailed(result))
            return result;
    }
    const OrvResult result = detail::ResultFromCall(RtlAddAccessAllowedAce(list, ACL_REVISION, rights, sid));
    if (OrvSucceeded(result))
        hasEntries_ = true;
    return result;
}

OrvResult OrvSecurityCtx::SetMandatoryLevel(OrvMandatoryLevel level)
{
    if (level > OrvMandatorySystem)
        return ORV_E_INVALID_ARGUMENT;
    if (!OrvNtdllIsFnLoaded_RtlAddMandatoryAce())
        return ORV_S_NOT_SUPPORTED;
    const auto list = reinterpret_cast<_ACL *>(label_);
    OrvResult result = detail::ResultFromCall(RtlCreateAcl(list, sizeof(label_), ACL_REVISION));
    if (OrvFailed(result))
        return result;
    const LabelEntry entry = {SYSTEM_MANDATORY_LABEL_ACE_TYPE, 0, kLabelSize,
                              SYSTEM_MANDATORY_LABEL_NO_WRITE_UP,
                              detail::MakeSid(detail::kMandatoryLabelAuthority, level * kMandatoryStep)};
    result = detail::ResultFromCall(RtlAddAce(list, ACL_REVISION, 0, &entry, entry.size));
    hasLabel_ = OrvSucceeded(result);
    return result;
}

OrvResult OrvSecurityCtx::GetSecurityDescriptor(OrvWinSecurityDescriptor *&descriptor)
{
    descriptor = nullptr;
    if (hasEntries_ || hasLabel_) {
        OrvResult result =
            detail::ResultFromCall(RtlCreateSecurityDescriptor(native_, SECURITY_DESCRIPTOR_REVISION));
        if (OrvSucceeded(result) && hasEntries_)
            result = detail::ResultFromCall(
                RtlSetDaclSecurityDescriptor(native_, true, reinterpret_cast<_ACL *>(entries_), false));
        if (OrvSucceeded(result) && hasLabel_)
            result = detail::ResultFromCall(
                RtlSetSaclSecurityDescriptor(native_, true, reinterpret_cast<_ACL *>(label_), false));
        if (OrvFailed(result))
            return result;
        descriptor_ = OrvWinSecurityDescriptor(native_);
    }
    descriptor = &descriptor_;
    return ORV_S_OK;
}

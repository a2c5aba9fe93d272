// Who may do what with an object that is about to be created, in everyday terms: well-known groups, the
// current user, rights, an integrity level. The context makes the native descriptor that creation needs.
//
// A context is filled first and then used any number of times. It contains its descriptor, so nothing is
// allocated and nothing has to be released. The descriptors that it returns are valid as long as the context
// exists.

#pragma once

#include "orv/base.h"
#include "orv/security/security_descriptor.h"

/// The group that an entry names.
enum OrvWellKnownGroup : uint32_t {
    OrvGroupEveryone = 0,           ///< S-1-1-0
    OrvGroupAnonymous = 1,          ///< S-1-5-7, which Everyone does not include
    OrvGroupAuthenticatedUsers = 2, ///< S-1-5-11
    OrvGroupLocalSystem = 3,        ///< S-1-5-18
    OrvGroupAdministrators = 4,     ///< S-1-5-32-544
};

/// The least integrity that a process needs to write to the object.
enum OrvMandatoryLevel : uint32_t {
    OrvMandatoryUntrusted = 0,
    OrvMandatoryLow = 1,
    OrvMandatoryMedium = 2,
    OrvMandatoryHigh = 3,
    OrvMandatorySystem = 4,
};

/// Entries and a level, and the descriptor made from them.
class OrvSecurityCtx
{
public:
    /// An empty context: the object gets the default descriptor of the platform.
    ORV_API OrvSecurityCtx() : OrvSecurityCtx(nullptr) {}

    /// Gives `native`, a descriptor of the caller that must outlive this object, until an entry or a level is
    /// added. Null means no descriptor.
    ORV_API explicit OrvSecurityCtx(void *native);
    OrvSecurityCtx(const OrvSecurityCtx &) = delete;
    OrvSecurityCtx &operator=(const OrvSecurityCtx &) = delete;

    /// Grants `rights`, a native access mask, to the group. Once there is an entry, everybody without an
    /// entry has no right. There is room for ten entries at least.
    ///
    /// Returns 0; ORV_E_INVALID_ARGUMENT for an unknown group; the converted status when there is no room. On
    /// failure the context is as it was.
    ORV_API OrvResult Allow(OrvWellKnownGroup group, uint32_t rights);

    /// Grants `rights` to the user that the calling thread acts for: the one that it impersonates, or that of
    /// the process. Beside this entry there is room for four others at least, and for seven where the user
    /// belongs to a domain or to the machine.
    ///
    /// Returns 0; ORV_E_NOT_SUPPORTED while the table of ntdll.dll entry points is empty; otherwise the
    /// converted status of the query for the user, or of a list without room. On failure the context is as it
    /// was.
    ORV_API OrvResult AllowCurrentUser(uint32_t rights);

    /// Makes a private object: grants `rights` to the current user, to the local system and to the
    /// administrators. Nobody else has any, except whom other calls on this context name.
    ///
    /// Returns as AllowCurrentUser. On failure the context is as it was.
    ORV_API OrvResult AllowPrivate(uint32_t rights);

    /// Labels the object, so that processes of a lower level cannot write to it. A second call replaces the
    /// level of the first.
    ///
    /// Returns 0; ORV_S_NOT_SUPPORTED, having done nothing, on systems without labels; ORV_E_INVALID_ARGUMENT
    /// for an unknown level.
    ORV_API OrvResult SetMandatoryLevel(OrvMandatoryLevel level);

    /// Gives the descriptor, made from the entries and the level so far, through `descriptor`. It belongs to
    /// the context.
    ///
    /// Returns 0 or the converted status; on failure `descriptor` is null.
    ORV_API OrvResult GetSecurityDescriptor(OrvWinSecurityDescriptor *&descriptor);

private:
    OrvResult AllowSid(void *sid, uint32_t rights);

    OrvWinSecurityDescriptor descriptor_;
    bool hasEntries_ = false;
    bool hasLabel_ = false;
    uint32_t native_[5]; ///< the absolute native descriptor, which refers to the two lists
    uint32_t entries_[64];
    uint32_t label_[8];
};

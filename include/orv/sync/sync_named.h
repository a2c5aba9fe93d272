// Names of kernel objects that are known by a number.

#pragma once

#include "orv/base.h"

/// By whom the object is shared.
enum OrvBasSyncObjectNameSpace : uint32_t {
    OrvBasSyncGlobal = 0,  ///< shared by all sessions
    OrvBasSyncSession = 1, ///< the caller's session; for a name, any other value means the same
    OrvBasSyncProcess = 2, ///< for shared memory: the process itself, where no name is needed
};

/// An object id and the place of its name. The name is made when it is requested.
class OrvBasSyncNamed
{
public:
    /// The directory of the name.
    enum NamedObjectRoot : uint32_t {
        SessionRoot = 0, ///< "\Sessions\N\BaseNamedObjects", N the caller's session, even 0
        BaseRoot = 1,    ///< "\BaseNamedObjects"; any other value means the same
    };

    /// Id 0 means that the object has no name.
    ORV_API OrvBasSyncNamed(unsigned long objectId, OrvBasSyncObjectNameSpace nameSpace);

    /// Sets another id and another place.
    ORV_API void SetObjectId(unsigned long objectId, OrvBasSyncObjectNameSpace nameSpace);

    /// Whether the id is not 0.
    ORV_API bool IsNamed() const;

    /// Makes the native name: the root, "Global\" in the global name space, "ORVSYNC_" and the id in
    /// hexadecimal, in lower case without leading zeros.
    ///
    /// Returns the terminated name, which this object keeps until the next call; null when there is no name.
    ORV_API const wchar_t *GetConstructedWinObjectName(NamedObjectRoot root);

private:
    uint32_t objectId_;
    OrvBasSyncObjectNameSpace nameSpace_;
    wchar_t nameBuffer_[128];
};

static_assert(sizeof(OrvBasSyncNamed) == 264, "fixed layout");

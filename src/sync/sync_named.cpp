// Objects that are named by a number: the name is made of the object's id.

#include "orv/sync/sync_named.h"

#include "nt/teb.h"
#include "orv/runtime/result.h"
#include "orv/text/format.h"

OrvBasSyncNamed::OrvBasSyncNamed(unsigned long objectId, OrvBasSyncObjectNameSpace nameSpace)
    : objectId_(objectId), nameSpace_(nameSpace)
{
    static_assert(offsetof(OrvBasSyncNamed, nameSpace_) == 4 && offsetof(OrvBasSyncNamed, nameBuffer_) == 8);
}

void OrvBasSyncNamed::SetObjectId(unsigned long objectId, OrvBasSyncObjectNameSpace nameSpace)
{
    objectId_ = objectId;
    nameSpace_ = nameSpace;
}

bool OrvBasSyncNamed::IsNamed() const
{
    return objectId_ != 0;
}

const wchar_t *OrvBasSyncNamed::GetConstructedWinObjectName(NamedObjectRoot root)
{
    if (!IsNamed())
        return nullptr;
    nameBuffer_[0] = 0;
    constexpr uint32_t kCapacity = sizeof nameBuffer_ / sizeof *nameBuffer_;
    const wchar_t *const prefix = nameSpace_ == OrvBasSyncGlobal ? L"Global\\" : L"";
    const OrvResult result = root == SessionRoot
                                 ? OrvFormatString(OrvCodePageDefault, nameBuffer_, kCapacity, nullptr,
                                                   L"\\Sessions\\%d\\BaseNamedObjects\\%sORVSYNC_%x",
                                                   NtCurrentPeb()->SessionId, prefix, objectId_)
                                 : OrvFormatString(OrvCodePageDefault, nameBuffer_, kCapacity, nullptr,
                                                   L"\\BaseNamedObjects\\%sORVSYNC_%x", prefix, objectId_);
    return OrvSucceeded(result) ? nameBuffer_ : nullptr;
}

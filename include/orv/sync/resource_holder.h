// The scope guard of the reader/writer resource: it holds at most one, until its scope ends.

#pragma once

#include "orv/base.h"
#include "orv/sync/resource.h"

/// The resource must exist as long as it is held.
class OrvBasResourceHolder
{
public:
    /// How the resource is acquired.
    enum LockType : uint32_t {
        Exclusive = 0,
        Shared = 1,
        SharedStarveExclusive = 2,  ///< not provided
        SharedWaitForExclusive = 3, ///< not provided
    };

    /// Acquires the resource, waiting up to `timeoutMs` milliseconds, -1 for ever. When that fails, when the
    /// type is not one of the first two, or when the resource is null, the holder holds nothing.
    ORV_API OrvBasResourceHolder(OrvBasResource *resource, LockType type, int timeoutMs);
    OrvBasResourceHolder(const OrvBasResourceHolder &) = delete;
    OrvBasResourceHolder &operator=(const OrvBasResourceHolder &) = delete;

    /// Release.
    ORV_API ~OrvBasResourceHolder();

    /// Acquires a resource as the constructor does, and only then releases the one that was held before, even
    /// when the acquisition failed. After a failure the holder holds nothing.
    ///
    /// Returns what the acquisition returned; ORV_E_NOT_PROVIDED for the two types that are not provided;
    /// ORV_E_INVALID_ARGUMENT for any other type and for a null resource.
    ORV_API OrvResult Lock(OrvBasResource *resource, LockType type, int timeoutMs);

    /// Releases the resource that is held, if any.
    ORV_API void Release();

    /// Holds nothing from now on, without releasing: the calling thread must release its hold itself.
    ORV_API void DetachWithoutReleasing();

    /// Whether a resource is held.
    bool IsHeld() const { return held_; }

private:
    OrvBasResource *resource_;
    bool held_;
};

static_assert(sizeof(OrvBasResourceHolder) == 8, "fixed layout");

// The scope guard of the reader/writer resource: it holds at most one, until its scope ends.

#pragma once

#include "orv/base.h"
#include "orv/sync/resource.h"

/// The resource must outlive what the holder holds.
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
    /// type is another than the first two, or when the resource is null, it holds nothing.
    ORV_API OrvBasResourceHolder(OrvBasResource *resource, LockType type, int timeoutMs);
    OrvBasResourceHolder(const OrvBasResourceHolder &) = delete;
    OrvBasResourceHolder &operator=(const OrvBasResourceHolder &) = delete;

    /// Release.
    ORV_API ~OrvBasResourceHolder();

    /// Acquires a resource as the constructor does, and only then releases the one that was held: even when
    /// the acquisition failed, and then it holds nothing.
    ///
    /// Returns what the acquisition returned; ORV_E_NOT_PROVIDED for the two types that are not provided;
    /// ORV_E_INVALID_ARGUMENT for any other type and for a null resource.
    ORV_API OrvResult Lock(OrvBasResource *resource, LockType type, int timeoutMs);

    /// Releases what is held, if anything.
    ORV_API void Release();

    /// Holds nothing from now on, without releasing: the hold is the calling thread's to release.
    ORV_API void DetachWithoutReleasing();

    /// Whether a resource is held.
    bool IsHeld() const { return held_; }

private:
    OrvBasResource *resource_;
    bool held_;
};

static_assert(sizeof(OrvBasResourceHolder) == 8, "fixed layout");

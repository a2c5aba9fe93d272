// The base of everything that can be waited on.
//
// A waitable holds at most one resource: a native handle, which it owns, or a forward to another waitable or
// an object that waits by itself, which it does not own. It starts empty, is filled by a creation or an
// attachment, and is emptied by Destroy, by DetachResource or by its destructor. Operations that install a
// new resource first release the old one by the virtual Destroy, so a derived class decides what that means.
//
// A waitable has no lock of its own. Waiting and signalling only read it and may be done by any number of
// threads at once; filling and emptying it must not race with them.

#pragma once

#include "orv/base.h"
#include "orv/runtime/heap_object.h"

/// What a waitable holds.
enum OrvBasWaitableResourceType : uint32_t {
    OrvBasWaitableNone = 0,
    OrvBasWaitableHandle = 1,      ///< a native handle; owned, closed when it is released
    OrvBasWaitableForward = 2,     ///< another waitable; not owned
    OrvBasWaitableSelfWaiting = 3, ///< an object with its own way to wait; not owned
};

/// An object that knows how to wait by itself.
class OrvBasSelfWaiting
{
public:
    /// Waits for at most `timeoutMs` milliseconds, -1 for ever. The result is what the waiting caller gets.
    virtual OrvResult Wait(int timeoutMs) = 0;

protected:
    ~OrvBasSelfWaiting() = default;
};

/// An object that can be waited on.
class OrvBasWaitable : public OrvHeapObject
{
public:
    /// An empty waitable.
    ORV_API OrvBasWaitable();
    OrvBasWaitable(const OrvBasWaitable &) = delete;
    OrvBasWaitable &operator=(const OrvBasWaitable &) = delete;

    /// Releases the resource: calls FreeResource, unless a derived class does more. Its slot in the virtual
    /// table is the first, the destructor's the second.
    ORV_API virtual OrvResult Destroy();

    /// Calls FreeResource and ignores its result.
    ORV_API virtual ~OrvBasWaitable();

    /// Closes an owned handle, forgets any other resource, and leaves the waitable empty.
    ///
    /// Returns 0; the converted status when the handle cannot be closed; ORV_E_NOT_PROVIDED when the resource
    /// type is unknown. On failure the waitable is as it was, so that the call may be repeated.
    ORV_API OrvResult FreeResource();

    /// Whether there is a resource.
    ORV_API bool IsInitialized() const;

    /// Waits until the resource is signalled, for at most `timeoutMs` milliseconds; -1 waits for ever, and
    /// any other negative number is read as unsigned. Forwards are followed to the end of their chain, which
    /// may have any length but no loop. Every Wait and Acquire of the derived classes is this operation.
    ///
    /// A WAITABLE WITHOUT A RESOURCE COUNTS AS SIGNALLED: waiting on what was never created succeeds.
    ///
    /// Returns 0 when the resource was signalled, and at once when there is none; ORV_S_ABANDONED when a
    /// mutex was acquired whose owner ended without releasing it; ORV_W_TIMEOUT (a failure) when the time
    /// elapsed; ORV_E_INVALID_ARGUMENT when a forward or self-waiting object is null; ORV_E_NOT_PROVIDED when
    /// the resource type is unknown; the result of a self-waiting object; otherwise the converted status.
    ORV_API OrvResult InternalWait(int timeoutMs);

    /// Calls Destroy and takes ownership of the handle.
    ORV_API void AttachHandle(void *handle);

    /// Calls Destroy; from now on forwards to `other`, which must outlive its use here.
    ORV_API void AttachForward(OrvBasWaitable *other);

    /// Empties the waitable and releases nothing: a handle now belongs to the caller.
    ORV_API void DetachResource();

    /// What the waitable holds.
    ORV_API OrvBasWaitableResourceType GetResourceType();

    /// The waitable forwarded to, or null when the resource is not a forward.
    ORV_API OrvBasWaitable *GetForward() const;

    /// The native handle, or the invalid handle 0xFFFFFFFF when the resource is not a handle.
    ORV_API void *GetHandle() const;

protected:
    /// Calls Destroy; from now on waits by `object`, which must outlive its use here.
    ORV_API void AttachSelfWaiting(OrvBasSelfWaiting *object);

    int32_t manualReset_ = 1; ///< of an event: 0 when it resets itself. Nothing here reads it.

private:
    union {
        void *handle_ = nullptr;
        OrvBasWaitable *forward_;
        OrvBasSelfWaiting *selfWaiting_;
    };
    OrvBasWaitableResourceType resourceType_ = OrvBasWaitableNone;
};

static_assert(sizeof(OrvBasWaitable) == 16, "fixed layout");

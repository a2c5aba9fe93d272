// A recursive lock that one writer or any number of readers hold.
//
// Who comes next is settled by these rules, and by nothing else:
//
//   - A writer's release lets all waiting readers in, together; only when there are none does one waiting
//     writer get the resource.
//   - The last reader's release gives the resource to one waiting writer; only when there are none do all
//     waiting readers get in, together.
//   - While a writer waits, a new reader waits too. A thread that already has a shared hold is no new reader:
//     it never waits for another one.
//   - A reader that waits is let in by a release or a conversion only. When the writer that it waited behind
//     gives up, it goes on waiting, though readers that come later get in at once.
//   - Shared never becomes exclusive: such a request is refused at once, since two readers that made it would
//     wait for each other. Exclusive becomes shared by ConvertExclusiveToShared.
//
// So writers that wait and readers that wait take turns. What is given belongs to those who waited before
// they wake: they never compete for it. Which of several waiting writers is next is up to the kernel's event.
//
// Holds belong to threads. A thread may nest them, shared within exclusive too (that counts as another
// exclusive hold), and must release each. A thread that ends with a hold leaves it taken.
//
// All operations may be called by any threads at once, except Create, Destroy and the destructor.

#pragma once

#include "orv/base.h"
#include "orv/runtime/heap_object.h"
#include "orv/sync/critical_section.h"
#include "orv/sync/event.h"
#include "orv/sync/semaphore.h"

/// One reader/writer lock, of one process.
class OrvBasResource : public OrvHeapObject
{
public:
    /// A resource that is still to be created.
    ORV_API OrvBasResource();
    OrvBasResource(const OrvBasResource &) = delete;
    OrvBasResource &operator=(const OrvBasResource &) = delete;

    /// Destroy.
    ORV_API virtual ~OrvBasResource();

    /// Creates what the resource consists of: a critical section, an event and a semaphore. It is free then.
    ///
    /// Returns 0 or the converted status, and then nothing was created; ORV_E_ALREADY_EXISTS for a resource
    /// that was created before, which cannot be used any more and is only fit for Destroy.
    ORV_API OrvResult Create();

    /// Waits up to `timeoutMs` milliseconds, -1 for ever, until the calling thread holds the resource alone.
    /// A thread that does already is given another hold at once.
    ///
    /// Returns 0; ORV_W_TIMEOUT (a failure), and nothing has changed; ORV_E_INVALID_OPERATION at once when
    /// the calling thread has a shared hold; ORV_E_INVALID_STATE when the resource was not created; otherwise
    /// the converted status of the wait, and nothing has changed.
    ORV_API OrvResult AcquireExclusive(int timeoutMs);

    /// Waits up to `timeoutMs` milliseconds, -1 for ever, until the calling thread holds the resource
    /// together with other readers. A thread that holds it already, in either way, is given another hold of
    /// that kind at once.
    ///
    /// Returns 0; ORV_W_TIMEOUT (a failure), and nothing has changed; ORV_E_OUT_OF_MEMORY when there is no
    /// memory to record the holder in; ORV_E_INVALID_STATE when the resource was not created; otherwise the
    /// converted status of the wait.
    ORV_API OrvResult AcquireShared(int timeoutMs);

    /// Not provided: always ORV_E_NOT_PROVIDED, and nothing is touched.
    ORV_API OrvResult AcquireSharedStarveExclusive(int timeoutMs);

    /// Not provided: always ORV_E_NOT_PROVIDED, and nothing is touched.
    ORV_API OrvResult AcquireSharedWaitForExclusive(int timeoutMs);

    /// Gives back one hold of the calling thread, and with the last one of all holds lets others in.
    ///
    /// Returns 0; ORV_E_NOT_OWNER when the calling thread has none; ORV_E_INVALID_STATE when the resource was
    /// not created; the converted status when a writer's release could not wake the next writer, which has
    /// the resource all the same. A reader's release does not tell.
    ORV_API OrvResult Release();

    /// Turns all exclusive holds of the calling thread into shared ones, and lets waiting readers in.
    ///
    /// Returns 0; ORV_E_NOT_OWNER when the calling thread has no exclusive hold; ORV_E_INVALID_STATE when the
    /// resource was not created.
    ORV_API OrvResult ConvertExclusiveToShared();

    /// How many threads wait for an exclusive hold.
    ORV_API uint32_t GetExclusiveWaiterCount();

    /// How many threads wait for a shared hold.
    ORV_API uint32_t GetSharedWaiterCount();

    /// Whether the calling thread has an exclusive hold.
    ORV_API bool IsAcquiredExclusive();

    /// How many holds the calling thread has, exclusive ones included.
    ORV_API uint32_t IsAcquiredShared();

    /// Deletes what Create made, and the records of holders. No thread may hold the resource or wait for it:
    /// its counters stay as they are, and Create after it goes on with them.
    ORV_API void Destroy();

    /// Whether it was created, as a whole, and not destroyed.
    ORV_API bool IsInitialized();

private:
    /// One thread's holds. It is free when the thread's id is 0.
    struct Owner {
        uint32_t threadId;
        uint32_t count;
    };
    class Entered;

    bool IsWriter(uint32_t threadId) const;
    Owner *FindOwner(uint32_t threadId);
    Owner *FindFreeOwner();
    OrvResult WaitOutside(OrvBasWaitable &waitable, int timeoutMs);
    void AdmitReaders();

    OrvBasCriticalSection lock_; ///< guards what follows
    OrvBasEvent exclusiveWaitEvent_;
    OrvBasSemaphore sharedWaitSemaphore_;
    uint32_t activeCount_ = 0; ///< threads that hold the resource
    uint32_t exclusiveWaiterCount_ = 0;
    uint32_t sharedWaiterCount_ = 0;
    Owner ownerA_ = {}; ///< the writer, or a reader that was the writer
    Owner ownerB_ = {}; ///< the first reader
    Owner *ownerTable_ = nullptr;
    uint32_t ownerTableCapacity_ = 0;
    bool exclusive_ = false; ///< held by a writer, or given to one that has yet to wake
};

static_assert(sizeof(OrvBasResource) == 104, "fixed layout");

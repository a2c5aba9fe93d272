// A recursive lock that one writer or any number of readers hold.
//
//     OrvBasResource lock; // shared by the threads
//     OrvResult result = lock.Create();
//
//     result = lock.AcquireShared(500); // on any thread; waits for half a second at most
//     if (OrvSucceeded(result)) {
//         ReadTheTable();
//         lock.Release();
//     }
//
// OrvBasResourceHolder (orv/sync/resource_holder.h) releases by itself at the end of a scope.
//
// These rules alone decide who is next:
//
//   - A writer's release admits all waiting readers together. Only when there are none, one waiting writer
//     gets the resource.
//   - The last reader's release gives the resource to one waiting writer. Only when there are none, all
//     waiting readers are admitted together.
//   - While a writer waits, a new reader waits too. A thread that already has a shared hold is not a new
//     reader: it gets another one without waiting.
//   - Only a release or a conversion admits a waiting reader. When the writer that made it wait stops waiting
//     itself, the reader continues to wait, although later readers are admitted at once.
//   - A shared hold never becomes exclusive: such a request is refused at once, because two readers that made
//     it would wait for each other. ConvertExclusiveToShared makes an exclusive hold shared.
//
// So waiting writers and waiting readers take turns. The resource is given to waiting threads before they
// wake: they never compete for it. The kernel's event decides which of several waiting writers is next.
//
// Holds belong to threads. A thread may nest them, shared within exclusive too (that counts as another
// exclusive hold), and must release each. If a thread ends with a hold, that hold is never released.
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
    /// A resource that is not created yet.
    ORV_API OrvBasResource();
    OrvBasResource(const OrvBasResource &) = delete;
    OrvBasResource &operator=(const OrvBasResource &) = delete;

    /// Destroy.
    ORV_API virtual ~OrvBasResource();

    /// Creates the parts of the resource: a critical section, an event and a semaphore. The resource is then
    /// free.
    ///
    /// Returns 0 or the converted status, and then nothing was created; ORV_E_ALREADY_EXISTS for a resource
    /// that was created before, which cannot be used any more, only destroyed.
    ORV_API OrvResult Create();

    /// Waits up to `timeoutMs` milliseconds, -1 for ever, until the calling thread holds the resource alone.
    /// A thread that does so already gets another hold at once.
    ///
    /// Returns 0; ORV_W_TIMEOUT (a failure), and nothing has changed; ORV_E_INVALID_OPERATION at once when
    /// the calling thread has a shared hold; ORV_E_INVALID_STATE when the resource was not created; otherwise
    /// the converted status of the wait, and nothing has changed.
    ORV_API OrvResult AcquireExclusive(int timeoutMs);

    /// Waits up to `timeoutMs` milliseconds, -1 for ever, until the calling thread holds the resource
    /// together with other readers. A thread that holds it already, in either way, gets another hold of that
    /// kind at once.
    ///
    /// Returns 0; ORV_W_TIMEOUT (a failure), and nothing has changed; ORV_E_OUT_OF_MEMORY when there is no
    /// memory to record the holder in; ORV_E_INVALID_STATE when the resource was not created; otherwise the
    /// converted status of the wait.
    ORV_API OrvResult AcquireShared(int timeoutMs);

    /// Not provided: always ORV_E_NOT_PROVIDED, and nothing is touched.
    ORV_API OrvResult AcquireSharedStarveExclusive(int timeoutMs);

    /// Not provided: always ORV_E_NOT_PROVIDED, and nothing is touched.
    ORV_API OrvResult AcquireSharedWaitForExclusive(int timeoutMs);

    /// Releases one hold of the calling thread. When it is the last hold of all, waiting threads are
    /// admitted.
    ///
    /// Returns 0; ORV_E_NOT_OWNER when the calling thread has none; ORV_E_INVALID_STATE when the resource was
    /// not created; the converted status when a writer's release could not wake the next writer, which has
    /// the resource all the same. If the last reader cannot wake the writer, that failure is not reported.
    ORV_API OrvResult Release();

    /// Makes all exclusive holds of the calling thread shared, and admits waiting readers.
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
    /// its counters stay as they are, and a later Create continues with them.
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
    bool exclusive_ = false; ///< held by a writer, or given to one that has not woken yet
};

static_assert(sizeof(OrvBasResource) == 104, "fixed layout");

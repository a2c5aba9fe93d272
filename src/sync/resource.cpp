// The reader/writer resource: counters and records of owners under one critical section, an event on which
// writers sleep, and a semaphore on which readers sleep.
//
// The resource is free (no active thread), shared, or exclusive (one active thread). The thread that releases
// it first makes the chosen waiters its holders and then wakes them, both inside the critical section. A
// waiter whose time is over enters the critical section again before it returns, and sees there whether it
// was chosen. So every signal reaches its waiter, and no signal is left over.
//
// A reader is recorded before it sleeps, because the record may need memory: a reader that has been admitted
// must not fail.

#include "orv/sync/resource.h"

#include "nt/teb.h"
#include "orv/runtime/result.h"
#include "runtime/heap.h"

namespace
{

constexpr int kMostReaders = 0x7FFFFFFF;

} // namespace

/// A scope inside the critical section, if that was created. A failure of the platform to enter or to leave
/// is ignored: nothing could be done about it.
class OrvBasResource::Entered
{
public:
    explicit Entered(OrvBasCriticalSection &section)
        : native_(section.IsInitialized() ? reinterpret_cast<RTL_CRITICAL_SECTION *>(section.native_)
                                          : nullptr)
    {
        if (native_)
            RtlEnterCriticalSection(native_);
    }
    Entered(const Entered &) = delete;
    Entered &operator=(const Entered &) = delete;
    ~Entered()
    {
        if (native_)
            RtlLeaveCriticalSection(native_);
    }

private:
    RTL_CRITICAL_SECTION *const native_;
};

// offsetof of a class with virtual functions is conditionally supported; all compilers of this interface do.
#pragma clang diagnostic ignored "-Winvalid-offsetof"

OrvBasResource::OrvBasResource()
{
    static_assert(offsetof(OrvBasResource, lock_) == 4);
    static_assert(offsetof(OrvBasResource, exclusiveWaitEvent_) == 32);
    static_assert(offsetof(OrvBasResource, sharedWaitSemaphore_) == 48);
    static_assert(offsetof(OrvBasResource, activeCount_) == 64);
    static_assert(offsetof(OrvBasResource, exclusiveWaiterCount_) == 68);
    static_assert(offsetof(OrvBasResource, sharedWaiterCount_) == 72);
    static_assert(offsetof(OrvBasResource, ownerA_) == 76 && offsetof(OrvBasResource, ownerB_) == 84);
    static_assert(offsetof(OrvBasResource, ownerTable_) == 92);
    static_assert(offsetof(OrvBasResource, ownerTableCapacity_) == 96);
    static_assert(offsetof(OrvBasResource, exclusive_) == 100);
}

OrvBasResource::~OrvBasResource()
{
    Destroy();
}

OrvResult OrvBasResource::Create()
{
    // A second Create makes a new critical section here. The event refuses to be created again, and then the
    // new critical section is deleted below.
    lock_.Destroy();
    OrvResult result = lock_.Create();
    if (OrvFailed(result))
        return result;
    result = exclusiveWaitEvent_.Create(OrvBasEvent::AutoReset, false);
    if (OrvFailed(result)) {
        lock_.Destroy();
        return result;
    }
    result = sharedWaitSemaphore_.Create(0, kMostReaders);
    if (OrvFailed(result)) {
        lock_.Destroy();
        exclusiveWaitEvent_.Destroy();
    }
    return result;
}

void OrvBasResource::Destroy()
{
    detail::FreeBytes(ownerTable_);
    ownerTable_ = nullptr;
    ownerTableCapacity_ = 0;
    exclusiveWaitEvent_.Destroy();
    sharedWaitSemaphore_.Destroy();
    lock_.Destroy();
}

bool OrvBasResource::IsInitialized()
{
    return lock_.IsInitialized() && exclusiveWaitEvent_.IsInitialized() &&
           sharedWaitSemaphore_.IsInitialized();
}

OrvResult OrvBasResource::AcquireExclusive(int timeoutMs)
{
    if (!lock_.IsInitialized())
        return ORV_E_INVALID_STATE;
    const uint32_t self = CurrentThreadId();
    const Entered entered(lock_);
    if (activeCount_ == 0) {
        exclusive_ = true;
        activeCount_ = 1;
        ownerA_ = {self, 1};
        return ORV_S_OK;
    }
    if (IsWriter(self)) {
        ownerA_.count++;
        return ORV_S_OK;
    }
    if (!exclusive_ && FindOwner(self))
        return ORV_E_INVALID_OPERATION;

    exclusiveWaiterCount_++;
    const OrvResult result = WaitOutside(exclusiveWaitEvent_, timeoutMs);
    exclusiveWaiterCount_--;
    if (OrvFailed(result))
        return result;
    ownerA_ = {self, 1}; // the thread that released has set the rest
    return ORV_S_OK;
}

OrvResult OrvBasResource::AcquireShared(int timeoutMs)
{
    if (!lock_.IsInitialized())
        return ORV_E_INVALID_STATE;
    const uint32_t self = CurrentThreadId();
    const Entered entered(lock_);
    if (activeCount_ == 0) {
        exclusive_ = false;
        activeCount_ = 1;
        ownerB_ = {self, 1};
        return ORV_S_OK;
    }
    if (Owner *const own = FindOwner(self)) {
        own->count++;
        return ORV_S_OK;
    }

    Owner *const record = FindFreeOwner();
    if (!record)
        return ORV_E_OUT_OF_MEMORY;
    *record = {self, 1};
    if (!exclusive_ && exclusiveWaiterCount_ == 0) {
        activeCount_++;
        return ORV_S_OK;
    }

    sharedWaiterCount_++;
    const OrvResult result = WaitOutside(sharedWaitSemaphore_, timeoutMs);
    if (OrvFailed(result)) {
        *FindOwner(self) = {}; // the table may have moved meanwhile
        sharedWaiterCount_--;
        return result;
    }
    return ORV_S_OK;
}

OrvResult OrvBasResource::AcquireSharedStarveExclusive(int)
{
    return ORV_E_NOT_PROVIDED;
}

OrvResult OrvBasResource::AcquireSharedWaitForExclusive(int)
{
    return ORV_E_NOT_PROVIDED;
}

OrvResult OrvBasResource::Release()
{
    if (!lock_.IsInitialized())
        return ORV_E_INVALID_STATE;
    const uint32_t self = CurrentThreadId();
    const Entered entered(lock_);
    // While a writer holds the resource, all other records belong to readers that sleep.
    Owner *const own = FindOwner(self);
    if (!own)
        return ORV_E_NOT_OWNER;
    if (--own->count != 0)
        return ORV_S_OK;
    own->threadId = 0;
    if (--activeCount_ != 0)
        return ORV_S_OK;

    const bool byWriter = exclusive_;
    exclusive_ = false;
    if (sharedWaiterCount_ != 0 && (byWriter || exclusiveWaiterCount_ == 0)) {
        AdmitReaders();
        return ORV_S_OK;
    }
    if (exclusiveWaiterCount_ == 0)
        return ORV_S_OK;
    exclusive_ = true;
    activeCount_ = 1;
    const OrvResult result = exclusiveWaitEvent_.Set();
    return byWriter ? result : ORV_S_OK;
}

OrvResult OrvBasResource::ConvertExclusiveToShared()
{
    if (!lock_.IsInitialized())
        return ORV_E_INVALID_STATE;
    const Entered entered(lock_);
    if (!IsWriter(CurrentThreadId()))
        return ORV_E_NOT_OWNER;
    exclusive_ = false;
    if (sharedWaiterCount_ != 0)
        AdmitReaders();
    return ORV_S_OK;
}

uint32_t OrvBasResource::GetExclusiveWaiterCount()
{
    const Entered entered(lock_);
    return exclusiveWaiterCount_;
}

uint32_t OrvBasResource::GetSharedWaiterCount()
{
    const Entered entered(lock_);
    return sharedWaiterCount_;
}

bool OrvBasResource::IsAcquiredExclusive()
{
    const Entered entered(lock_);
    return IsWriter(CurrentThreadId());
}

uint32_t OrvBasResource::IsAcquiredShared()
{
    const Entered entered(lock_);
    const Owner *const own = FindOwner(CurrentThreadId());
    return own ? own->count : 0;
}

bool OrvBasResource::IsWriter(uint32_t threadId) const
{
    return exclusive_ && ownerA_.threadId == threadId;
}

/// The thread's record, or null. A thread has one record at most.
OrvBasResource::Owner *OrvBasResource::FindOwner(uint32_t threadId)
{
    if (ownerA_.threadId == threadId)
        return &ownerA_;
    if (ownerB_.threadId == threadId)
        return &ownerB_;
    for (uint32_t i = 0; i < ownerTableCapacity_; i++) {
        if (ownerTable_[i].threadId == threadId)
            return &ownerTable_[i];
    }
    return nullptr;
}

/// A free record for a new reader; null when there is no memory for it. Never the writer's record.
OrvBasResource::Owner *OrvBasResource::FindFreeOwner()
{
    if (ownerB_.threadId == 0)
        return &ownerB_;
    const uint32_t capacity = ownerTableCapacity_;
    for (uint32_t i = 0; i < capacity; i++) {
        if (ownerTable_[i].threadId == 0)
            return &ownerTable_[i];
    }

    const uint32_t newCapacity = capacity == 0 ? 3 : capacity + 4;
    void *const table = detail::ReallocateBytes(ownerTable_, newCapacity * sizeof(Owner));
    if (!table)
        return nullptr;
    ownerTable_ = static_cast<Owner *>(table);
    ownerTableCapacity_ = newCapacity;
    for (uint32_t i = capacity; i < newCapacity; i++)
        ownerTable_[i] = {};
    return &ownerTable_[capacity];
}

/// Waits outside the critical section, and enters it again before it returns.
OrvResult OrvBasResource::WaitOutside(OrvBasWaitable &waitable, int timeoutMs)
{
    lock_.Release();
    const OrvResult result = waitable.InternalWait(timeoutMs);
    lock_.Acquire();
    // A release may still have chosen this thread between the end of the time and the Acquire above.
    return OrvFailed(result) ? waitable.InternalWait(0) : result;
}

/// Makes every waiting reader a holder, in addition to the present holders, and wakes it.
void OrvBasResource::AdmitReaders()
{
    const uint32_t count = sharedWaiterCount_;
    activeCount_ += count;
    sharedWaiterCount_ = 0;
    sharedWaitSemaphore_.Release(static_cast<int>(count));
}

// The manager of the sparse locks' events: those on loan, and idle ones.
//
// A lock has an event only while a thread is inside its Acquire or Release, so there are never more loans
// than threads. A sorted array is enough: making room in it costs less than creating an event. For the same
// reason the two arrays never shrink.

#include "orv/sync/sparse_lock_manager.h"

#include "crt/memory.h"
#include "nt/nt.h"
#include "orv/runtime/result.h"
#include "runtime/growth.h"
#include "runtime/heap.h"
#include "runtime/native_handle.h"
#include "runtime/status.h"

namespace
{

constexpr uint32_t kFirstCapacity = 16; // a power of two, as all capacities are

} // namespace

OrvBasSparseLockManager::OrvBasSparseLockManager() = default;

OrvBasSparseLockManager::~OrvBasSparseLockManager()
{
    CloseAllBut(0);
    detail::FreeBytes(idle_.events);
    lock_.Destroy();
    detail::FreeBytes(assigned_.entries);
}

OrvResult OrvBasSparseLockManager::Initialize(unsigned long minimumIdle, unsigned long idlePercent)
{
    const OrvResult result = lock_.Create();
    if (OrvFailed(result))
        return result;
    minimumIdle_ = minimumIdle;
    idlePercent_ = idlePercent;
    return ORV_S_OK;
}

bool OrvBasSparseLockManager::IsInitialized()
{
    return lock_.IsInitialized();
}

/// The index of the lock's loan, or the index at which it must be inserted.
uint32_t OrvBasSparseLockManager::Loans::LowerBound(const OrvBasSparseNonrecursiveLock *lock) const
{
    uint32_t first = 0;
    for (uint32_t rest = count; rest != 0;) {
        const uint32_t half = rest / 2;
        if (entries[first + half].lock < lock) {
            first += half + 1;
            rest -= half + 1;
        } else {
            rest = half;
        }
    }
    return first;
}

/// The event on loan to the lock, or null.
void *OrvBasSparseLockManager::Loans::Find(const OrvBasSparseNonrecursiveLock *lock) const
{
    const uint32_t at = LowerBound(lock);
    return at < count && entries[at].lock == lock ? entries[at].event : nullptr;
}

/// The lock must have no loan yet. Returns false when there is no memory: nothing is changed.
bool OrvBasSparseLockManager::Loans::Insert(const OrvBasSparseNonrecursiveLock *lock, void *event)
{
    if (count == capacity) {
        const uint32_t newCapacity = detail::GrownCapacity(capacity, capacity + 1, kFirstCapacity);
        void *const grown = detail::ReallocateBytes(entries, newCapacity * sizeof(Loan));
        if (!grown)
            return false;
        entries = static_cast<Loan *>(grown);
        capacity = newCapacity;
    }
    const uint32_t at = LowerBound(lock);
    memmove(entries + at + 1, entries + at, (count - at) * sizeof(Loan));
    entries[at] = {lock, event};
    count++;
    return true;
}

/// Returns ORV_S_OBJECT_NOT_FOUND when the lock has no loan: nothing is changed.
OrvResult OrvBasSparseLockManager::Loans::Remove(const OrvBasSparseNonrecursiveLock *lock)
{
    const uint32_t at = LowerBound(lock);
    if (at == count || entries[at].lock != lock)
        return ORV_S_OBJECT_NOT_FOUND;
    count--;
    memmove(entries + at, entries + at + 1, (count - at) * sizeof(Loan));
    return ORV_S_OK;
}

/// Returns false when there is no memory: nothing is changed.
bool OrvBasSparseLockManager::Queue::Append(void *event)
{
    if (count == capacity) {
        const uint32_t newCapacity = detail::GrownCapacity(capacity, capacity + 1, kFirstCapacity);
        auto grown = detail::HeapArray<void *>::Allocate(newCapacity);
        if (!grown)
            return false;
        for (uint32_t i = 0; i < count; i++)
            grown.Get()[i] = events[(first + i) & (capacity - 1)];
        detail::FreeBytes(events);
        events = grown.Detach();
        capacity = newCapacity;
        first = 0;
    }
    events[(first + count) & (capacity - 1)] = event;
    count++;
    return true;
}

/// The queue must not be empty.
void *OrvBasSparseLockManager::Queue::TakeFirst()
{
    void *const event = events[first];
    first = (first + 1) & (capacity - 1);
    count--;
    return event;
}

/// Lends an event to a lock that has none: an idle event, or else a new one.
///
/// Returns 0; ORV_E_OUT_OF_MEMORY; the converted status when no event can be created. On failure `event`
/// stays null.
OrvResult OrvBasSparseLockManager::Lend(const OrvBasSparseNonrecursiveLock *lock, void *&event)
{
    HANDLE lent = nullptr;
    if (idle_.count != 0) {
        lent = idle_.TakeFirst();
    } else {
        const NTSTATUS status = ZwCreateEvent(&lent, EVENT_ALL_ACCESS, nullptr, SynchronizationEvent, false);
        if (!NT_SUCCESS(status))
            return detail::ResultFromStatus(status);
    }
    if (!assigned_.Insert(lock, lent)) {
        KeepOrClose(lent);
        return ORV_E_OUT_OF_MEMORY;
    }
    event = lent;
    return ORV_S_OK;
}

/// Keeps an unused event as an idle one if the limit on idle events allows it, and closes it otherwise.
void OrvBasSparseLockManager::KeepOrClose(void *event)
{
    const uint64_t share = uint64_t(assigned_.count) * idlePercent_ / 100;
    const uint64_t limit = share > minimumIdle_ ? share : minimumIdle_;
    if (idle_.count < limit && idle_.Append(event))
        return;
    detail::NativeHandle(event).Close();
    CloseAllBut(limit);
}

/// Closes idle events, the oldest first, until at most `most` are left.
void OrvBasSparseLockManager::CloseAllBut(uint64_t most)
{
    while (idle_.count > most)
        detail::NativeHandle(idle_.TakeFirst()).Close();
}

/// Ends the lock's loan. The loan still counts when the limit on idle events is computed.
void OrvBasSparseLockManager::TakeBack(const OrvBasSparseNonrecursiveLock *lock, void *event)
{
    KeepOrClose(event);
    assigned_.Remove(lock);
}

// Lends kernel events to the sparse locks that are contended, and keeps some idle events for later ones.
//
// Events exist for contended locks and for the idle ones that the two numbers of Initialize allow: handles
// and memory grow with contention, not with the number of locks.

#pragma once

#include "orv/base.h"
#include "orv/sync/critical_section.h"

class OrvBasSparseNonrecursiveLock;

/// The events of any number of sparse locks.
class OrvBasSparseLockManager
{
public:
    /// A manager without events, not initialized yet.
    ORV_API OrvBasSparseLockManager();
    OrvBasSparseLockManager(const OrvBasSparseLockManager &) = delete;
    OrvBasSparseLockManager &operator=(const OrvBasSparseLockManager &) = delete;

    /// Closes the idle events. None of its locks may be contended.
    ORV_API ~OrvBasSparseLockManager();

    /// Makes the manager ready for its locks. A returned event is kept while there are fewer idle events than
    /// `minimumIdle`, or fewer than `idlePercent` per cent of the events on loan (the returned event counts
    /// as on loan). Otherwise it is closed, and so are idle events above both limits, the oldest first.
    ///
    /// Returns 0; ORV_E_ALREADY_EXISTS for a manager that is initialized, which stays as it was; otherwise
    /// the converted status, and then the manager is not initialized.
    ORV_API OrvResult Initialize(unsigned long minimumIdle, unsigned long idlePercent);

    /// Whether it can be used.
    ORV_API bool IsInitialized();

private:
    friend class OrvBasSparseNonrecursiveLock;

    /// An event, and the contended lock that it was lent to.
    struct Loan {
        const OrvBasSparseNonrecursiveLock *lock;
        void *event;
    };

    /// Ordered by the locks' addresses.
    struct Loans {
        uint32_t LowerBound(const OrvBasSparseNonrecursiveLock *lock) const;
        void *Find(const OrvBasSparseNonrecursiveLock *lock) const;
        bool Insert(const OrvBasSparseNonrecursiveLock *lock, void *event);
        OrvResult Remove(const OrvBasSparseNonrecursiveLock *lock);

        Loan *entries;
        uint32_t capacity;
        uint32_t count;
    };

    /// First in, first out.
    struct Queue {
        bool Append(void *event);
        void *TakeFirst();

        void **events; ///< a ring
        uint32_t capacity;
        uint32_t first;
        uint32_t count;
    };

    OrvResult Lend(const OrvBasSparseNonrecursiveLock *lock, void *&event);
    void KeepOrClose(void *event);
    void CloseAllBut(uint64_t most);
    void TakeBack(const OrvBasSparseNonrecursiveLock *lock, void *event);

    Loans assigned_ = {};
    Queue idle_ = {};
    uint32_t minimumIdle_ = 0;
    uint32_t idlePercent_ = 0;
    OrvBasCriticalSection lock_; ///< guards the loans and the queue
};

static_assert(sizeof(OrvBasSparseLockManager) == 64, "fixed layout");

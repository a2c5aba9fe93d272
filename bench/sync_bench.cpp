// The locks, compared with the platform's critical section and slim reader/writer lock: acquired and released by
// one thread alone, and by two threads at once.

#include "bench.h"

#include "harness/thread.h"
#include "nt/programs.h"
#include "orv/orv.h"

namespace
{

constexpr uint32_t kTimes = 10000; // how often each of the two threads acquires a contended lock

struct Signal : OrvBasEvent {
    Signal() { Create(AutoReset, false); }
};

/// Two threads that do the same work at once, each kTimes times: the calling thread and one that the object owns,
/// which is woken first. Both begin together.
template <typename Work>
class Duel
{
public:
    explicit Duel(const Work &work) : work_(work) {}
    ~Duel()
    {
        ends_ = true;
        wake_.Set();
        rival_.Join();
    }

    void Run()
    {
        isReady_ = false;
        wake_.Set();
        while (!isReady_) {
        }
        Repeat();
        done_.Wait(-1);
    }

    /// The work of the object's own thread.
    void operator()()
    {
        while (wake_.Wait(-1) == ORV_S_OK && !ends_) {
            isReady_ = true;
            Repeat();
            done_.Set();
        }
    }

private:
    void Repeat()
    {
        for (uint32_t i = 0; i < kTimes; i++)
            work_();
    }

    const Work &work_;
    Signal wake_;
    Signal done_;
    volatile bool isReady_ = false;
    volatile bool ends_ = false;
    test::Thread rival_{*this};
};

template <typename Ours, typename Peer>
void CompareBoth(const char *what, const char *peerName, const Ours &ours, const Peer &peer)
{
    bench::Compare({what, 0, peerName}, ours, peer);
    Duel ourDuel(ours);
    Duel peerDuel(peer);
    bench::Compare(
        {what, kTimes, peerName, "two threads"}, [&] { ourDuel.Run(); }, [&] { peerDuel.Run(); });
}

volatile uint32_t guarded;

void Work()
{
    guarded = guarded + 1;
}

} // namespace

BENCHMARK(SyncLocks)
{
    RTL_CRITICAL_SECTION native;
    RtlInitializeCriticalSection(&native);
    const auto nativeSection = [&] {
        RtlEnterCriticalSection(&native);
        Work();
        RtlLeaveCriticalSection(&native);
    };
    RTL_SRWLOCK slim = {};
    const auto slimExclusive = [&] {
        RtlAcquireSRWLockExclusive(&slim);
        Work();
        RtlReleaseSRWLockExclusive(&slim);
    };
    const auto slimShared = [&] {
        RtlAcquireSRWLockShared(&slim);
        bench::Use(guarded);
        RtlReleaseSRWLockShared(&slim);
    };

    OrvBasCriticalSection section;
    section.Create();
    CompareBoth(
        "critical section", "RtlEnterCriticalSection",
        [&] {
            section.Acquire();
            Work();
            section.Release();
        },
        nativeSection);

    OrvBasResource resource;
    resource.Create();
    const auto exclusive = [&] {
        resource.AcquireExclusive(-1);
        Work();
        resource.Release();
    };
    CompareBoth("resource, exclusive", "RtlEnterCriticalSection", exclusive, nativeSection);
    CompareBoth("resource, exclusive", "RtlAcquireSRWLockExclusive", exclusive, slimExclusive);
    CompareBoth(
        "resource, shared", "RtlAcquireSRWLockShared",
        [&] {
            resource.AcquireShared(-1);
            bench::Use(guarded);
            resource.Release();
        },
        slimShared);

    OrvSpinLock spinLock = {0, 0};
    const auto spin = [&] {
        const OrvSpinLockLocker locker(&spinLock, true);
        Work();
    };
    CompareBoth("spin lock", "RtlEnterCriticalSection", spin, nativeSection);
    CompareBoth("spin lock", "RtlAcquireSRWLockExclusive", spin, slimExclusive);

    OrvBasSparseLockManager manager;
    manager.Initialize(2, 50);
    OrvBasSparseNonrecursiveLock sparseLock;
    const auto sparse = [&] {
        sparseLock.Acquire(&manager);
        Work();
        sparseLock.Release(&manager);
    };
    CompareBoth("sparse lock", "RtlEnterCriticalSection", sparse, nativeSection);
    CompareBoth("sparse lock", "RtlAcquireSRWLockExclusive", sparse, slimExclusive);
    RtlDeleteCriticalSection(&native);
}

// The locks beside the platform's critical section and slim reader/writer lock: taken and given back by one
// thread alone, and by two threads at once.

#include "bench.h"

#include "harness/thread.h"
#include "nt/programs.h"
#include "orv/orv.h"

namespace
{

/// Two threads that do the same work at once, each so many times: this one and one of its own, which is woken
/// first. Both begin together.
template <typename Work>
class Duel
{
public:
    Duel(const Work &work, uint32_t times) : work_(work), times_(times)
    {
        wake_.Create(OrvBasEvent::AutoReset, false);
        done_.Create(OrvBasEvent::AutoReset, false);
    }
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

    /// The rival's part.
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
        for (uint32_t i = 0; i < times_; i++)
            work_();
    }

    const Work &work_;
    const uint32_t times_;
    OrvBasEvent wake_;
    OrvBasEvent done_;
    volatile bool isReady_ = false;
    volatile bool ends_ = false;
    test::Thread rival_{*this};
};

/// `times` is how often each of the two threads takes a contended lock.
template <typename Ours, typename Peer>
void CompareBoth(const char *what, const char *peerName, uint32_t times, const Ours &ours, const Peer &peer)
{
    bench::Compare({what, 0, peerName}, ours, peer);
    Duel ourDuel(ours, times);
    Duel peerDuel(peer, times);
    bench::Compare(
        {"  by two threads, times", times, peerName}, [&] { ourDuel.Run(); }, [&] { peerDuel.Run(); });
}

constexpr uint32_t kOften = 10000;
constexpr uint32_t kSeldom = 2000; // where most hand-overs change threads
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
        "critical section", "RtlEnterCriticalSection", kOften,
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
    CompareBoth("resource, exclusive", "RtlEnterCriticalSection", kSeldom, exclusive, nativeSection);
    CompareBoth("resource, exclusive", "RtlAcquireSRWLockExclusive", kSeldom, exclusive, slimExclusive);
    CompareBoth(
        "resource, shared", "RtlAcquireSRWLockShared", kSeldom,
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
    CompareBoth("spin lock", "RtlEnterCriticalSection", kOften, spin, nativeSection);
    CompareBoth("spin lock", "RtlAcquireSRWLockExclusive", kOften, spin, slimExclusive);

    OrvBasSparseLockManager manager;
    manager.Initialize(2, 50);
    OrvBasSparseNonrecursiveLock sparseLock;
    const auto sparse = [&] {
        sparseLock.Acquire(&manager);
        Work();
        sparseLock.Release(&manager);
    };
    CompareBoth("sparse lock", "RtlEnterCriticalSection", kOften, sparse, nativeSection);
    CompareBoth("sparse lock", "RtlAcquireSRWLockExclusive", kOften, sparse, slimExclusive);
    RtlDeleteCriticalSection(&native);
}

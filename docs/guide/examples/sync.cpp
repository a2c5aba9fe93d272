#include "orv/orv.h"

namespace
{

/// Can be used before any code has run: a lock of zeros is free.
OrvSpinLock countLock;
uint32_t count;

class Worker final : public OrvBasThread
{
public:
    explicit Worker(OrvBasEvent &go) : go_(go) {}

protected:
    int Run() override
    {
        if (OrvFailed(go_.Wait(-1)))
            return 1;
        for (uint32_t i = 0; i < 1000; i++) {
            const OrvSpinLockLocker locker(&countLock, true);
            count++;
        }
        return 0;
    }

private:
    OrvBasEvent &go_;
};

} // namespace

int OrvMain(int, wchar_t **)
{
    // An event releases two threads at once. Then the program waits for their ends: a thread is a waitable, too.
    OrvBasEvent go;
    if (OrvFailed(go.Create(OrvBasEvent::ManualReset, false)))
        return 1;
    Worker first(go);
    Worker second(go);
    if (OrvFailed(first.StartThread(OrvPriorityNormal, nullptr, {}, nullptr)) ||
        OrvFailed(second.StartThread(OrvPriorityNormal, nullptr, {}, nullptr)))
        return 1;
    go.Set();
    OrvBasWaitable *const workers[] = {&first, &second};
    if (OrvFailed(OrvBasWaitForAll(workers, 2, -1)))
        return 1;
    OrvPrint(L"%u\n", count);

    // Waits for the first of several: the index says which one it was.
    OrvBasEvent late;
    if (OrvFailed(late.Create(OrvBasEvent::ManualReset, false)))
        return 1;
    OrvBasWaitable *const events[] = {&late, &go};
    uint32_t index = 0;
    const OrvResult any = OrvBasWaitForAny(index, events, 2, 1000);
    OrvPrint(L"%08X: number %u\n", any, index);

    // A wait that times out is a failure by its sign. An empty waitable counts as signalled.
    OrvBasEvent never;
    OrvPrint(L"without an event: %08X\n", never.Wait(0));
    never.Create(OrvBasEvent::AutoReset, false);
    OrvPrint(L"in vain: %08X (%s)\n", never.Wait(10), never.Wait(0) == ORV_W_TIMEOUT ? L"timeout" : L"?");

    // Readers and a writer. The holder releases the lock at the end of its scope.
    OrvBasResource resource;
    if (OrvFailed(resource.Create()))
        return 1;
    OrvBasResourceHolder holder(&resource, OrvBasResourceHolder::Shared, -1);
    OrvPrint(L"shared: %u, then exclusive: %08X\n", resource.IsAcquiredShared(),
             resource.AcquireExclusive(-1));
    holder.Release();

    // By name, across processes: the first process creates the object, all others open it.
    OrvBasWinMutex ours;
    OrvBasWinMutex theirs;
    const OrvResult made = ours.Create(true, L"OrvGuideMutex", OrvBasWinSyncSession, nullptr);
    const OrvResult found = theirs.Create(true, L"OrvGuideMutex", OrvBasWinSyncSession, nullptr);
    OrvPrint(L"%08X, then %08X\n", made, found);
    return OrvFailed(ours.Release()) ? 1 : 0;
}

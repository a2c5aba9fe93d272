// Threads for tests, started with the native interface.

#pragma once

#include "nt/programs.h"

namespace test
{

void Sleep(uint32_t milliseconds);

/// Runs a lambda on a thread of its own; its end is awaited by Join or the destructor. The lambda must live
/// as long, and makes no checks: the harness counts on one thread.
class Thread
{
public:
    template <typename Work>
    explicit Thread(Work &work, size_t stackSize = 0) : Thread(&Run<Work>, &work, stackSize)
    {
    }
    Thread(const Thread &) = delete;
    Thread &operator=(const Thread &) = delete;
    ~Thread() { Join(); }

    void Join();

private:
    Thread(ULONG(NTAPI *start)(PVOID), PVOID work, size_t stackSize);

    template <typename Work>
    static ULONG NTAPI Run(PVOID work)
    {
        (*static_cast<Work *>(work))();
        RtlExitUserThread(0);
        return 0;
    }

    HANDLE handle_ = nullptr;
};

/// Starts threads until there are so many, lets them all go, and waits for them.
template <typename Work>
void StartAndJoin(uint32_t count, Work &work, volatile bool &go)
{
    if (count == 0) {
        go = true;
        return;
    }
    auto numbered = [&] {
        while (!go)
            Sleep(0);
        work(count - 1);
    };
    const Thread thread(numbered);
    StartAndJoin(count - 1, work, go);
}

/// Runs a lambda on so many threads at once, each with its number, and waits for them all.
template <typename Work>
void RunOnThreads(uint32_t count, Work &work)
{
    volatile bool go = false;
    StartAndJoin(count, work, go);
}

/// Whether a condition comes to hold; false after half a minute.
template <typename Condition>
bool Eventually(const Condition &condition)
{
    for (uint32_t i = 0; i < 30000; i++) {
        if (condition())
            return true;
        Sleep(i < 100 ? 0 : 1);
    }
    return false;
}

} // namespace test

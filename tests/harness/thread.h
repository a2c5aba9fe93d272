// Threads for tests, started under the native interface.

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
    explicit Thread(Work &work) : Thread(&Run<Work>, &work)
    {
    }
    Thread(const Thread &) = delete;
    Thread &operator=(const Thread &) = delete;
    ~Thread() { Join(); }

    void Join();

private:
    Thread(ULONG(NTAPI *start)(PVOID), PVOID work);

    template <typename Work>
    static ULONG NTAPI Run(PVOID work)
    {
        (*static_cast<Work *>(work))();
        RtlExitUserThread(0);
        return 0;
    }

    HANDLE handle_ = nullptr;
};

} // namespace test

// Starts and joins threads.

#include "harness/thread.h"

namespace test
{

void Sleep(uint32_t milliseconds)
{
    const LONGLONG interval = -10000 * static_cast<LONGLONG>(milliseconds);
    ZwDelayExecution(false, &interval);
}

Thread::Thread(ULONG(NTAPI *start)(PVOID), PVOID work, size_t stackSize)
{
    if (RtlCreateUserThread(NtCurrentProcess(), nullptr, false, 0, stackSize, 0, start, work, &handle_,
                            nullptr) < 0)
        __builtin_trap();
}

void Thread::Join()
{
    if (!handle_)
        return;
    ZwWaitForSingleObject(handle_, false, nullptr);
    ZwClose(handle_);
    handle_ = nullptr;
}

} // namespace test

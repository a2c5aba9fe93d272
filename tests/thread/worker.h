// A thread for the tests of threads.

#pragma once

#include "harness/test.h"
#include "harness/thread.h"
#include "nt/teb.h"
#include "orv/runtime/result.h"
#include "orv/thread/thread.h"

/// Does nothing but tell what happens; goes on until it is asked to stop, if that is what it should wait for.
struct Worker : OrvBasThread {
    int Run() override
    {
        ranOn = GetCurrentThreadId();
        stackBase = NtCurrentTeb()->StackBase;
        stackBottom = NtCurrentTeb()->DeallocationStack;
        stage = 1;
        if (waits)
            WaitForStopRequest(-1);
        return exitCode;
    }
    void Cleanup() override { stage = stage + 1; }

    OrvResult Start(uint32_t flags = 0, OrvPriority priority = OrvPriorityNormal,
                    OrvSecurityCtx *security = nullptr)
    {
        stage = 0;
        return StartThread(priority, security, OrvFlags<ThreadFlag>(flags), nullptr);
    }

    /// Starts it and waits until it is in Run.
    void StartAndWait()
    {
        waits = true;
        CHECK_EQUAL(Start(), ORV_S_OK);
        CHECK(test::Eventually([this] { return stage == 1; }));
    }

    ThreadState State()
    {
        ThreadState state = {};
        CHECK_EQUAL(GetThreadState(state), ORV_S_OK);
        return state;
    }

    /// Waits for its end and gives its exit code.
    int End()
    {
        int code = 0;
        CHECK_EQUAL(WaitForThreadToStop(-1), ORV_S_OK);
        CHECK_EQUAL(GetThreadExitCode(code), ORV_S_OK);
        return code;
    }

    bool waits = false;
    int exitCode = 0;
    volatile int stage = 0; ///< 1 in Run, 2 after Cleanup
    volatile unsigned long ranOn = 0;
    const void *volatile stackBase = nullptr;
    const void *volatile stackBottom = nullptr;
};

// Threads: their life, what starting asks of the platform, what is left when it fails, and their end in
// every way.

#include "orv/thread/thread.h"

#include "harness/replace.h"
#include "harness/test.h"
#include "harness/thread.h"
#include "harness/usage.h"
#include "nt/teb.h"
#include "orv/runtime/kernel32_entry_points.h"
#include "orv/runtime/result.h"

namespace
{

constexpr const wchar_t *kNtdll = L"ntdll.dll";
constexpr ULONG kAccessDenied = 0xC0000022;

/// Does nothing but tell what happens; goes on until it is asked to stop, if that is what it should wait for.
struct Worker : OrvBasThread {
    int Run() override
    {
        ranOn = GetCurrentThreadId();
        stackBase = NtCurrentTeb()->StackBase;
        stage = 1;
        if (waits)
            WaitForStopRequest(-1);
        return exitCode;
    }
    void Cleanup() override { stage = stage + 1; }

    OrvResult Start(OrvFlags<ThreadFlag> flags = {}, OrvPriority priority = OrvPriorityNormal,
                    OrvSecurityCtx *security = nullptr)
    {
        stage = 0;
        return StartThread(priority, security, flags, nullptr);
    }

    ThreadState State()
    {
        ThreadState state = {};
        CHECK_EQUAL(GetThreadState(state), ORV_S_OK);
        return state;
    }

    bool waits = false;
    int exitCode = 0;
    volatile int stage = 0; ///< 1 in Run, 2 after Cleanup
    volatile unsigned long ranOn = 0;
    const void *volatile stackBase = nullptr;
};

} // namespace

TEST_CASE(WithoutAThreadThereIsNothingToDo)
{
    Worker thread;
    int exitCode = 5;
    CHECK(!thread.IsInitialized());
    CHECK_EQUAL(thread.State(), OrvBasThread::ThreadNotStarted);
    CHECK_EQUAL(thread.GetId(), 0u);
    CHECK_EQUAL(thread.StopThread(-1), ORV_S_OK);
    CHECK_EQUAL(thread.WaitForThreadToStop(-1), ORV_S_OK);
    CHECK_EQUAL(thread.GetThreadExitCode(exitCode), ORV_E_INVALID_HANDLE);
    CHECK_EQUAL(exitCode, 5);
    CHECK_EQUAL(thread.ResumeThread(), ORV_E_INVALID_HANDLE);
    CHECK_EQUAL(thread.SuspendThread(), ORV_E_INVALID_HANDLE);
    CHECK_EQUAL(thread.ForcefullyTerminate(1), ORV_E_INVALID_ARGUMENT);
    CHECK_EQUAL(thread.SetStopRequest(), ORV_E_INVALID_HANDLE);
    CHECK_EQUAL(thread.ClearStopRequest(), ORV_E_INVALID_HANDLE);
    CHECK_EQUAL(thread.Destroy(), ORV_S_OK);
    CHECK_EQUAL(thread.Destroy(), ORV_S_OK);
}

TEST_CASE(ThreadsStartRunAndEnd)
{
    Worker thread;
    thread.waits = true;
    thread.exitCode = -7;
    int exitCode = 5;
    for (uint32_t round = 0; round < 2; round++) { // ended threads may be started again
        CHECK_EQUAL(thread.Start(OrvBasThread::ThreadStartsSuspended), ORV_S_OK);
        CHECK(thread.IsInitialized() && !thread.IsStopRequested());
        CHECK_EQUAL(thread.State(), OrvBasThread::ThreadRunning);
        CHECK_EQUAL(thread.GetThreadExitCode(exitCode), ORV_W_STILL_ACTIVE);
        CHECK_EQUAL(thread.Start(), ORV_E_THREAD_RUNNING);
        CHECK_EQUAL(thread.InternalWait(20), ORV_W_TIMEOUT);
        CHECK_EQUAL(thread.stage, 0);
        CHECK_EQUAL(thread.SuspendThread(), ORV_S_OK);
        CHECK_EQUAL(thread.ResumeThread(), ORV_S_OK);
        CHECK_EQUAL(thread.InternalWait(20), ORV_W_TIMEOUT); // suspended twice, resumed once
        CHECK_EQUAL(thread.stage, 0);
        CHECK_EQUAL(thread.ResumeThread(), ORV_S_OK);
        while (thread.stage != 1)
            OrvBasThread::Sleep(1);
        CHECK_EQUAL(thread.ranOn, thread.GetId());
        CHECK_EQUAL(thread.WaitForThreadToStop(0), ORV_W_TIMEOUT);
        CHECK_EQUAL(thread.State(), OrvBasThread::ThreadRunning);
        CHECK_EQUAL(thread.StopThread(-1), ORV_S_OK);
        CHECK_EQUAL(thread.stage, 2);
        CHECK(thread.IsStopRequested());
        CHECK_EQUAL(thread.State(), OrvBasThread::ThreadEnded);
        CHECK_EQUAL(thread.GetThreadExitCode(exitCode), ORV_S_OK);
        CHECK_EQUAL(exitCode, -7);
        CHECK_EQUAL(thread.InternalWait(0), ORV_S_OK);
        CHECK_EQUAL(thread.StopThread(0), ORV_S_OK);
    }
    CHECK(OrvBasThread::GetCurrentThreadId() != thread.GetId());
    void **const slots = *reinterpret_cast<void ***>(&thread);
    CHECK_EQUAL(reinterpret_cast<int(__thiscall *)(void *)>(slots[2])(&thread), -7); // Run
    reinterpret_cast<void(__thiscall *)(void *)>(slots[3])(&thread);                 // Cleanup
    CHECK_EQUAL(thread.stage, 2);
}

TEST_CASE(StopRequestsGoThroughTheEventInUse)
{
    OrvBasEvent external;
    CHECK_EQUAL(external.Create(OrvBasEvent::ManualReset, true), ORV_S_OK);
    Worker thread;
    CHECK_EQUAL(thread.Initialize(nullptr), ORV_S_OK);
    OrvBasEvent *const own = thread.GetThreadStopRequestEvent();
    CHECK_EQUAL(thread.SetStopRequest(), ORV_S_OK);
    CHECK(thread.IsStopRequested());
    CHECK_EQUAL(thread.WaitForStopRequest(-1), ORV_S_OK);
    CHECK_EQUAL(thread.ClearStopRequest(), ORV_S_OK);
    CHECK_EQUAL(thread.WaitForStopRequest(0), ORV_W_TIMEOUT);
    CHECK_EQUAL(own->Set(), ORV_S_OK);
    CHECK_EQUAL(thread.Initialize(nullptr), ORV_S_OK); // resets
    CHECK(!thread.IsStopRequested());

    CHECK_EQUAL(thread.Initialize(&external), ORV_S_OK);
    CHECK_EQUAL(thread.Initialize(nullptr), ORV_S_OK);
    CHECK_EQUAL(thread.GetThreadStopRequestEvent(), &external);
    CHECK_EQUAL(thread.Start(), ORV_S_OK);
    CHECK(thread.IsStopRequested()); // left as it was
    CHECK_EQUAL(thread.WaitForThreadToStop(-1), ORV_S_OK);
}

namespace
{

// What the platform was asked, in place of doing it.

PVOID askedDescriptor;
size_t askedStacks[2];
ULONG askedFlags; ///< suspended, zero bits

NTSTATUS NTAPI WatchCreation(HANDLE process, PVOID descriptor, BOOLEAN suspended, ULONG zeroBits,
                             size_t maximumStack, size_t committedStack, ULONG(NTAPI *start)(PVOID), PVOID,
                             HANDLE *, CLIENT_ID *)
{
    askedDescriptor = descriptor;
    askedStacks[0] = maximumStack;
    askedStacks[1] = committedStack;
    askedFlags = suspended | zeroBits << 8;
    return process == NtCurrentProcess() && start == OrvBasThread::RealThreadProc ? STATUS_UNSUCCESSFUL
                                                                                  : STATUS_INVALID_PARAMETER;
}

ULONG askedClass;
LONG askedValue;
uint32_t askedTimes;
NTSTATUS settingAnswer;

NTSTATUS NTAPI WatchSetting(HANDLE, ULONG informationClass, const void *value, ULONG size)
{
    if (size != sizeof askedValue)
        return STATUS_INVALID_PARAMETER;
    askedClass = informationClass;
    askedValue = *static_cast<const LONG *>(value);
    askedTimes++;
    return settingAnswer;
}

const void *freedFrom;
const void *freed; ///< up to here

NTSTATUS NTAPI WatchFree(HANDLE, PVOID *base, ULONG *size, ULONG type)
{
    if (type != MEM_RELEASE)
        return STATUS_INVALID_PARAMETER;
    freedFrom = *base;
    freed = static_cast<uint8_t *>(*base) + *size;
    return STATUS_SUCCESS;
}

volatile uint32_t announcedEnds;

void NTAPI WatchEnd(NTSTATUS exitStatus)
{
    announcedEnds = announcedEnds + 1;
    ZwTerminateThread(NtCurrentThread(), exitStatus);
}

} // namespace

TEST_CASE(StartingAsksForWhatItShould)
{
    int native = 0;
    OrvSecurityCtx security(&native);
    Worker thread;
    {
        const test::ReplacedFunction watched(kNtdll, "RtlCreateUserThread", WatchCreation);
        CHECK_EQUAL(static_cast<uint32_t>(thread.Start({}, OrvPriorityIdle, &security)), 0xC007001Fu);
    }
    CHECK_EQUAL(askedDescriptor, &native);
    CHECK_EQUAL(askedStacks[0], 0x100000u);
    CHECK_EQUAL(askedStacks[1], 0x1000u);
    CHECK_EQUAL(askedFlags, 1u);

    struct {
        int32_t priority;
        uint32_t flags;
        uint32_t times;
        ULONG informationClass;
        LONG value;
    } const cases[] = {
        {-20, 0, 1, ThreadBasePriority, 16},
        {-10, 0, 1, ThreadBasePriority, 2},
        {0, 0, 0, 0, 0},
        {1, 0, 1, ThreadBasePriority, 0},
        {-21, 0, 1, ThreadBasePriority, 0},
        {10, 0, 1, ThreadBasePriority, -2},
        {19, 0, 1, ThreadBasePriority, -16},
        {0, OrvBasThread::ThreadVeryLowIoPriority, 1, ThreadIoPriority, 0},
        {0, OrvBasThread::ThreadLowIoPriority, 1, ThreadIoPriority, 1},
        {0, OrvBasThread::ThreadVeryLowIoPriority | OrvBasThread::ThreadLowIoPriority, 1, ThreadIoPriority,
         0},
    };
    const test::ReplacedFunction watched(kNtdll, "ZwSetInformationThread", WatchSetting);
    for (const auto &c : cases) {
        for (uint32_t failing = 0; failing < 2; failing++) {
            test::Note("case", static_cast<uint32_t>(&c - cases) * 2 + failing);
            askedTimes = 0;
            askedClass = 0;
            askedValue = 0;
            settingAnswer = static_cast<NTSTATUS>(failing ? kAccessDenied : 0);
            const bool remarks = failing && c.informationClass == ThreadBasePriority;
            CHECK_EQUAL(thread.Start(OrvFlags<OrvBasThread::ThreadFlag>(c.flags),
                                     static_cast<OrvPriority>(c.priority)),
                        remarks ? 0x60010058 : 0);
            CHECK_EQUAL(thread.WaitForThreadToStop(-1), ORV_S_OK);
            CHECK_EQUAL(askedTimes, c.times);
            CHECK_EQUAL(askedClass, c.informationClass);
            CHECK_EQUAL(askedValue, c.value);
        }
    }
}

TEST_CASE(FailedStartsLeaveNothing)
{
    OrvSecurityCtx security;
    CHECK_EQUAL(security.Allow(OrvGroupEveryone, 0x1FFFFF), ORV_S_OK);
    struct {
        const char *function;
        USHORT argumentBytes;
        bool keepsOld; ///< the handle of the thread before
    } const cases[] = {
        {"ZwCreateEvent", 20, true},
        {"ZwResetEvent", 8, true},
        {"RtlCreateSecurityDescriptor", 8, true},
        {"RtlCreateUserThread", 40, true},
        {"ZwResumeThread", 8, false},
    };
    for (const auto &c : cases) {
        test::Note("case", static_cast<uint32_t>(&c - cases));
        const test::Usage before = test::CountUsage();
        {
            Worker thread;
            const bool first = c.function[2] == 'C'; // an event is created but once
            if (!first) {
                CHECK_EQUAL(thread.Start(), ORV_S_OK);
                CHECK_EQUAL(thread.WaitForThreadToStop(-1), ORV_S_OK);
            }
            thread.stage = 9;
            {
                const test::ReplacedFunction fails(kNtdll, c.function, kAccessDenied, c.argumentBytes);
                CHECK_EQUAL(thread.StartThread(OrvPriorityNormal, &security, {}, "x"), ORV_E_ACCESS_DENIED);
            }
            CHECK_EQUAL(thread.State(),
                        first || !c.keepsOld ? OrvBasThread::ThreadNotStarted : OrvBasThread::ThreadEnded);
            CHECK_EQUAL(thread.stage, 9);
            CHECK_EQUAL(thread.Start({}, OrvPriorityNormal, &security), ORV_S_OK);
            CHECK_EQUAL(thread.WaitForThreadToStop(-1), ORV_S_OK);
            CHECK_EQUAL(thread.stage, 2);
        }
        CHECK_USAGE(before);
    }
}

TEST_CASE(EndsAreAnnouncedUnlessTheyAreNot)
{
    const test::ReplacedFunction watched(kNtdll, "RtlExitUserThread", WatchEnd);
    for (uint32_t i = 0; i < 2; i++) {
        Worker thread;
        thread.exitCode = 40;
        announcedEnds = 0;
        CHECK_EQUAL(thread.Start(OrvFlags<OrvBasThread::ThreadFlag>(i * OrvBasThread::ThreadEndsUnannounced)),
                    ORV_S_OK);
        CHECK_EQUAL(thread.WaitForThreadToStop(-1), ORV_S_OK);
        int exitCode = 0;
        CHECK_EQUAL(thread.GetThreadExitCode(exitCode), ORV_S_OK);
        CHECK_EQUAL(exitCode, 40);
        CHECK_EQUAL(announcedEnds, 1 - i);
    }
}

TEST_CASE(ThousandThreadsLeaveNothing)
{
    const auto start = [](uint32_t count) {
        Worker workers[10];
        for (uint32_t i = 0; i < count; i++) {
            Worker &worker = workers[i % 10];
            worker.WaitForThreadToStop(-1);
            CHECK_EQUAL(worker.Start(), ORV_S_OK);
        }
        for (Worker &worker : workers)
            worker.WaitForThreadToStop(-1);
    };
    start(10);
    const test::Usage before = test::CountUsage();
    start(1000);
    CHECK_USAGE(before);
}

TEST_CASE(ThreadsEndByForce)
{
    const test::Usage before = test::CountUsage();
    for (uint32_t i = 0; i < 20; i++) {
        Worker thread;
        thread.waits = true;
        CHECK_EQUAL(
            thread.Start(i & 1 ? OrvBasThread::ThreadStartsSuspended : OrvFlags<OrvBasThread::ThreadFlag>()),
            ORV_S_OK);
        while (!(i & 1) && thread.stage != 1)
            test::Sleep(0);
        CHECK_EQUAL(thread.ForcefullyTerminate(77), ORV_S_OK);
        int exitCode = 0;
        CHECK_EQUAL(thread.GetThreadExitCode(exitCode), ORV_S_OK);
        CHECK_EQUAL(exitCode, 77);
        CHECK_EQUAL(thread.ForcefullyTerminate(78), ORV_S_OK); // it has ended
        CHECK_EQUAL(thread.GetThreadExitCode(exitCode), ORV_S_OK);
        CHECK_EQUAL(exitCode, 77);
        CHECK_EQUAL(thread.Start(), ORV_S_OK);
        CHECK_EQUAL(thread.StopThread(-1), ORV_S_OK);
    }
    CHECK_EQUAL(test::CountUsage().handles, before.handles);

    // Its stack goes first.
    Worker victim;
    int exitCode = 0;
    victim.waits = true;
    CHECK_EQUAL(victim.Start(), ORV_S_OK);
    while (victim.stage != 1)
        test::Sleep(0);
    CHECK_EQUAL(victim.FreeResource(), ORV_S_OK); // found by its id
    {
        const test::ReplacedFunction watched(kNtdll, "ZwFreeVirtualMemory", WatchFree);
        CHECK_EQUAL(victim.ForcefullyTerminate(1), ORV_S_OK);
    }
    CHECK_EQUAL(freed, static_cast<const void *>(victim.stackBase));
    CHECK(freedFrom < freed);
    CHECK_EQUAL(victim.ForcefullyTerminate(1), ORV_E_INVALID_ARGUMENT); // and gone with its last handle

    struct : Worker {
        int Run() override { return ForcefullyTerminate(3); }
    } itself;
    CHECK_EQUAL(itself.Start(), ORV_S_OK);
    CHECK_EQUAL(itself.WaitForThreadToStop(-1), ORV_S_OK);
    CHECK_EQUAL(itself.GetThreadExitCode(exitCode), ORV_S_OK);
    CHECK_EQUAL(exitCode, ORV_E_INVALID_OPERATION);

    // What the last look at the thread fails for.
    Worker thread;
    thread.waits = true;
    CHECK_EQUAL(thread.Start(), ORV_S_OK);
    while (thread.stage != 1)
        test::Sleep(0);
    struct {
        const char *function;
        ULONG status;
        USHORT argumentBytes;
        OrvResult result;
    } const cases[] = {
        {"ZwOpenThread", kAccessDenied, 16, ORV_E_ACCESS_DENIED},
        {"ZwSuspendThread", kAccessDenied, 8, ORV_E_ACCESS_DENIED},
        {"ZwSuspendThread", 0xC000004B, 8, ORV_S_OK},
        {"ZwQueryInformationThread", kAccessDenied, 20, ORV_E_ACCESS_DENIED},
    };
    for (const auto &c : cases) {
        const test::Usage usage = test::CountUsage();
        {
            const test::ReplacedFunction fails(kNtdll, c.function, c.status, c.argumentBytes);
            CHECK_EQUAL(thread.ForcefullyTerminate(1), c.result);
        }
        CHECK_USAGE(usage);
        CHECK_EQUAL(thread.State(), OrvBasThread::ThreadRunning);
    }
    CHECK_EQUAL(thread.StopThread(-1), ORV_S_OK); // it was resumed
}

namespace
{

constexpr ULONG kRaised = 0x8000BAD0; // no error, or the harness would take it
volatile uint32_t filtered;
LONG filterAnswer;

LONG NTAPI Filter(EXCEPTION_POINTERS *exception)
{
    filtered = filtered + (exception->ExceptionRecord->ExceptionCode == kRaised);
    return filterAnswer;
}

struct Raiser : OrvBasThread {
    int Run() override
    {
        EXCEPTION_RECORD record = {};
        record.ExceptionCode = kRaised;
        RtlRaiseException(&record);
        return 12;
    }
};

NTSTATUS NTAPI WatchProcessEnd(HANDLE process, NTSTATUS exitStatus)
{
    return ZwTerminateThread(NtCurrentThread(), process == NtCurrentProcess() ? exitStatus : 0);
}

} // namespace

TEST_CASE(UnhandledExceptionsAreTheSystems)
{
    const auto old = OrvKernel32_SetUnhandledExceptionFilter(Filter);
    const test::ReplacedFunction watched(kNtdll, "ZwTerminateProcess", WatchProcessEnd);
    const LONG answers[][2] = {
        {EXCEPTION_CONTINUE_EXECUTION, 12},
        {EXCEPTION_EXECUTE_HANDLER, static_cast<LONG>(kRaised)}, // the whole process ends
    };
    for (const auto &answer : answers) {
        Raiser thread;
        int exitCode = 0;
        filtered = 0;
        filterAnswer = answer[0];
        CHECK_EQUAL(thread.StartThread(OrvPriorityNormal, nullptr, {}, nullptr), ORV_S_OK);
        CHECK_EQUAL(thread.WaitForThreadToStop(-1), ORV_S_OK);
        CHECK_EQUAL(thread.GetThreadExitCode(exitCode), ORV_S_OK);
        CHECK_EQUAL(exitCode, answer[1]);
        CHECK_EQUAL(filtered, 1u);
    }
    OrvKernel32_SetUnhandledExceptionFilter(old);
}

namespace
{

EXCEPTION_RECORD named;
uint32_t namedTimes;

LONG NTAPI SeeName(EXCEPTION_POINTERS *exception)
{
    if (exception->ExceptionRecord->ExceptionCode == 0x406D1388) {
        namedTimes++;
        named = *exception->ExceptionRecord;
    }
    return EXCEPTION_CONTINUE_SEARCH;
}

} // namespace

TEST_CASE(NamesAreRaisedForDebuggers)
{
    static const char name[] = "worker";
    RtlAddVectoredExceptionHandler(1, SeeName);
    Worker thread;
    CHECK_EQUAL(thread.StartThread(OrvPriorityNormal, nullptr, {}, name), ORV_S_OK);
    CHECK_EQUAL(thread.WaitForThreadToStop(-1), ORV_S_OK);
    CHECK_EQUAL(named.NumberParameters, 4u);
    const ULONG expected[] = {0x1000, reinterpret_cast<uintptr_t>(name), thread.GetId(), 0};
    for (uint32_t i = 0; i < 4; i++)
        CHECK_EQUAL(named.ExceptionInformation[i], expected[i]);
    OrvBasThread::SetCurrentThreadName("main");
    CHECK_EQUAL(named.ExceptionInformation[2], OrvBasThread::GetCurrentThreadId());
    OrvBasThread::SetCurrentThreadName(nullptr);
    CHECK_EQUAL(namedTimes, 2u);
}

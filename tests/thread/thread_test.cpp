// Threads: their life, what starting asks of the platform, what is left when it fails, and their end in
// every way.

#include "harness/replace.h"
#include "harness/test.h"
#include "harness/thread.h"
#include "harness/usage.h"
#include "nt/teb.h"
#include "orv/runtime/kernel32_entry_points.h"
#include "orv/runtime/result.h"
#include "thread/worker.h"

namespace
{

constexpr const wchar_t *kNtdll = L"ntdll.dll";
constexpr ULONG kAccessDenied = 0xC0000022;

// What the platform was asked, in place of doing it.

int descriptor;

NTSTATUS NTAPI WatchCreation(HANDLE, PVOID security, BOOLEAN, ULONG, size_t maximumStack,
                             size_t committedStack, ULONG(NTAPI *)(PVOID), PVOID, HANDLE *, CLIENT_ID *)
{
    const bool isAsPromised = security == &descriptor && maximumStack == 0x100000 && committedStack == 0x1000;
    return isAsPromised ? STATUS_ACCESS_DENIED : STATUS_INVALID_PARAMETER;
}

ULONG askedClass;
LONG askedValue;
NTSTATUS settingAnswer;

NTSTATUS NTAPI WatchSetting(HANDLE, ULONG informationClass, const void *value, ULONG size)
{
    if (size != sizeof askedValue)
        return STATUS_INVALID_PARAMETER;
    askedClass = informationClass;
    askedValue = *static_cast<const LONG *>(value);
    return settingAnswer;
}

volatile uint32_t announcedEnds;

void NTAPI WatchEnd(NTSTATUS exitStatus)
{
    announcedEnds = announcedEnds + 1;
    ZwTerminateThread(NtCurrentThread(), exitStatus);
}

constexpr ULONG kRaised = 0x8000BAD0; // no error, or the harness would take it
volatile uint32_t filtered;
LONG filterAnswer;

LONG NTAPI Filter(EXCEPTION_POINTERS *exception)
{
    filtered = filtered + (exception->ExceptionRecord->ExceptionCode == kRaised);
    return filterAnswer;
}

struct Raiser : Worker {
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

TEST_CASE(WithoutAThreadThereIsNothingToDo)
{
    Worker thread;
    int exitCode = 5;
    CHECK(!thread.IsInitialized() && !thread.IsStopRequested());
    CHECK_EQUAL(thread.State(), OrvBasThread::ThreadNotStarted);
    CHECK_EQUAL(thread.GetId(), 0u);
    CHECK_EQUAL(thread.StopThread(-1), ORV_S_OK);
    CHECK_EQUAL(thread.WaitForThreadToStop(-1), ORV_S_OK);
    CHECK_EQUAL(thread.ForcefullyTerminate(1), ORV_E_INVALID_ARGUMENT);
    const OrvResult refused[] = {thread.GetThreadExitCode(exitCode), thread.ResumeThread(),
                                 thread.SuspendThread(), thread.SetStopRequest(), thread.ClearStopRequest()};
    for (const OrvResult result : test::Rows(refused))
        CHECK_EQUAL(result, ORV_E_INVALID_HANDLE);
    CHECK_EQUAL(exitCode, 5);
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
        CHECK_EQUAL(thread.SuspendThread(), ORV_S_OK);
        for (uint32_t resumed = 0; resumed < 2; resumed++) { // as often as it was suspended
            CHECK_EQUAL(thread.State(), OrvBasThread::ThreadRunning);
            CHECK_EQUAL(thread.GetThreadExitCode(exitCode), ORV_W_STILL_ACTIVE);
            CHECK_EQUAL(thread.Start(), ORV_E_THREAD_RUNNING);
            CHECK_EQUAL(thread.WaitForThreadToStop(10), ORV_W_TIMEOUT);
            CHECK_EQUAL(thread.stage, 0);
            CHECK_EQUAL(thread.ResumeThread(), ORV_S_OK);
        }
        CHECK(test::Eventually([&] { return thread.stage == 1; }));
        CHECK_EQUAL(thread.ranOn, thread.GetId());
        CHECK_EQUAL(thread.State(), OrvBasThread::ThreadRunning);
        CHECK_EQUAL(thread.StopThread(-1), ORV_S_OK);
        CHECK_EQUAL(thread.stage, 2);
        CHECK(thread.IsStopRequested());
        CHECK_EQUAL(thread.State(), OrvBasThread::ThreadEnded);
        CHECK_EQUAL(thread.End(), -7);
        CHECK_EQUAL(thread.StopThread(0), ORV_S_OK);
    }
    CHECK(OrvBasThread::GetCurrentThreadId() != thread.GetId());
}

TEST_CASE(StopRequestsGoThroughTheEventInUse)
{
    OrvBasEvent external;
    CHECK_EQUAL(external.Create(OrvBasEvent::ManualReset, true), ORV_S_OK);
    Worker thread;
    CHECK_EQUAL(thread.Initialize(nullptr), ORV_S_OK);
    CHECK_EQUAL(thread.SetStopRequest(), ORV_S_OK);
    CHECK_EQUAL(thread.ClearStopRequest(), ORV_S_OK);
    CHECK_EQUAL(thread.WaitForStopRequest(0), ORV_W_TIMEOUT);
    CHECK_EQUAL(thread.GetThreadStopRequestEvent()->Set(), ORV_S_OK);
    CHECK_EQUAL(thread.Initialize(nullptr), ORV_S_OK); // resets
    CHECK(!thread.IsStopRequested());

    CHECK_EQUAL(thread.Initialize(&external), ORV_S_OK);
    CHECK_EQUAL(thread.Initialize(nullptr), ORV_S_OK);
    CHECK_EQUAL(thread.GetThreadStopRequestEvent(), &external);
    CHECK_EQUAL(thread.Start(), ORV_S_OK);
    CHECK(thread.IsStopRequested()); // left as it was
    CHECK_EQUAL(thread.End(), 0);
}

TEST_CASE(StartingAsksForWhatItShould)
{
    Worker thread;
    {
        OrvSecurityCtx security(&descriptor);
        const test::ReplacedFunction watched(kNtdll, "RtlCreateUserThread", WatchCreation);
        CHECK_EQUAL(thread.Start(0, OrvPriorityIdle, &security), ORV_E_ACCESS_DENIED);
    }
    struct {
        int32_t priority;
        uint32_t flags;
        ULONG informationClass; ///< 0 when nothing is set
        LONG value;
    } const cases[] = {
        {-20, 0, ThreadBasePriority, 16}, {1, 0, ThreadBasePriority, 0},
        {19, 0, ThreadBasePriority, -16}, {0, 0, 0, 0},
        {0, 2, ThreadIoPriority, 1},      {0, 3, ThreadIoPriority, 0},
    };
    const test::ReplacedFunction watched(kNtdll, "ZwSetInformationThread", WatchSetting);
    for (const auto &c : test::Rows(cases)) {
        for (uint32_t failing = 0; failing < 2; failing++) {
            askedClass = 0;
            askedValue = 0;
            settingAnswer = static_cast<NTSTATUS>(failing ? kAccessDenied : 0);
            const bool remarks = failing && c.informationClass == ThreadBasePriority;
            CHECK_EQUAL(thread.Start(c.flags, static_cast<OrvPriority>(c.priority)),
                        remarks ? 0x60010058 : 0);
            CHECK_EQUAL(thread.End(), 0);
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
        OrvBasThread::ThreadState left; ///< of the thread before; an event is created at the first start
    } const cases[] = {
        {"ZwCreateEvent", 20, OrvBasThread::ThreadNotStarted},
        {"ZwResetEvent", 8, OrvBasThread::ThreadEnded},
        {"RtlCreateSecurityDescriptor", 8, OrvBasThread::ThreadEnded},
        {"RtlCreateUserThread", 40, OrvBasThread::ThreadEnded},
        {"ZwResumeThread", 8, OrvBasThread::ThreadNotStarted},
    };
    for (const auto &c : test::Rows(cases)) {
        const test::Usage before = test::CountUsage();
        {
            Worker thread;
            if (&c != cases)
                CHECK_EQUAL(thread.Start() || thread.End(), 0);
            thread.stage = 9;
            {
                const test::ReplacedFunction fails(kNtdll, c.function, kAccessDenied, c.argumentBytes);
                CHECK_EQUAL(thread.StartThread(OrvPriorityNormal, &security, {}, "x"), ORV_E_ACCESS_DENIED);
            }
            CHECK_EQUAL(thread.State(), c.left);
            CHECK_EQUAL(thread.stage, 9);
            CHECK_EQUAL(thread.Start(0, OrvPriorityNormal, &security), ORV_S_OK);
            CHECK_EQUAL(thread.End(), 0);
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
        CHECK_EQUAL(thread.Start(i * OrvBasThread::ThreadEndsUnannounced), ORV_S_OK);
        CHECK_EQUAL(thread.End(), 40);
        CHECK_EQUAL(announcedEnds, 1 - i);
    }
}

TEST_CASE(ThreadsEndByForce)
{
    const test::Usage before = test::CountUsage();
    for (uint32_t i = 0; i < 20; i++) {
        Worker thread;
        if (i & 1)
            CHECK_EQUAL(thread.Start(OrvBasThread::ThreadStartsSuspended), ORV_S_OK);
        else
            thread.StartAndWait();
        for (int code = 77; code < 79; code++) { // the second time it has ended
            CHECK_EQUAL(thread.ForcefullyTerminate(code), ORV_S_OK);
            CHECK_EQUAL(thread.End(), 77);
        }
        thread.StartAndWait();
        CHECK_EQUAL(thread.StopThread(-1), ORV_S_OK);
    }
    CHECK_EQUAL(test::CountUsage().handles, before.handles);

    Worker victim;
    victim.StartAndWait();
    CHECK_EQUAL(victim.FreeResource(), ORV_S_OK); // found by its id
    CHECK_EQUAL(victim.ForcefullyTerminate(1), ORV_S_OK);
    CHECK_EQUAL(victim.ForcefullyTerminate(1), ORV_E_INVALID_ARGUMENT); // and gone with its last handle

    struct : Worker {
        int Run() override { return ForcefullyTerminate(3); }
    } itself;
    CHECK_EQUAL(itself.Start(), ORV_S_OK);
    CHECK_EQUAL(itself.End(), ORV_E_INVALID_OPERATION);

    // What the last look at the thread fails for.
    Worker thread;
    thread.StartAndWait();
    struct {
        const char *function;
        ULONG status;
        USHORT argumentBytes;
        OrvResult result;
    } const cases[] = {
        {"ZwOpenThread", kAccessDenied, 16, ORV_E_ACCESS_DENIED},
        {"ZwSuspendThread", kAccessDenied, 8, ORV_E_ACCESS_DENIED},
        {"ZwSuspendThread", 0xC000004B, 8, ORV_S_OK},
        {"ZwQueryInformationThread", kAccessDenied, 20, ORV_S_OK}, // and it runs on
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
        filtered = 0;
        filterAnswer = answer[0];
        CHECK_EQUAL(thread.Start(), ORV_S_OK);
        CHECK_EQUAL(thread.End(), answer[1]);
        CHECK_EQUAL(filtered, 1u);
    }
    OrvKernel32_SetUnhandledExceptionFilter(old);
}

TEST_CASE(NamesAreRaisedForDebuggers)
{
    static const char name[] = "worker";
    RtlAddVectoredExceptionHandler(1, SeeName);
    Worker thread;
    CHECK_EQUAL(thread.StartThread(OrvPriorityNormal, nullptr, {}, name), ORV_S_OK);
    CHECK_EQUAL(thread.End(), 0);
    CHECK_EQUAL(named.NumberParameters, 4u);
    const ULONG expected[] = {0x1000, reinterpret_cast<uintptr_t>(name), thread.GetId(), 0};
    for (uint32_t i = 0; i < 4; i++)
        CHECK_EQUAL(named.ExceptionInformation[i], expected[i]);
    OrvBasThread::SetCurrentThreadName("main");
    CHECK_EQUAL(named.ExceptionInformation[2], OrvBasThread::GetCurrentThreadId());
    OrvBasThread::SetCurrentThreadName(nullptr);
    CHECK_EQUAL(namedTimes, 2u);
}

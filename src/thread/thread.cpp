// Threads over the native interface: a thread is created suspended, set up, and then resumed.

#include "orv/thread/thread.h"

#include "crt/memory.h"
#include "nt/nt.h"
#include "nt/teb.h"
#include "orv/env/os_info.h"
#include "orv/runtime/kernel32_entry_points.h"
#include "orv/runtime/ntdll_entry_points.h"
#include "orv/runtime/result.h"
#include "runtime/heap.h"
#include "runtime/native_handle.h"
#include "runtime/status.h"
#include "thread/exception_frame.h"
#include "thread/subsystem_registration.h"
#include "thread/thread_record.h"

namespace
{

constexpr size_t kMaximumStack = 0x100000;
constexpr size_t kCommittedStack = 0x1000;

/// The priority relative to the process's, on the platform's scale.
LONG PriorityIncrement(OrvPriority priority)
{
    switch (priority) {
    case OrvPriorityTimeCritical:
        return THREAD_PRIORITY_TIME_CRITICAL;
    case OrvPriorityHighest:
        return THREAD_PRIORITY_HIGHEST;
    case OrvPriorityLowest:
        return THREAD_PRIORITY_LOWEST;
    case OrvPriorityIdle:
        return THREAD_PRIORITY_IDLE;
    default:
        return THREAD_PRIORITY_NORMAL;
    }
}

/// Returns a failure with informational severity, because the thread also runs without the priority.
OrvResult SetPriority(HANDLE thread, OrvPriority priority)
{
    if (priority == OrvPriorityNormal)
        return ORV_S_OK;
    const LONG increment = PriorityIncrement(priority);
    const OrvResult result = detail::ResultFromCall(
        ZwSetInformationThread(thread, ThreadBasePriority, &increment, sizeof increment));
    constexpr uint32_t kSeverityShift = 30;
    constexpr uint32_t kWithoutSeverity = (1u << kSeverityShift) - 1;
    return OrvFailed(result) ? static_cast<OrvResult>((static_cast<uint32_t>(result) & kWithoutSeverity) |
                                                      OrvSeverityInformational << kSeverityShift)
                             : result;
}

void SetUpThread(OrvFlags<OrvBasThread::ThreadFlag> flags)
{
    const bool veryLow = flags.Has(OrvBasThread::ThreadVeryLowIoPriority);
    if (!veryLow && !flags.Has(OrvBasThread::ThreadLowIoPriority))
        return;
    const ULONG priority = veryLow ? IoPriorityVeryLow : IoPriorityLow;
    ZwSetInformationThread(NtCurrentThread(), ThreadIoPriority, &priority, sizeof priority);
}

/// Frees the calling thread's expansion array of thread-local keys. The lock keeps out other threads that
/// empty a key in every thread.
///
/// Only for a thread that ends unannounced. Any other thread still needs the array: the modules that are told
/// of its end read their own values there, and afterwards the platform frees the array.
void FreeExpansionSlots()
{
    TEB *const teb = NtCurrentTeb();
    if (!teb->TlsExpansionSlots)
        return;
    RtlAcquirePebLock();
    detail::FreeBytes(teb->TlsExpansionSlots);
    teb->TlsExpansionSlots = nullptr;
    RtlReleasePebLock();
}

/// Whether the code that ends a thread must free its stack: on systems before Windows Vista. Later systems
/// free all of the stack with the thread.
bool SystemLeavesStacks()
{
    return OrvEnvironment::OsInfo::IsAtLeast(5, 0) && !OrvEnvironment::OsInfo::IsAtLeast(6, 0);
}

void EndThread(int exitCode, bool announced)
{
    if (announced) {
        if (OrvNtdllIsFnLoaded_RtlExitUserThread())
            OrvNtdll_RtlExitUserThread(exitCode);
        LdrShutdownThread();
    }
    if (SystemLeavesStacks())
        NtCurrentTeb()->FreeStackOnTermination = true;
    ZwTerminateThread(NtCurrentThread(), exitCode);
}

OrvResult QueryThread(HANDLE thread, THREAD_BASIC_INFORMATION &information)
{
    return detail::ResultFromCall(
        ZwQueryInformationThread(thread, ThreadBasicInformation, &information, sizeof information, nullptr));
}

bool HasEnded(HANDLE thread)
{
    THREAD_BASIC_INFORMATION information = {};
    return OrvSucceeded(QueryThread(thread, information)) && information.ExitStatus != STATUS_PENDING;
}

/// A thread that was just suspended, or created suspended, may still run on its stack for a moment before it
/// halts. The query of its registers waits for that.
void WaitUntilItHalts(HANDLE thread)
{
    CONTEXT context;
    context.ContextFlags = CONTEXT_CONTROL;
    ZwGetContextThread(thread, &context);
}

/// Opens a thread of this process.
NTSTATUS OpenThread(unsigned long threadId, ACCESS_MASK access, HANDLE &thread)
{
    static constexpr OBJECT_ATTRIBUTES kAttributes = {
        sizeof kAttributes, nullptr, nullptr, 0, nullptr, nullptr};
    const CLIENT_ID clientId = {NtCurrentTeb()->ClientId.UniqueProcess, reinterpret_cast<HANDLE>(threadId)};
    return ZwOpenThread(&thread, access, &kAttributes, &clientId);
}

void WaitUntilItHalts(unsigned long threadId)
{
    detail::NativeHandle thread;
    if (NT_SUCCESS(OpenThread(threadId, THREAD_GET_CONTEXT, *thread.Receive())))
        WaitUntilItHalts(thread.Get());
}

/// Frees the stack, ends the thread and waits for its end. The thread must be suspended.
OrvResult Terminate(HANDLE thread, const TEB &teb, int exitCode)
{
    PVOID stack = teb.StackLimit;
    ULONG size = static_cast<uint8_t *>(teb.StackBase) - static_cast<uint8_t *>(stack);
    if (SystemLeavesStacks()) { // free what is reserved below the limit, too
        stack = teb.DeallocationStack;
        size = 0; // 0 means all that was reserved at this address
    }
    ZwFreeVirtualMemory(NtCurrentProcess(), &stack, &size, MEM_RELEASE);
    const NTSTATUS status = ZwTerminateThread(thread, exitCode);
    if (NT_SUCCESS(status))
        ZwWaitForSingleObject(thread, false, nullptr);
    return detail::ResultFromCall(status);
}

/// Suspends the thread and ends it. Does nothing if it has already ended.
OrvResult SuspendAndTerminate(HANDLE thread, unsigned long threadId, int exitCode)
{
    const NTSTATUS status = ZwSuspendThread(thread, nullptr);
    if (status == STATUS_THREAD_IS_TERMINATING)
        return ORV_S_OK;
    if (!NT_SUCCESS(status)) // platforms return different statuses for an ended thread
        return HasEnded(thread) ? ORV_S_OK : detail::ResultFromStatus(status);
    WaitUntilItHalts(threadId);
    THREAD_BASIC_INFORMATION information = {};
    if (OrvSucceeded(QueryThread(thread, information)) && information.ExitStatus == STATUS_PENDING &&
        information.TebBaseAddress)
        return Terminate(thread, *information.TebBaseAddress, exitCode);
    ZwResumeThread(thread, nullptr);
    return ORV_S_OK;
}

/// The exception's arguments, as debuggers read them.
struct ThreadNameInformation {
    ULONG type;
    const char *name;
    ULONG threadId;
    ULONG flags;
};
constexpr ULONG kThreadNameType = 0x1000;

} // namespace

// Lists the handlers in the image, so that the dispatcher calls them.
__asm__(".safeseh _OrvUnhandledInRun");
__asm__(".safeseh _OrvIgnoreThreadName");

/// The thread itself did not handle the exception, so this passes it to the system's filter, as kernel32.dll
/// does for the threads that it starts. Without kernel32.dll the search goes on to the platform's own handler
/// around the thread, and then to the second chance.
extern "C" EXCEPTION_DISPOSITION __cdecl OrvUnhandledInRun(EXCEPTION_RECORD *record,
                                                           EXCEPTION_REGISTRATION_RECORD *, PVOID context,
                                                           PVOID)
{
    if ((record->ExceptionFlags & EXCEPTION_UNWIND) || !OrvKernel32IsFnLoaded_UnhandledExceptionFilter())
        return ExceptionContinueSearch;
    EXCEPTION_POINTERS exception = {record, context};
    switch (OrvKernel32_UnhandledExceptionFilter(&exception)) {
    case EXCEPTION_EXECUTE_HANDLER:
        ZwTerminateProcess(NtCurrentProcess(), static_cast<NTSTATUS>(record->ExceptionCode));
        return ExceptionContinueSearch;
    case EXCEPTION_CONTINUE_EXECUTION:
        return ExceptionContinueExecution;
    default:
        return ExceptionContinueSearch;
    }
}

/// Continues after the exception that names a thread: a debugger, if there is one, has already read the name.
extern "C" EXCEPTION_DISPOSITION __cdecl OrvIgnoreThreadName(EXCEPTION_RECORD *record,
                                                             EXCEPTION_REGISTRATION_RECORD *, PVOID, PVOID)
{
    return record->ExceptionCode == MS_VC_EXCEPTION ? ExceptionContinueExecution : ExceptionContinueSearch;
}

// offsetof of a class with virtual functions is conditionally supported; all compilers of this interface do.
#pragma clang diagnostic ignored "-Winvalid-offsetof"

OrvBasThread::OrvBasThread()
{
    static_assert(offsetof(OrvBasThread, threadId_) == 16 && offsetof(OrvBasThread, ownStopEvent_) == 20);
    static_assert(offsetof(OrvBasThread, stopEvent_) == 36 && offsetof(OrvBasThread, flags_) == 40);
    static_assert(offsetof(OrvBasThread, initialized_) == 44);
}

OrvBasThread::~OrvBasThread() = default;

int OrvBasThread::Run()
{
    return 0;
}

void OrvBasThread::Cleanup() {}

OrvResult OrvBasThread::Initialize(OrvBasEvent *externalStopEvent)
{
    if (externalStopEvent)
        stopEvent_ = externalStopEvent;
    return PrepareStopEvent();
}

OrvResult OrvBasThread::PrepareStopEvent()
{
    if (stopEvent_ == &ownStopEvent_) {
        const OrvResult result = ownStopEvent_.IsInitialized()
                                     ? ownStopEvent_.Reset()
                                     : ownStopEvent_.Create(OrvBasEvent::ManualReset, false);
        if (OrvFailed(result))
            return result;
    }
    initialized_ = true;
    return ORV_S_OK;
}

bool OrvBasThread::IsInitialized() const
{
    return initialized_;
}

OrvResult OrvBasThread::StartThread(OrvPriority priority, OrvSecurityCtx *security,
                                    OrvFlags<ThreadFlag> flags, const char *name)
{
    if (GetResourceType() == OrvBasWaitableHandle && InternalWait(0) == ORV_W_TIMEOUT)
        return ORV_E_THREAD_RUNNING;
    flags_ = flags;
    OrvResult result = PrepareStopEvent();
    if (OrvFailed(result))
        return result;
    OrvWinSecurityDescriptor *descriptor = nullptr;
    if (security) {
        result = security->GetSecurityDescriptor(descriptor);
        if (OrvFailed(result))
            return result;
    }

    HANDLE thread = nullptr;
    CLIENT_ID clientId = {};
    NTSTATUS status =
        RtlCreateUserThread(NtCurrentProcess(), descriptor ? descriptor->GetNative() : nullptr, true, 0,
                            kMaximumStack, kCommittedStack, RealThreadProc, this, &thread, &clientId);
    if (!NT_SUCCESS(status))
        return detail::ResultFromStatus(status);
    AttachHandle(thread);
    threadId_ = reinterpret_cast<uintptr_t>(clientId.UniqueThread);

    result = SetPriority(thread, priority);
    detail::RegisterWithSubsystem(thread, clientId);
    if (!flags.Has(ThreadStartsSuspended)) {
        status = ZwResumeThread(thread, nullptr);
        if (!NT_SUCCESS(status)) {
            WaitUntilItHalts(thread);
            ZwTerminateThread(thread, 0);
            Destroy();
            return detail::ResultFromStatus(status);
        }
    }
    // From here on no member is used: the thread may have ended, and its Cleanup may have deleted this
    // object.
    if (name)
        SetThreadName(reinterpret_cast<uintptr_t>(clientId.UniqueThread), name);
    return result;
}

unsigned long __stdcall OrvBasThread::RealThreadProc(void *thread)
{
    auto *const self = static_cast<OrvBasThread *>(thread);
    const bool announced = !self->flags_.Has(ThreadEndsUnannounced);
    detail::EnsureThreadRecord(); // already done if the loader attached the library
    SetUpThread(self->flags_);
    int exitCode = 0;
    {
        const detail::ExceptionFrame frame(OrvUnhandledInRun);
        exitCode = self->Run();
    }
    detail::RemoveThreadRecord();
    if (!announced)
        FreeExpansionSlots();
    self->Cleanup(); // may delete the object
    EndThread(exitCode, announced);
    return 0;
}

OrvResult OrvBasThread::StopThread(int timeoutMs)
{
    if (GetResourceType() != OrvBasWaitableHandle)
        return ORV_S_OK;
    const OrvResult result = SetStopRequest();
    return OrvFailed(result) ? result : InternalWait(timeoutMs);
}

OrvResult OrvBasThread::WaitForThreadToStop(int timeoutMs)
{
    return GetResourceType() != OrvBasWaitableHandle ? ORV_S_OK : InternalWait(timeoutMs);
}

OrvResult OrvBasThread::GetThreadState(ThreadState &state)
{
    if (GetResourceType() != OrvBasWaitableHandle) {
        state = ThreadNotStarted;
        return ORV_S_OK;
    }
    int exitCode = 0;
    const OrvResult result = GetThreadExitCode(exitCode);
    if (OrvFailed(result) && result != ORV_W_STILL_ACTIVE)
        return result;
    state = OrvFailed(result) ? ThreadRunning : ThreadEnded;
    return ORV_S_OK;
}

OrvResult OrvBasThread::GetThreadExitCode(int &exitCode)
{
    THREAD_BASIC_INFORMATION information = {};
    const OrvResult result = QueryThread(GetHandle(), information);
    if (OrvFailed(result))
        return result;
    if (information.ExitStatus == STATUS_PENDING)
        return ORV_W_STILL_ACTIVE;
    exitCode = information.ExitStatus;
    return ORV_S_OK;
}

OrvResult OrvBasThread::ResumeThread()
{
    return detail::ResultFromCall(ZwResumeThread(GetHandle(), nullptr));
}

OrvResult OrvBasThread::SuspendThread()
{
    return detail::ResultFromCall(ZwSuspendThread(GetHandle(), nullptr));
}

OrvResult OrvBasThread::ForcefullyTerminate(int exitCode)
{
    if (threadId_ == GetCurrentThreadId())
        return ORV_E_INVALID_OPERATION; // the thread would suspend itself for ever
    constexpr ACCESS_MASK kToTerminate =
        SYNCHRONIZE | THREAD_TERMINATE | THREAD_SUSPEND_RESUME | THREAD_QUERY_INFORMATION;
    detail::NativeHandle thread;
    const NTSTATUS status = OpenThread(threadId_, kToTerminate, *thread.Receive());
    if (!NT_SUCCESS(status)) // an ended thread may have lost its id
        return HasEnded(GetHandle()) ? ORV_S_OK : detail::ResultFromStatus(status);
    return SuspendAndTerminate(thread.Get(), threadId_, exitCode);
}

OrvBasEvent *OrvBasThread::GetThreadStopRequestEvent()
{
    return stopEvent_;
}

OrvResult OrvBasThread::SetStopRequest()
{
    return stopEvent_->Set();
}

OrvResult OrvBasThread::ClearStopRequest()
{
    return stopEvent_->Reset();
}

OrvResult OrvBasThread::WaitForStopRequest(int timeoutMs)
{
    return stopEvent_->InternalWait(timeoutMs);
}

bool OrvBasThread::IsStopRequested()
{
    // A wait for an event that was never created succeeds, but then nobody can have requested the stop.
    return initialized_ && WaitForStopRequest(0) != ORV_W_TIMEOUT;
}

unsigned long OrvBasThread::GetId() const
{
    return threadId_;
}

unsigned long OrvBasThread::GetCurrentThreadId()
{
    return CurrentThreadId();
}

void OrvBasThread::SetCurrentThreadName(const char *name)
{
    SetThreadName(GetCurrentThreadId(), name);
}

void OrvBasThread::SetThreadName(unsigned long threadId, const char *name)
{
    if (!name)
        return;
    const ThreadNameInformation information = {kThreadNameType, name, threadId, 0};
    EXCEPTION_RECORD record = {};
    record.ExceptionCode = MS_VC_EXCEPTION;
    record.NumberParameters = sizeof information / sizeof(ULONG);
    memcpy(record.ExceptionInformation, &information, sizeof information);
    const detail::ExceptionFrame frame(OrvIgnoreThreadName);
    RtlRaiseException(&record);
}

void OrvBasThread::Sleep(int timeMs)
{
    constexpr LONGLONG kIntervalsPerMs = 10000;
    constexpr LONGLONG kForever = INT64_MIN;
    const LONGLONG interval = timeMs == -1 ? kForever : -(kIntervalsPerMs * static_cast<uint32_t>(timeMs));
    ZwDelayExecution(false, &interval);
}

void OrvBasThread::SetSubsystemRegistration(bool enabled)
{
    detail::EnableSubsystemRegistration(enabled);
}

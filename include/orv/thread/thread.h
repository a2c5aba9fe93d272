// A thread: derive from OrvBasThread, do the work in Run, start it.
//
//     class Poller final : public OrvBasThread
//     {
//         int Run() override
//         {
//             while (WaitForStopRequest(1000) == ORV_W_TIMEOUT) // once a second, until it is asked to stop
//                 Poll();
//             return 0;
//         }
//     };
//
//     Poller poller;
//     OrvResult result = poller.StartThread(OrvPriorityNormal, nullptr, {}, "poller");
//     if (OrvSucceeded(result))
//         result = poller.StopThread(-1); // before `poller` is gone
//
// The thread object is a waitable whose handle is the thread's, so waiting on it waits for the thread's end.
// It has an event by which others ask the thread to stop; only the thread's own code looks at it. An object
// goes from not started to running to ended, and may then be started again.
//
// The object must outlive its thread up to the return of Cleanup. Its destructor closes the handle and stops
// nothing: stop the thread and wait for its end before the derived class is destroyed. Asking to stop,
// waiting and querying may be done by any number of threads at once; Initialize, StartThread and Destroy must
// not race with them.

#pragma once

#include "orv/flags.h"
#include "orv/security/security_context.h"
#include "orv/sync/event.h"
#include "orv/sync/waitable.h"

/// How urgent a thread is, from -20 to 19. Only the named values have an effect; any other means an increment
/// of 0.
enum OrvPriority : int32_t {
    OrvPriorityTimeCritical = -20,
    OrvPriorityHighest = -10,
    OrvPriorityNormal = 0, ///< left as the platform makes it
    OrvPriorityLowest = 10,
    OrvPriorityIdle = 19,
};

/// One thread at a time, and the way to ask it to stop.
class OrvBasThread : public OrvBasWaitable
{
public:
    /// How a thread starts, runs and ends; they combine.
    enum ThreadFlag : uint32_t {
        /// The thread's reads and writes wait for all others, as in the background mode of the platform. Does
        /// nothing on systems without I/O priorities.
        ThreadVeryLowIoPriority = 0x1,
        /// The same, less strictly. ThreadVeryLowIoPriority wins when both are set.
        ThreadLowIoPriority = 0x2,
        /// The thread ends without telling the loader. So the loaded modules cannot free what they keep for
        /// it, and what the loader itself frees at the end of a thread is kept until the process ends: the
        /// blocks of the modules' `thread_local` variables, fiber-local values, whose callbacks are not
        /// called, and activation contexts. Its values of thread-local keys beyond the first 64 are gone
        /// before Cleanup.
        ThreadEndsUnannounced = 0x4,
        /// The thread waits for ResumeThread before it runs at all.
        ThreadStartsSuspended = 0x8,
    };

    /// The state of a thread.
    enum ThreadState : uint32_t {
        ThreadNotStarted = 1,
        ThreadRunning = 2,
        ThreadEnded = 3,
    };

    ORV_API OrvBasThread();

    /// Closes the handle; a running thread continues to run.
    ORV_API ~OrvBasThread() override;

protected:
    /// The thread's work. Its result is the thread's exit code; STILL_ACTIVE (259) cannot be distinguished
    /// from a running thread. An exception that Run does not handle is handled by the system as any unhandled
    /// exception. The base class does nothing and returns 0.
    ORV_API virtual int Run();

    /// Called on the thread after Run, as the last use of the object, which may delete itself here. The base
    /// class does nothing.
    ORV_API virtual void Cleanup();

public:
    /// Prepares the stop request before the first start. From then on `externalStopEvent`, which must outlive
    /// its use here, carries the request. When it is null, the event that was used so far stays in use; if
    /// that is the object's own event, it is created or reset.
    ///
    /// Returns 0; otherwise the converted status of creating or resetting the own event.
    ORV_API OrvResult Initialize(OrvBasEvent *externalStopEvent);

    /// Whether Initialize or StartThread has prepared the stop request. This hides the operation of the base
    /// class; GetThreadState tells whether there is a thread.
    ORV_API bool IsInitialized() const;

    /// Starts a thread that calls Run, then Cleanup, then ends. Its stack grows up to 1 MB. The object's own
    /// stop event is created or reset; an external one is left as it is.
    ///
    /// `security` describes the thread object, null for the platform's default; `name` (terminated, null for
    /// none) is for debuggers, as by SetThreadName.
    ///
    /// Returns 0; the failure to set the priority, but with the severity informational: the thread then runs,
    /// with the platform's priority; ORV_E_THREAD_RUNNING when the last thread has not ended; otherwise a
    /// failure of the stop event, of the security context, or the converted status of creating or resuming
    /// the thread. On failure no new thread exists; the old handle is kept, except when the thread could not
    /// be resumed.
    ORV_API OrvResult StartThread(OrvPriority priority, OrvSecurityCtx *security, OrvFlags<ThreadFlag> flags,
                                  const char *name);

    /// Asks the thread to stop and waits for its end, for at most `timeoutMs` milliseconds, -1 for ever.
    ///
    /// Returns 0 when it ended, and at once when none was started; ORV_W_TIMEOUT; otherwise a failure to
    /// signal or to wait.
    ORV_API OrvResult StopThread(int timeoutMs);

    /// Waits for the thread's end, for at most `timeoutMs` milliseconds, -1 for ever. Returns as StopThread.
    ORV_API OrvResult WaitForThreadToStop(int timeoutMs);

    /// Returns 0; otherwise the converted status of the query, and `state` is untouched.
    ORV_API OrvResult GetThreadState(ThreadState &state);

    /// Returns 0; ORV_W_STILL_ACTIVE while the thread runs; otherwise the converted status:
    /// ORV_E_INVALID_HANDLE when none was started. On failure `exitCode` is untouched.
    ORV_API OrvResult GetThreadExitCode(int &exitCode);

    /// Undoes one SuspendThread, or starts a thread that was created suspended. Does nothing to a thread that
    /// runs.
    ///
    /// Returns 0 or the converted status: ORV_E_INVALID_HANDLE when none was started.
    ORV_API OrvResult ResumeThread();

    /// Halts the thread wherever it is, until it was resumed as often as suspended. It may hold locks at that
    /// point.
    ///
    /// Returns 0 or the converted status: ORV_E_INVALID_HANDLE when none was started.
    ORV_API OrvResult SuspendThread();

    /// Ends the thread wherever it is: none of its code runs any more. This harms the process: the locks that
    /// the thread holds are never released, even those of the heap and the loader; what it owns is lost; as
    /// with ThreadEndsUnannounced the loader is not told; and there are platforms where the address space of
    /// its stack, up to 1 MB, is lost too. The thread is looked up by its id, so this works after Destroy
    /// too; once the thread has ended and its last handle is closed, the id may belong to another thread.
    ///
    /// Returns 0 when the thread has ended, also when it had ended before; also 0 when the platform refuses
    /// to tell whether it has ended, and then it runs on: GetThreadState tells; ORV_E_INVALID_OPERATION when
    /// it is the calling thread, which can end itself by other means; otherwise the converted status:
    /// ORV_E_INVALID_ARGUMENT when there is no such thread.
    ORV_API OrvResult ForcefullyTerminate(int exitCode);

    /// The stop request in use.
    ORV_API OrvBasEvent *GetThreadStopRequestEvent();

    /// Asks the thread to stop. Returns as OrvBasEvent::Set: ORV_E_INVALID_HANDLE when the object's own event
    /// was never prepared.
    ORV_API OrvResult SetStopRequest();

    /// Withdraws the request. Returns as SetStopRequest.
    ORV_API OrvResult ClearStopRequest();

    /// Waits for a request, for at most `timeoutMs` milliseconds, -1 for ever. Returns as
    /// OrvBasWaitable::InternalWait; the object's own event counts as signalled when it was never prepared.
    ORV_API OrvResult WaitForStopRequest(int timeoutMs);

    /// Whether the thread is asked to stop, which means that a wait of 0 ms does not time out. False before
    /// Initialize and StartThread.
    ORV_API bool IsStopRequested();

    /// The id of the thread started last; 0 before.
    ORV_API unsigned long GetId() const;

    /// The id of the calling thread.
    ORV_API static unsigned long GetCurrentThreadId();

    /// SetThreadName for the calling thread.
    ORV_API static void SetCurrentThreadName(const char *name);

    /// Tells an attached debugger the thread's name (terminated). Nothing happens without a debugger, or when
    /// the name is null.
    ORV_API static void SetThreadName(unsigned long threadId, const char *name);

    /// Sleeps for `timeMs` milliseconds, for ever with -1; any other negative number is read as unsigned. 0
    /// gives the rest of the time slice to other threads.
    ORV_API static void Sleep(int timeMs);

    /// Whether StartThread announces new threads to the Windows subsystem server, on systems before Windows 8
    /// that take announcements. It is off at first: only threads that use the server themselves need it.
    /// Under WOW64 on Windows XP and Windows Server 2003 threads are always announced.
    ORV_API static void SetSubsystemRegistration(bool enabled);

    /// The function that the platform calls on the new thread, with the object. It does not return.
    ORV_API static unsigned long __stdcall RealThreadProc(void *thread);

private:
    OrvResult PrepareStopEvent();

    unsigned long threadId_ = 0;
    OrvBasEvent ownStopEvent_;
    OrvBasEvent *stopEvent_ = &ownStopEvent_;
    OrvFlags<ThreadFlag> flags_;
    bool initialized_ = false;
};

static_assert(sizeof(OrvBasThread) == 48, "fixed layout");

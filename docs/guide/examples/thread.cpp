#include "orv/orv.h"

namespace
{

class Poller final : public OrvBasThread
{
public:
    Poller(OrvBasEvent &started, OrvTls &perThread) : started_(started), perThread_(perThread) {}

    uint32_t GetRounds() const { return rounds_; }

protected:
    /// Works until another thread asks it to stop: the wait for the request is the pause between two rounds.
    int Run() override
    {
        perThread_.SetValue(&rounds_);
        do {
            ++*static_cast<uint32_t *>(perThread_.GetValue());
            started_.Set();
        } while (WaitForStopRequest(1) == ORV_W_TIMEOUT);
        return 42;
    }

private:
    OrvBasEvent &started_;
    OrvTls &perThread_;
    uint32_t rounds_ = 0;
};

} // namespace

int OrvMain(int, wchar_t **)
{
    OrvBasEvent started;
    OrvTls perThread; // one value for each thread
    OrvResult result = perThread.Create();
    if (OrvSucceeded(result))
        result = started.Create(OrvBasEvent::ManualReset, false);
    Poller poller(started, perThread);
    if (OrvSucceeded(result))
        result = poller.StartThread(OrvPriorityNormal, nullptr, {}, "poller");
    if (OrvFailed(result))
        return 1;
    started.Wait(-1);
    int exitCode = 0;
    OrvPrint(L"running: %08X\n", poller.GetThreadExitCode(exitCode));

    // Ask, wait for the end, and only then destroy the object: its destructor stops nothing.
    result = poller.StopThread(-1);
    if (OrvSucceeded(result))
        result = poller.GetThreadExitCode(exitCode);
    OrvPrint(L"ended: %08X, exit code %d, at least one round: %s\n", result, exitCode,
             poller.GetRounds() > 0 ? L"yes" : L"no");
    OrvPrint(L"the value of this thread is null: %s\n", perThread.GetValue() ? L"no" : L"yes");
    return OrvFailed(result) ? 1 : 0;
}

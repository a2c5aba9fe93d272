// The stacks of threads on systems before Windows Vista, which leave them to those who end the threads.

#include "harness/replace.h"
#include "harness/test.h"
#include "harness/thread.h"
#include "nt/teb.h"
#include "orv/orv.h"

namespace
{

constexpr const wchar_t *kNtdll = L"ntdll.dll";

struct Worker : OrvBasThread {
    int Run() override
    {
        runs = true;
        if (waits)
            WaitForStopRequest(-1);
        return 0;
    }
    bool waits = false;
    volatile bool runs = false;
};

volatile bool mayEnd;
volatile uint32_t seen; ///< 1 a thread that ends itself keeps its stack, 2 it gives it back

NTSTATUS NTAPI WatchEnd(HANDLE, NTSTATUS)
{
    seen = 1 + NtCurrentTeb()->FreeStackOnTermination;
    while (!mayEnd)
        test::Sleep(0);
    return ZwTerminateThread(NtCurrentThread(), 0); // the platform's again
}

const void *freedFrom;
ULONG freedSize;

NTSTATUS NTAPI WatchFree(HANDLE, PVOID *base, ULONG *size, ULONG)
{
    freedFrom = *base;
    freedSize = *size;
    return STATUS_SUCCESS;
}

} // namespace

TEST_CASE(OldSystemsAreAskedForTheWholeStack)
{
    const struct {
        uint32_t major, minor;
        bool leavesStacks;
    } cases[] = {{0, 0, false}, {5, 0, true}, {5, 2, true}, {6, 0, false}, {10, 0, false}};
    for (const auto &c : cases) {
        test::Note("major", c.major);
        OrvEnvironment::OsInfo::Initialize({c.major, c.minor, 0, 0, 0, 0, {}, {}}, L"");
        for (uint32_t unannounced = 0; unannounced < 2; unannounced++) {
            OrvNtdllTableDestroy(); // the platform's way to end a thread would set the mark by itself
            Worker ending;
            seen = 0;
            mayEnd = false;
            {
                const test::ReplacedFunction watched(kNtdll, "ZwTerminateThread", WatchEnd);
                CHECK_EQUAL(ending.StartThread(OrvPriorityNormal, nullptr,
                                               OrvFlags<OrvBasThread::ThreadFlag>(
                                                   unannounced * OrvBasThread::ThreadEndsUnannounced),
                                               nullptr),
                            ORV_S_OK);
                CHECK(test::Eventually([] { return seen != 0; }));
            }
            mayEnd = true;
            CHECK_EQUAL(ending.WaitForThreadToStop(-1), ORV_S_OK);
            CHECK_EQUAL(seen, c.leavesStacks ? 2u : 1u);
        }

        Worker victim;
        victim.waits = true;
        CHECK_EQUAL(victim.StartThread(OrvPriorityNormal, nullptr, {}, nullptr), ORV_S_OK);
        CHECK(test::Eventually([&victim] { return victim.runs; }));
        THREAD_BASIC_INFORMATION information = {};
        CHECK_EQUAL(ZwQueryInformationThread(victim.GetHandle(), ThreadBasicInformation, &information,
                                             sizeof information, nullptr),
                    0);
        const TEB &teb = *information.TebBaseAddress;
        const void *const bottom = teb.DeallocationStack;
        const auto *const top = static_cast<const uint8_t *>(teb.StackBase);
        {
            const test::ReplacedFunction watched(kNtdll, "ZwFreeVirtualMemory", WatchFree);
            CHECK_EQUAL(victim.ForcefullyTerminate(1), ORV_S_OK);
        }
        CHECK_EQUAL(freedFrom == bottom, c.leavesStacks);
        const auto whole = static_cast<ULONG>(top - static_cast<const uint8_t *>(freedFrom));
        CHECK_EQUAL(freedSize, c.leavesStacks ? 0u : whole);
    }
    OrvEnvironment::OsInfo::Initialize({}, L"");
}

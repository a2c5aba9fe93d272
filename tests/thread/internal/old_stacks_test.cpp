// The stacks of threads on systems before Windows Vista, which leave them to those who end the threads.

#include "harness/replace.h"
#include "orv/orv.h"
#include "thread/worker.h"

namespace
{

constexpr const wchar_t *kNtdll = L"ntdll.dll";

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
    for (const auto &c : test::Rows(cases)) {
        OrvEnvironment::OsInfo::Initialize({c.major, c.minor, 0, 0, 0, 0, {}, {}}, L"");
        for (uint32_t unannounced = 0; unannounced < 2; unannounced++) {
            OrvNtdllTableDestroy(); // the platform's way to end a thread would set the mark by itself
            Worker ending;
            seen = 0;
            mayEnd = false;
            {
                const test::ReplacedFunction watched(kNtdll, "ZwTerminateThread", WatchEnd);
                CHECK_EQUAL(ending.Start(unannounced * OrvBasThread::ThreadEndsUnannounced), ORV_S_OK);
                CHECK(test::Eventually([] { return seen != 0; }));
            }
            mayEnd = true;
            CHECK_EQUAL(ending.WaitForThreadToStop(-1), ORV_S_OK);
            CHECK_EQUAL(seen, c.leavesStacks ? 2u : 1u);
        }

        Worker victim;
        victim.StartAndWait();
        {
            const test::ReplacedFunction watched(kNtdll, "ZwFreeVirtualMemory", WatchFree);
            CHECK_EQUAL(victim.ForcefullyTerminate(1), ORV_S_OK);
        }
        CHECK_EQUAL(freedFrom == victim.stackBottom, c.leavesStacks);
        const auto whole =
            reinterpret_cast<uintptr_t>(victim.stackBase) - reinterpret_cast<uintptr_t>(freedFrom);
        CHECK_EQUAL(freedSize, c.leavesStacks ? 0u : whole);
    }
    OrvEnvironment::OsInfo::Initialize({}, L"");
}

// The reader/writer lock over a file, between objects of one process; tools/test_orvtool.sh and the demo show
// it between processes.

#include "orv/fs/lock_file_resource.h"

#include "fs/test_file.h"
#include "harness/replace.h"
#include "harness/thread.h"
#include "orv/runtime/result.h"

namespace
{

constexpr wchar_t kFile[] = L"C:\\windows\\temp\\orv-lock-resource-test.tmp";

uint32_t StateOf(const OrvBasWinLockFileResource &resource)
{
    return reinterpret_cast<const uint32_t *>(&resource)[1];
}

OrvResult Acquire(OrvBasWinLockFileResource &resource, bool exclusive, int timeoutMs)
{
    return exclusive ? resource.AcquireExclusive(timeoutMs) : resource.AcquireShared(timeoutMs);
}

} // namespace

TEST_CASE(ReadersShareAndWritersDoNot)
{
    const TestFile file(kFile);
    for (uint32_t i = 0; i < 8; i++) {
        test::Note("bits", i);
        const bool firstExclusive = i & 1, secondExclusive = i & 2;
        const int timeoutMs = i & 4 ? 20 : 0;
        const bool excluded = firstExclusive || secondExclusive;
        OrvBasWinLockFileResource first, second;
        CHECK_EQUAL(first.Open(kFile, true), ORV_S_OK);
        CHECK_EQUAL(second.OpenOrCreate(kFile, nullptr, true), ORV_S_OK);
        CHECK_EQUAL(StateOf(second), 1u);
        CHECK_EQUAL(Acquire(first, firstExclusive, 0), ORV_S_OK);
        CHECK_EQUAL(StateOf(first), firstExclusive ? 3u : 2u);
        CHECK_EQUAL(Acquire(second, secondExclusive, timeoutMs), excluded ? ORV_W_TIMEOUT : ORV_S_OK);
        CHECK_EQUAL(StateOf(second), excluded ? 1u : 2u);
        CHECK_EQUAL(first.Release(), ORV_S_OK);
        CHECK_EQUAL(StateOf(first), 1u);
        if (excluded)
            CHECK_EQUAL(Acquire(second, secondExclusive, timeoutMs), ORV_S_OK);
        CHECK_EQUAL(second.Close(), ORV_S_OK); // gives the lock back as well
        CHECK_EQUAL(StateOf(second), 0u);
        CHECK_EQUAL(first.AcquireExclusive(0), ORV_S_OK);
    }
}

TEST_CASE(WaiterGetsTheFileWhenItIsReleased)
{
    const TestFile file(kFile);
    OrvBasWinLockFileResource holder, waiter;
    CHECK_EQUAL(holder.Open(kFile, true), ORV_S_OK);
    CHECK_EQUAL(waiter.Open(kFile, true), ORV_S_OK);
    CHECK_EQUAL(holder.AcquireExclusive(-1), ORV_S_OK);
    volatile bool released = false;
    auto work = [&] {
        CHECK_EQUAL(waiter.AcquireShared(-1), ORV_S_OK);
        CHECK(released);
    };
    test::Thread thread(work);
    test::Sleep(20); // most often it waits by now; the result must be the same when it does not
    released = true;
    CHECK_EQUAL(holder.Release(), ORV_S_OK);
    thread.Join();
}

TEST_CASE(RefusalsAreTimeoutsHoweverThePlatformSaysSo)
{
    const TestFile file(kFile);
    OrvBasWinLockFileResource resource;
    CHECK_EQUAL(resource.Open(kFile, true), ORV_S_OK);
    const ULONG refusals[] = {0xC0000055, 0xC0000054, 0xC0000120};
    for (const ULONG refusal : refusals) {
        const test::ReplacedFunction refuses(L"ntdll.dll", "NtLockFile", refusal, 40);
        CHECK_EQUAL(resource.AcquireExclusive(0), ORV_W_TIMEOUT);
        CHECK_EQUAL(StateOf(resource), 1u);
    }
}

TEST_CASE(WhatIsNotOpenOrNotLockedSaysSo)
{
    const TestFile file(kFile);
    OrvBasWinLockFileResource resource;
    CHECK_EQUAL(resource.AcquireExclusive(0), ORV_E_INVALID_HANDLE);
    CHECK_EQUAL(resource.AcquireShared(-1), ORV_E_INVALID_HANDLE);
    CHECK_EQUAL(resource.Release(), ORV_E_INVALID_HANDLE);
    CHECK_EQUAL(resource.Close(), ORV_S_OK);
    CHECK(!resource.IsInitialized());
    CHECK_EQUAL(resource.Open(kFile, false), ORV_S_OK);
    CHECK(OrvFailed(resource.Release()));
    CHECK(resource.IsInitialized());
    CHECK_EQUAL(resource.Open(L"C:\\windows\\temp\\orv-no-such-file.tmp", false), ORV_E_FILE_NOT_FOUND);
    CHECK(!resource.IsInitialized());
    CHECK_EQUAL(resource.OpenOrCreate(nullptr, nullptr, false), ORV_E_INVALID_ARGUMENT);
    CHECK_EQUAL(resource.OpenOrCreate(L"C:\\windows\\orv-no-such-folder\\x", nullptr, true),
                ORV_E_PATH_NOT_FOUND);
}

// The mutex of a file: shared by all who name the file, by whatever path.

#include "orv/fs/lock_file.h"

#include "fs/test_file.h"
#include "harness/thread.h"
#include "orv/runtime/result.h"

namespace
{

constexpr wchar_t kFile[] = L"C:\\windows\\temp\\orv-lock-file-test.tmp";
constexpr wchar_t kSameFile[] = L"C:/WINDOWS/temp/../Temp/orv-lock-file-test.tmp";
constexpr wchar_t kOtherFile[] = L"C:\\windows\\temp\\orv-lock-file-test-2.tmp";

/// What another thread is told when it tries to take the mutex, which it gives back at once.
OrvResult TryElsewhere(OrvBasWinLockFile &lockFile)
{
    OrvResult result = 0;
    auto work = [&] {
        result = lockFile.Acquire(0);
        if (OrvSucceeded(result))
            lockFile.Release();
    };
    test::Thread(work).Join();
    return result;
}

} // namespace

TEST_CASE(LockFilesOfOneFileExcludeEachOther)
{
    const TestFile file(kFile);
    const TestFile otherFile(kOtherFile);
    OrvBasWinLockFile first, second, other;
    CHECK_EQUAL(first.Close(), ORV_S_OK);
    CHECK_EQUAL(first.Create(kFile, true), ORV_S_OK);
    CHECK_EQUAL(second.Create(kSameFile, true), ORV_S_ALREADY_EXISTS);
    CHECK_EQUAL(other.Create(kOtherFile, false), ORV_S_OK);
    CHECK_EQUAL(TryElsewhere(second), ORV_W_TIMEOUT);
    CHECK_EQUAL(TryElsewhere(other), ORV_S_OK);
    CHECK_EQUAL(first.Release(), ORV_S_OK);
    CHECK_EQUAL(TryElsewhere(second), ORV_S_OK); // it was acquired once, though asked for twice
    CHECK_EQUAL(other.Create(kFile, false), ORV_S_ALREADY_EXISTS); // takes the place of the other file's

    void *const handle = first.GetHandle();
    CHECK_EQUAL(first.Create(L"C:\\windows\\temp\\orv-no-such-file.tmp", false), ORV_E_FILE_NOT_FOUND);
    CHECK_EQUAL(first.Create(nullptr, false), ORV_E_INVALID_ARGUMENT);
    CHECK_EQUAL(first.GetHandle(), handle);
    CHECK_EQUAL(first.Close(), ORV_S_OK);
    CHECK(!first.IsInitialized());
}

TEST_CASE(HolderReleasesTheOldLockFileAfterTakingTheNew)
{
    const TestFile file(kFile);
    const TestFile otherFile(kOtherFile);
    OrvBasWinLockFile a, b;
    CHECK_EQUAL(a.Create(kFile, false), ORV_S_OK);
    CHECK_EQUAL(b.Create(kOtherFile, false), ORV_S_OK);
    {
        OrvBasWinLockFileHolder holder(&a, 0);
        CHECK(holder.IsHeld());
        CHECK_EQUAL(TryElsewhere(a), ORV_W_TIMEOUT);
        CHECK_EQUAL(holder.Lock(&b, 0), ORV_S_OK);
        CHECK_EQUAL(TryElsewhere(a), ORV_S_OK);
        CHECK_EQUAL(TryElsewhere(b), ORV_W_TIMEOUT);
        CHECK_EQUAL(holder.Lock(nullptr, 0), ORV_E_INVALID_ARGUMENT);
        CHECK(!holder.IsHeld());
        CHECK_EQUAL(TryElsewhere(b), ORV_S_OK);
        CHECK_EQUAL(holder.Lock(&a, 0), ORV_S_OK);
    }
    CHECK_EQUAL(TryElsewhere(a), ORV_S_OK);
}

TEST_CASE(HolderThatWaitsInVainHoldsNothingAndOneThatEndsLeavesAWord)
{
    const TestFile file(kFile);
    OrvBasWinLockFile lockFile;
    CHECK_EQUAL(lockFile.Create(kFile, true), ORV_S_OK);
    OrvResult result = 0;
    bool constructed = true;
    auto work = [&] {
        OrvBasWinLockFileHolder holder(&lockFile, 0);
        constructed = holder.IsHeld();
        result = holder.Lock(&lockFile, 1);
    };
    test::Thread(work).Join();
    CHECK(!constructed);
    CHECK_EQUAL(result, ORV_W_TIMEOUT);
    CHECK_EQUAL(lockFile.Release(), ORV_S_OK);

    auto end = [&] { result = lockFile.Acquire(0); }; // without releasing, as one that is killed
    test::Thread(end).Join();
    CHECK_EQUAL(result, ORV_S_OK);
    OrvBasWinLockFileHolder heir(nullptr, 0);
    CHECK_EQUAL(heir.Lock(&lockFile, 0), ORV_S_ABANDONED);
    CHECK(heir.IsHeld());
    heir.Release();
    CHECK_EQUAL(TryElsewhere(lockFile), ORV_S_OK);
}

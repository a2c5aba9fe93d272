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
        CHECK_EQUAL(TryElsewhere(a), ORV_W_TIMEOUT);
        CHECK_EQUAL(holder.Lock(&b, 0), ORV_S_OK);
        CHECK_EQUAL(TryElsewhere(a), ORV_S_OK);
        CHECK_EQUAL(TryElsewhere(b), ORV_W_TIMEOUT);
    }
    CHECK_EQUAL(TryElsewhere(b), ORV_S_OK);

    OrvBasWinLockFileHolder heir(&a, 0);
    auto contend = [&] {
        OrvBasWinLockFileHolder other(&a, 0);
        CHECK(!other.IsHeld());
        CHECK_EQUAL(other.Lock(&a, 1), ORV_W_TIMEOUT);
    };
    test::Thread(contend).Join();
    heir.Release();
    auto end = [&] { CHECK_EQUAL(a.Acquire(0), ORV_S_OK); }; // without releasing, as one that is killed
    test::Thread(end).Join();
    CHECK_EQUAL(heir.Lock(&a, 0), ORV_S_ABANDONED);
    CHECK(heir.IsHeld());
    CHECK_EQUAL(heir.Lock(nullptr, 0), ORV_E_INVALID_ARGUMENT);
    CHECK(!heir.IsHeld());
    CHECK_EQUAL(TryElsewhere(a), ORV_S_OK);
}

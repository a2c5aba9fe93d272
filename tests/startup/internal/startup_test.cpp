// Start-up step by step: what happens in which order, and what is left when a step fails.

#include "startup/startup.h"

#include "harness/replace.h"
#include "harness/test.h"
#include "harness/thread.h"
#include "harness/usage.h"
#include "nt/counted_string.h"
#include "nt/teb.h"
#include "orv/env/machine_info.h"
#include "orv/orv.h"
#include "thread/thread_record.h"

namespace
{

/// Asks in the only way there is: the first start-up fills the table, later ones do nothing.
bool NothingIsStarted()
{
    OrvNtdllTableDestroy();
    InternalInitializeOrvSysDll();
    const bool filled = OrvNtdllIsTableInitialized();
    InternalDestroyOrvSysDll();
    OrvNtdllTableInitialize();
    return filled;
}

uint32_t TakenTlsKeys()
{
    const PEB &peb = *NtCurrentPeb();
    const RTL_BITMAP *const bitmaps[] = {peb.TlsBitmap, peb.TlsExpansionBitmap};
    uint32_t taken = 0;
    for (const RTL_BITMAP *bitmap : bitmaps) {
        for (uint32_t i = 0; i < bitmap->SizeOfBitMap; i++)
            taken += bitmap->Buffer[i / 32] >> i % 32 & 1;
    }
    return taken;
}

// The runtime's work, which writes down what it finds: whether the thread has a record.
char events[16];
uint32_t eventCount;
OrvResult attachResult;

void Write(char withRecord, char withoutRecord)
{
    events[eventCount++] = detail::GetThreadData() ? withRecord : withoutRecord;
    events[eventCount] = 0;
}

constexpr detail::RuntimeWork kRuntime = {
    [] { return Write('A', 'a'), attachResult; },
    [] { Write('T', 't'); },
    [] { Write('U', 'u'); },
    [] { Write('D', 'd'); },
    [] { Write('E', 'e'); },
};

constexpr const wchar_t *kNtdll = L"ntdll.dll";

volatile bool isStartingUp, mayStartUp;

NTSTATUS NTAPI StayInStartUp(ULONG, PVOID, ULONG, ULONG *)
{
    isStartingUp = true;
    while (!mayStartUp)
        test::Sleep(1);
    return STATUS_UNSUCCESSFUL;
}

uint32_t pebLocks;

void NTAPI CountPebLock()
{
    pebLocks++;
}

/// This program is linked without the DLL, so it is truly loaded and unloaded.
NTSTATUS LoadTheDll(PVOID &module)
{
    const UNICODE_STRING name = detail::CountedLiteral(L"orvsys.dll");
    return LdrLoadDll(nullptr, nullptr, &name, &module);
}

} // namespace

TEST_CASE(AttachingAndDetachingGoInOrder)
{
    eventCount = 0;
    const test::Usage before = test::CountUsage();
    const uint32_t keys = TakenTlsKeys();
    detail::DetachProcess(kRuntime, detail::Detaching::kModule); // never attached
    CHECK_EQUAL(detail::AttachProcess(kRuntime), ORV_S_OK);
    CHECK_EQUAL(TakenTlsKeys(), keys + 1);
    CHECK_EQUAL(detail::GetThreadData()->threadId, OrvBasThread::GetCurrentThreadId());
    uint32_t blocks[3] = {};
    auto visit = [&] {
        blocks[0] = test::CountUsage().blocks;
        detail::AttachThread(kRuntime);
        detail::AttachThread(kRuntime); // has its record
        blocks[1] = test::CountUsage().blocks;
        detail::DetachThread(kRuntime);
        detail::DetachThread(kRuntime);
        blocks[2] = test::CountUsage().blocks;
    };
    auto outlive = [&visit] {
        detail::AttachThread(kRuntime);
        test::Thread(visit).Join();
        detail::DetachThread(kRuntime);
    };
    test::Thread(outlive).Join();
    CHECK(blocks[1] == blocks[0] + 1 && blocks[2] == blocks[0]);
    auto stay = [] { detail::AttachThread(kRuntime); }; // and end without a word
    test::Thread(stay).Join();
    test::Thread(visit).Join(); // its record goes from among those that stay
    detail::DetachProcess(kRuntime, detail::Detaching::kModule);
    detail::DetachProcess(kRuntime, detail::Detaching::kModule);
    CHECK_TEXT(events, "ATTTUuUTTTUuDe");
    CHECK_USAGE(before);
    CHECK_EQUAL(TakenTlsKeys(), keys);
    CHECK(NothingIsStarted());
}

TEST_CASE(EndOfProcessWaitsForNobody)
{
    eventCount = 0;
    CHECK_EQUAL(detail::AttachProcess(kRuntime), ORV_S_OK);
    InternalDestroyOrvSysDll(); // so that the next start-up has work to do
    isStartingUp = false;
    mayStartUp = false;
    volatile bool hasEnded = false;
    const test::ReplacedFunction stays(kNtdll, "ZwQuerySystemInformation", StayInStartUp);
    auto startUp = [] { InternalInitializeOrvSysDll(); };
    test::Thread starting(startUp);
    CHECK(test::Eventually([] { return isStartingUp; })); // and it holds the lock, as if it were gone
    auto end = [&hasEnded] {
        detail::DetachProcess(kRuntime, detail::Detaching::kProcess);
        hasEnded = true;
    };
    test::Thread ending(end);
    CHECK(test::Eventually([&hasEnded] { return hasEnded; }));
    CHECK_TEXT(events, "Ade");
    mayStartUp = true;
    starting.Join();
    ending.Join();
    detail::FreeThreadRecordKey(); // as nobody else does
    detail::DeleteThreadRecordList();
    InternalDestroyOrvSysDll();
}

TEST_CASE(FailedAttachLeavesNothing)
{
    OrvNtdllTableDestroy();
    struct {
        const char *function; ///< that gives this answer
        ULONG answer;
        USHORT argumentBytes;
        uint32_t result;
        const char *events;
    } const cases[] = {
        {"LdrLoadDll", 0xC0000022, 16, 0xE0010058, ""},
        {"RtlGetNativeSystemInformation", 0xC0000002, 16, 0xE0010056, ""},
        {"RtlInitializeCriticalSection", 0xC0000017, 4, 0xC0070008, ""},
        {"RtlFindClearBitsAndSet", 0xFFFFFFFF, 12, 0xC00705AA, ""},
        {"RtlAllocateHeap", 0, 12, 0xE0010001, ""},
        {"RtlGetNativeSystemInformation", 0, 16, 0xE0010020, "Ae"}, // the runtime's own work fails
        {"RtlGetNativeSystemInformation", 0, 16, 0, "ADe"},         // and nothing at all
    };
    const uint32_t keys = TakenTlsKeys();
    for (const auto &c : test::Rows(cases)) {
        eventCount = 0;
        events[0] = 0;
        attachResult = *c.events ? static_cast<OrvResult>(c.result) : 0;
        const test::Usage before = test::CountUsage();
        OrvResult result = 0;
        {
            const test::ReplacedFunction fails(kNtdll, c.function, c.answer, c.argumentBytes);
            result = detail::AttachProcess(kRuntime);
        }
        CHECK_EQUAL(static_cast<uint32_t>(result), c.result);
        detail::DetachProcess(kRuntime, detail::Detaching::kModule); // does nothing unless attached
        CHECK_TEXT(events, c.events);
        CHECK_USAGE(before);
        CHECK_EQUAL(TakenTlsKeys(), keys);
        CHECK_EQUAL(detail::GetThreadData(), nullptr);
        CHECK(NothingIsStarted());
    }
}

TEST_CASE(BlocksThatAreMissingAreNoticed)
{
    TEB *const teb = NtCurrentTeb();
    PEB *const peb = teb->ProcessEnvironmentBlock;
    CHECK(NothingIsStarted()); // and so the tables are filled
    teb->ProcessEnvironmentBlock = nullptr;
    const OrvResult withoutPeb = InternalInitializeOrvSysDll();
    teb->ProcessEnvironmentBlock = peb;
    CHECK_EQUAL(withoutPeb, ORV_E_OBJECT_NOT_FOUND);
    CHECK(!NothingIsStarted()); // a failed start-up counts
    InternalDestroyOrvSysDll();
    InternalDestroyOrvSysDll();

    RTL_USER_PROCESS_PARAMETERS *const parameters = peb->ProcessParameters;
    peb->ProcessParameters = nullptr;
    const OrvResult withoutParameters = OrvInitializeSysMini();
    peb->ProcessParameters = parameters;
    CHECK_EQUAL(withoutParameters, ORV_E_OBJECT_NOT_FOUND);
    CHECK(NothingIsStarted());
    CHECK_EQUAL(OrvInitializeSysMini(), ORV_S_OK);
    CHECK(!NothingIsStarted());
    OrvDestroySysMini();
    CHECK(NothingIsStarted());
}

TEST_CASE(TheDllComesAndGoes)
{
    const auto load = [] {
        PVOID module = nullptr;
        const NTSTATUS status = LoadTheDll(module);
        if (NT_SUCCESS(status)) {
            auto idle = [] {}; // attached and detached
            test::Thread(idle).Join();
            LdrUnloadDll(module);
        }
        return status;
    };
    CHECK_EQUAL(load(), 0); // what the loader keeps of the first time stays
    const test::Usage before = test::CountUsage();
    const uint32_t keys = TakenTlsKeys();
    for (uint32_t i = 0; i < 20; i++)
        CHECK_EQUAL(load(), 0);
    {
        const test::ReplacedFunction fails(kNtdll, "RtlGetNativeSystemInformation", 0xC0000022, 16);
        CHECK_EQUAL(load(), static_cast<NTSTATUS>(0xC0000142)); // STATUS_DLL_INIT_FAILED
    }
    CHECK_USAGE(before);
    CHECK_EQUAL(TakenTlsKeys(), keys);
}

TEST_CASE(TheDllKnowsTheEndOfTheProcess)
{
    constexpr uint32_t kHeadersField = 0x3C;
    constexpr uint32_t kEntryField = 0x28;
    constexpr ULONG kProcessDetach = 0;
    for (uint32_t isProcess = 0; isProcess < 2; isProcess++) {
        PVOID module = nullptr;
        CHECK_EQUAL(LoadTheDll(module), 0);
        auto *const base = static_cast<uint8_t *>(module);
        const auto fieldAt = [base](uint32_t offset) { return *reinterpret_cast<uint32_t *>(base + offset); };
        const auto entry = reinterpret_cast<BOOL(NTAPI *)(PVOID, ULONG, uint32_t)>(
            base + fieldAt(fieldAt(kHeadersField) + kEntryField));
        pebLocks = 0;
        {
            const test::ReplacedFunction acquires(kNtdll, "RtlAcquirePebLock", CountPebLock);
            const test::ReplacedFunction releases(kNtdll, "RtlReleasePebLock", CountPebLock);
            CHECK(entry(module, kProcessDetach, isProcess));
        }
        CHECK_EQUAL(pebLocks != 0, !isProcess);
        LdrUnloadDll(module); // finds itself detached
    }
}

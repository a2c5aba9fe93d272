// Thread-local keys: among those of the platform, empty when they are new, refused in order.

#include "orv/thread/tls.h"

#include "harness/memory.h"
#include "harness/replace.h"
#include "harness/test.h"
#include "harness/thread.h"
#include "harness/usage.h"
#include "nt/teb.h"
#include "orv/runtime/result.h"
#include "orv/thread/thread.h"

namespace
{

constexpr uint32_t kAllKeys = TLS_MINIMUM_AVAILABLE + TLS_EXPANSION_SLOTS;

ULONG(NTAPI *TlsAlloc)();
BOOL(NTAPI *TlsFree)(ULONG key);
BOOL(NTAPI *TlsSetValue)(ULONG key, PVOID value);
PVOID(NTAPI *TlsGetValue)(ULONG key);

template <typename Function>
void Find(const char *name, Function *&function)
{
    function = reinterpret_cast<Function *>(test::FindFunction(L"kernel32.dll", name));
}

PVOID Value(uint32_t number)
{
    return reinterpret_cast<PVOID>(uintptr_t{number} + 1);
}

[[clang::no_destroy]] OrvTls keys[kAllKeys];

/// Takes every key that is left, and returns how many there were.
uint32_t TakeAll()
{
    uint32_t count = 0;
    while (OrvSucceeded(keys[count].Create()))
        count++;
    return count;
}

void GiveBack(uint32_t count)
{
    while (count)
        keys[--count].Destroy();
}

} // namespace

TEST_CASE(WithoutAKeyThereIsNoValue)
{
    OrvTls key;
    CHECK(!key.IsInitialized());
    CHECK_EQUAL(key.GetIndex(), 0xFFFFFFFFu);
    CHECK_EQUAL(key.GetValue(), nullptr);
    CHECK_EQUAL(key.SetValue(&key), ORV_E_INVALID_STATE);
    CHECK_EQUAL(key.Destroy(), ORV_S_OK);
}

TEST_CASE(KeysAreThePlatformsAndEmptyWhenNew)
{
    Find("TlsAlloc", TlsAlloc);
    Find("TlsFree", TlsFree);
    Find("TlsSetValue", TlsSetValue);
    Find("TlsGetValue", TlsGetValue);
    RTL_BITMAP *const first = NtCurrentPeb()->TlsBitmap;
    const ULONG before = first->Buffer[0];
    first->Buffer[0] = before & ~1u; // as if nobody had the first key, which is none
    const uint32_t count = TakeAll();
    CHECK(count > TLS_EXPANSION_SLOTS && first->Buffer[0] & 1);
    for (uint32_t i = 0; i < count; i++)
        CHECK(keys[i].GetIndex() != 0);
    first->Buffer[0] |= before & 1;
    CHECK_EQUAL(static_cast<uint32_t>(keys[count].Create()), 0xC00705AAu);
    CHECK(!keys[count].IsInitialized());
    CHECK_EQUAL(TlsAlloc(), 0xFFFFFFFF);

    volatile bool isSet = false, isGivenBack = false;
    volatile uint32_t left = 0, wrong = 0;
    const auto countValues = [&] {
        for (uint32_t i = 0; i < count; i++)
            left = left + (keys[i].GetValue() != nullptr);
    };
    const auto setValues = [&] { // by either side, for both
        for (uint32_t i = 0; i < count; i++)
            i & 1 ? keys[i].SetValue(Value(i)) : TlsSetValue(keys[i].GetIndex(), Value(i));
        for (uint32_t i = 0; i < count; i++)
            wrong = wrong + (keys[i].GetValue() != Value(i) || TlsGetValue(keys[i].GetIndex()) != Value(i));
    };
    auto work = [&] {
        countValues();
        setValues();
        isSet = true;
        while (!isGivenBack)
            test::Sleep(1);
        countValues();
    };
    setValues();
    test::Thread thread(work);
    CHECK(test::Eventually([&] { return isSet; }));
    GiveBack(count);
    const ULONG theirs = TlsAlloc();
    CHECK(theirs != 0xFFFFFFFF);
    TlsFree(theirs);
    CHECK_EQUAL(TakeAll(), count);
    countValues();
    isGivenBack = true;
    thread.Join();
    CHECK_EQUAL(wrong, 0u);
    CHECK_EQUAL(left, 0u);
    GiveBack(count);
}

TEST_CASE(FailuresChangeNothing)
{
    uint32_t count = TakeAll();
    OrvTls &high = keys[count - 1];
    CHECK(high.GetIndex() >= TLS_MINIMUM_AVAILABLE);
    const test::Usage before = test::CountUsage();
    OrvResult results[3] = {};
    auto work = [&] {
        {
            // Not RefusingHeap: the thread's end frees what the thread's start allocated.
            const test::ReplacedFunction refuses(L"ntdll.dll", "RtlAllocateHeap", 0, 12);
            results[0] = high.SetValue(&high);
            results[1] = high.SetValue(nullptr); // needs no room
        }
        results[2] = high.SetValue(&high);
    };
    test::Thread(work).Join();
    CHECK_EQUAL(results[0], ORV_E_OUT_OF_MEMORY);
    CHECK_EQUAL(results[1], ORV_S_OK);
    CHECK_EQUAL(results[2], ORV_S_OK);
    CHECK_EQUAL(test::CountUsage().blocks, before.blocks + 1); // the thread's room, which the platform frees

    // A thread that ends unannounced frees its room itself; any other still has it when modules are told.
    struct : OrvBasThread {
        int Run() override { return key->SetValue(key); }
        void Cleanup() override { hasRoom = NtCurrentTeb()->TlsExpansionSlots != nullptr; }
        OrvTls *key = nullptr;
        bool hasRoom = false;
    } thread;
    thread.key = &high;
    uint32_t blocks = test::CountUsage().blocks;
    for (uint32_t i = 0; i < 3; i++) {
        const bool endsUnannounced = i == 2;
        const OrvFlags<OrvBasThread::ThreadFlag> flags(endsUnannounced * OrvBasThread::ThreadEndsUnannounced);
        CHECK_EQUAL(thread.StartThread(OrvPriorityNormal, nullptr, flags, nullptr), ORV_S_OK);
        CHECK_EQUAL(thread.WaitForThreadToStop(-1), ORV_S_OK);
        CHECK_EQUAL(thread.hasRoom, !endsUnannounced);
        blocks += !endsUnannounced; // the room, which the platform frees
        CHECK_EQUAL(test::CountUsage().blocks, blocks);
    }

    // A key that cannot be emptied is not given out again.
    const uint32_t index = high.GetIndex();
    {
        const test::ReplacedFunction refuses(L"ntdll.dll", "ZwSetInformationThread", 0xC0000003, 16);
        CHECK_EQUAL(high.Destroy(), ORV_E_INVALID_ARGUMENT);
    }
    CHECK(!high.IsInitialized());
    CHECK(OrvFailed(high.Create()));
    RtlClearBits(NtCurrentPeb()->TlsExpansionBitmap, index - TLS_MINIMUM_AVAILABLE, 1);
    CHECK_EQUAL(high.Create(), ORV_S_OK);
    GiveBack(count);
}

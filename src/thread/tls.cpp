// Keys over the slots in the thread's block: the first 64 lie in it, the others in an array that a thread
// gets when it first sets one of them, and that the platform frees with the thread.
//
// Whoever gives a key back empties it in every thread first, kernel32.dll like us; so a key that is free is
// empty everywhere, and taking one costs no pass over the threads.

#include "orv/thread/tls.h"

#include "nt/nt.h"
#include "nt/teb.h"
#include "orv/runtime/result.h"
#include "runtime/status.h"

namespace
{

constexpr ULONG kNoBit = 0xFFFFFFFF;

class PebLock
{
public:
    PebLock() { RtlAcquirePebLock(); }
    PebLock(const PebLock &) = delete;
    PebLock &operator=(const PebLock &) = delete;
    ~PebLock() { RtlReleasePebLock(); }
};

/// Null when the calling thread has no room for the key.
PVOID *FindSlot(ULONG key)
{
    TEB *const teb = NtCurrentTeb();
    if (key < TLS_MINIMUM_AVAILABLE)
        return &teb->TlsSlots[key];
    return teb->TlsExpansionSlots ? &teb->TlsExpansionSlots[key - TLS_MINIMUM_AVAILABLE] : nullptr;
}

/// Zero-filled room for the keys beyond the first.
bool MakeExpansionSlots()
{
    TEB *const teb = NtCurrentTeb();
    teb->TlsExpansionSlots = static_cast<PVOID *>(RtlAllocateHeap(
        teb->ProcessEnvironmentBlock->ProcessHeap, HEAP_ZERO_MEMORY, TLS_EXPANSION_SLOTS * sizeof(PVOID)));
    return teb->TlsExpansionSlots != nullptr;
}

ULONG TakeKey()
{
    const PebLock lock;
    const PEB *const peb = NtCurrentPeb();
    // The first key is never given out: there are programs that take it for none. The search comes to it when
    // it is the only one left, and then it stays taken.
    const ULONG key = RtlFindClearBitsAndSet(peb->TlsBitmap, 1, 1);
    if (key != kNoBit && key != 0)
        return key;
    const ULONG expansionKey = RtlFindClearBitsAndSet(peb->TlsExpansionBitmap, 1, 0);
    return expansionKey != kNoBit ? TLS_MINIMUM_AVAILABLE + expansionKey : kNoBit;
}

} // namespace

OrvTls::~OrvTls()
{
    Destroy();
}

OrvResult OrvTls::Create()
{
    if (IsInitialized())
        return ORV_E_ALREADY_EXISTS;
    key_ = TakeKey();
    static_assert(kNone == kNoBit);
    return IsInitialized() ? ORV_S_OK : detail::ResultFromStatus(STATUS_INSUFFICIENT_RESOURCES);
}

OrvResult OrvTls::Destroy()
{
    if (!IsInitialized())
        return ORV_S_OK;
    const ULONG key = key_;
    key_ = kNone;
    const PebLock lock;
    // With the key in it, the next owner would find our values: rather nobody gets it.
    const NTSTATUS status = ZwSetInformationThread(NtCurrentThread(), ThreadZeroTlsCell, &key, sizeof key);
    if (!NT_SUCCESS(status))
        return detail::ResultFromStatus(status);
    if (key < TLS_MINIMUM_AVAILABLE)
        RtlClearBits(NtCurrentPeb()->TlsBitmap, key, 1);
    else
        RtlClearBits(NtCurrentPeb()->TlsExpansionBitmap, key - TLS_MINIMUM_AVAILABLE, 1);
    return ORV_S_OK;
}

void *OrvTls::GetValue() const
{
    if (!IsInitialized())
        return nullptr;
    PVOID *const slot = FindSlot(key_);
    return slot ? *slot : nullptr;
}

OrvResult OrvTls::SetValue(void *value)
{
    if (!IsInitialized())
        return ORV_E_INVALID_STATE;
    PVOID *slot = FindSlot(key_);
    if (!slot) {
        if (!value)
            return ORV_S_OK; // it is null
        if (!MakeExpansionSlots())
            return ORV_E_OUT_OF_MEMORY;
        slot = FindSlot(key_);
    }
    *slot = value;
    return ORV_S_OK;
}

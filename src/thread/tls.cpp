// Thread-local keys over the slots of the thread's block. The first 64 slots are in the block. The others are
// in an array that a thread gets when it first sets one of them, and that the platform frees with the thread.
//
// Before a key is freed, here as in kernel32.dll, its slot is emptied in every thread. So a free key is empty
// in every thread, and taking a key costs no pass over the threads.

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

/// The calling thread's slot for the key. Null when the thread has no slot for it yet.
PVOID *FindSlot(ULONG key)
{
    TEB *const teb = NtCurrentTeb();
    if (key < TLS_MINIMUM_AVAILABLE)
        return &teb->TlsSlots[key];
    return teb->TlsExpansionSlots ? &teb->TlsExpansionSlots[key - TLS_MINIMUM_AVAILABLE] : nullptr;
}

/// Gives the calling thread zero-filled slots for the keys after the first 64. False when the heap refuses.
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
    // Key 0 is never given out, because some programs take it for no key. The search finds it when it is the
    // only free key; then it stays taken.
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
    // If the slots cannot be emptied, the key stays taken: its next owner would find our values in them.
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
            return ORV_S_OK; // a missing slot already reads as null
        if (!MakeExpansionSlots())
            return ORV_E_OUT_OF_MEMORY;
        slot = FindSlot(key_);
    }
    *slot = value;
    return ORV_S_OK;
}

// Access to the environment blocks of the calling thread and process, and to the page that the system shares
// with every process. Reading them costs a few loads, never a call.

#pragma once

#include "nt/nt.h"

inline TEB *NtCurrentTeb()
{
    // The block holds its own linear address at fs:[0x18].
    return *reinterpret_cast<TEB *__attribute__((address_space(257))) *>(offsetof(TEB, Self));
}

/// The identifier of the calling thread; never 0.
inline uint32_t CurrentThreadId()
{
    return reinterpret_cast<uintptr_t>(NtCurrentTeb()->ClientId.UniqueThread);
}

inline PEB *NtCurrentPeb()
{
    return NtCurrentTeb()->ProcessEnvironmentBlock;
}

inline const volatile KUSER_SHARED_DATA &SharedUserData()
{
    return *reinterpret_cast<const volatile KUSER_SHARED_DATA *>(0x7FFE0000);
}

/// Reads a 64-bit count of the shared page consistently. The system writes the second copy of the high half
/// first, then the low half, then the first copy. This reads in the reverse order: when the two copies are
/// equal, they belong to the low half read between them.
inline uint64_t ReadSharedTime(const volatile KSYSTEM_TIME &time)
{
    for (;;) {
        const auto high = static_cast<ULONG>(time.High1Time);
        const ULONG low = time.LowPart;
        if (high == static_cast<ULONG>(time.High2Time))
            return uint64_t(high) << 32 | low;
    }
}

// The calling thread's and process's own blocks, and the page that the system shares with every process.
// Reading them costs a segment-relative load or a plain one, never a call.

#pragma once

#include "nt/nt.h"

inline TEB *NtCurrentTeb()
{
    // The block holds its own linear address at fs:[0x18].
    return *reinterpret_cast<TEB *__attribute__((address_space(257))) *>(offsetof(TEB, Self));
}

/// Never 0.
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

/// A 64-bit count of the shared page, whole. The system writes the second copy of the high half first, then
/// the low half, then the first copy; read the other way round, equal copies belong to the low half between
/// them.
inline uint64_t ReadSharedTime(const volatile KSYSTEM_TIME &time)
{
    for (;;) {
        const auto high = static_cast<ULONG>(time.High1Time);
        const ULONG low = time.LowPart;
        if (high == static_cast<ULONG>(time.High2Time))
            return uint64_t(high) << 32 | low;
    }
}

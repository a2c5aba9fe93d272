// The calling thread's and process's own blocks, and the page that the system shares with every process.
// Reading them costs a segment-relative load or a plain one, never a call.

#pragma once

#include "nt/nt.h"

inline TEB *NtCurrentTeb()
{
    // The block holds its own linear address at fs:[0x18].
    return *reinterpret_cast<TEB *__attribute__((address_space(257))) *>(offsetof(TEB, Self));
}

inline PEB *NtCurrentPeb()
{
    return NtCurrentTeb()->ProcessEnvironmentBlock;
}

inline const volatile KUSER_SHARED_DATA &SharedUserData()
{
    return *reinterpret_cast<const volatile KUSER_SHARED_DATA *>(0x7FFE0000);
}

/// A time of the shared page, whole: the halves are read in the order in which they are not written.
inline uint64_t ReadSharedTime(const volatile KSYSTEM_TIME &time)
{
    for (;;) {
        const auto high = static_cast<ULONG>(time.High1Time);
        const ULONG low = time.LowPart;
        if (high == static_cast<ULONG>(time.High2Time))
            return uint64_t(high) << 32 | low;
    }
}

// The interlocked instructions that the short ways of the locks consist of, under the names that every
// compiler for this platform knows.

#pragma once

extern "C" {

/// As the compiler's own: they give the value of before, and the new one for the last two.
long __cdecl _InterlockedCompareExchange(long volatile *target, long exchange, long comparand);
long __cdecl _InterlockedDecrement(long volatile *target);
long __cdecl _InterlockedIncrement(long volatile *target);

} // extern "C"

#pragma intrinsic(_InterlockedCompareExchange, _InterlockedDecrement, _InterlockedIncrement)

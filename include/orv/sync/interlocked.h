// The interlocked instructions that the inline parts of the locks use, under the names that every compiler
// for this platform knows.

#pragma once

extern "C" {

/// The compiler's own. CompareExchange returns the previous value; Increment and Decrement return the new
/// one.
long __cdecl _InterlockedCompareExchange(long volatile *target, long exchange, long comparand);
long __cdecl _InterlockedDecrement(long volatile *target);
long __cdecl _InterlockedIncrement(long volatile *target);

} // extern "C"

#pragma intrinsic(_InterlockedCompareExchange, _InterlockedDecrement, _InterlockedIncrement)

// Waiting for several waitables at once: for the first of them that is signalled, or for all.
//
// As in a wait for one waitable, the resource decides: forwards are followed to the end of their chain, and
// an empty waitable counts as signalled. A wait changes the objects as a wait for one of them does, and only
// when it succeeds: an event that resets itself is reset, a semaphore's count goes down by one, a mutex is
// acquired. While threads wait, no waitable among them may be filled or emptied.

#pragma once

#include "orv/sync/waitable.h"

/// The most objects that one wait takes. It is the platform's limit.
constexpr uint32_t OrvMostWaitObjects = 64;

/// Waits until one of `count` waitables is signalled, for at most `timeoutMs` milliseconds; -1 waits for
/// ever, and any other negative number is read as unsigned. Of several that are signalled the first in the
/// array is taken, and no other is changed. The array may contain the same waitable twice.
///
/// Returns 0, and `index` receives the index of the waitable; ORV_S_ABANDONED (a success), also with the
/// index, for a mutex whose owner ended without releasing it; ORV_W_TIMEOUT (a failure) when the time
/// elapsed; ORV_E_INVALID_ARGUMENT for a null array, a count of 0, and a null waitable or forward;
/// ORV_E_BAD_LENGTH for more than OrvMostWaitObjects; ORV_E_UNSUPPORTED_TYPE for a waitable that waits by
/// itself; ORV_E_NOT_PROVIDED when a resource type is unknown; otherwise the converted status. `index` is
/// written on success only.
ORV_API OrvResult OrvBasWaitForAny(uint32_t &index, OrvBasWaitable *const *objects, uint32_t count,
                                   int timeoutMs);

/// Waits until all of `count` waitables are signalled at the same moment, within the time limit as above.
/// None of them is changed before.
///
/// Returns 0; ORV_S_ABANDONED (a success) when one of the mutexes, the platform does not tell which, had an
/// owner that ended without releasing it; ORV_E_INVALID_ARGUMENT also when two of them are the same kernel
/// object by the same handle; otherwise as OrvBasWaitForAny.
ORV_API OrvResult OrvBasWaitForAll(OrvBasWaitable *const *objects, uint32_t count, int timeoutMs);

// The record that the library keeps for every thread that touches it.
//
// A record is in the list and under its thread's key, or it does not exist. There are none unless the loader
// attached the library to the process: a program that starts it up by itself goes without.

#pragma once

#include "orv/base.h"

namespace detail
{

/// What a thread finds under the key.
struct ThreadData {
    uint32_t threadId;
};

/// Makes the list, and its lock. Returns 0 or the converted status.
OrvResult CreateThreadRecordList();

/// Frees every record that is left, and the lock. The key must be gone by then.
void DeleteThreadRecordList();

/// Returns 0 or what OrvTls::Create returns.
OrvResult AllocateThreadRecordKey();

void FreeThreadRecordKey();

/// The calling thread's data, or null.
ThreadData *GetThreadData();

/// Makes the calling thread's record when it has none.
///
/// Returns 0; ORV_E_INVALID_STATE when there is no key; ORV_E_OUT_OF_MEMORY.
OrvResult EnsureThreadRecord();

/// Frees the calling thread's record, if any.
void RemoveThreadRecord();

} // namespace detail

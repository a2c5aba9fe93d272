// The record that the library keeps for every thread that uses it.
//
// Every record is both in the list and under its thread's key. Records exist only if the loader attached the
// library to the process: a program that calls the start-up itself has none.

#pragma once

#include "orv/base.h"

namespace detail
{

/// The data that a thread finds under the key.
struct ThreadData {
    uint32_t threadId;
};

/// Makes the list, and its lock. Returns 0 or the converted status.
OrvResult CreateThreadRecordList();

/// Frees all remaining records, and the lock. The key must have been freed before.
void DeleteThreadRecordList();

/// Allocates the key. Returns 0 or what OrvTls::Create returns.
OrvResult AllocateThreadRecordKey();

void FreeThreadRecordKey();

/// The calling thread's data, or null.
ThreadData *GetThreadData();

/// Makes the calling thread's record if it has none.
///
/// Returns 0; ORV_E_INVALID_STATE when there is no key; ORV_E_OUT_OF_MEMORY.
OrvResult EnsureThreadRecord();

/// Frees the calling thread's record, if any.
void RemoveThreadRecord();

} // namespace detail

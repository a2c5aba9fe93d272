// Thread-local storage keys: one pointer for each thread under a common key.
//
// The keys are the platform's own, from the same 1,088 that TlsAlloc of kernel32.dll uses, under the same
// lock. So they work in every process and never collide with those of other modules. A key's value is null in
// every thread until that thread sets it.
//
// Creating and destroying must not race with the use of the key. Each thread sees its own value only, so
// values need no lock.

#pragma once

#include "orv/base.h"

/// One key.
class OrvTls
{
public:
    /// Holds no key yet.
    constexpr OrvTls() : key_(kNone) {}
    OrvTls(const OrvTls &) = delete;
    OrvTls &operator=(const OrvTls &) = delete;

    /// Calls Destroy and ignores its result.
    ORV_API ~OrvTls();

    /// Takes a key, whose value is null in every thread.
    ///
    /// Returns 0; ORV_E_ALREADY_EXISTS when there is a key here, which stays; the converted
    /// STATUS_INSUFFICIENT_RESOURCES (0xC00705AA) when all are in use.
    ORV_API OrvResult Create();

    /// Releases the key. The caller must free what the values point to. Without a key nothing happens.
    ///
    /// Returns 0, or the converted status when the platform cannot empty the key's value in every thread; the
    /// key is then released all the same, but it is never used again.
    ORV_API OrvResult Destroy();

    /// Whether there is a key.
    bool IsInitialized() const { return key_ != kNone; }

    /// The calling thread's value; null when it has set none, and when there is no key.
    ORV_API void *GetValue() const;

    /// Sets the calling thread's value.
    ///
    /// Returns 0; ORV_E_INVALID_STATE when there is no key; ORV_E_OUT_OF_MEMORY when the thread has no room
    /// for a key beyond the first 64; that room is allocated when the thread first sets such a key. On
    /// failure the value is as it was.
    ORV_API OrvResult SetValue(void *value);

    /// The number by which the platform knows the key, for TlsGetValue and TlsSetValue; 0xFFFFFFFF for none.
    uint32_t GetIndex() const { return key_; }

private:
    static constexpr uint32_t kNone = 0xFFFFFFFF;

    uint32_t key_;
};

static_assert(sizeof(OrvTls) == 4, "fixed layout");

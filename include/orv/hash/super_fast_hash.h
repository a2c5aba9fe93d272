// SuperFastHash of Paul Hsieh: fast, not cryptographic.
//
// Two things differ from the published function on purpose: the hash starts from the seed, not from the
// length, and the bytes of the tail count as unsigned.

#pragma once

#include "orv/base.h"

/// The hash of all data added, no matter how it was split. An object is always usable; one thread at a time
/// may change it.
class OrvMiniSuperFastHash
{
public:
    constexpr OrvMiniSuperFastHash() : hash_(0), pending_{}, pendingCount_(0) {}

    /// Starts anew from seed 0.
    ORV_API void Initialize();

    /// Starts anew from a seed.
    ORV_API void Reset(uint32_t seed);

    /// Adds `length` bytes.
    ORV_API void Add(const uint8_t *data, uint32_t length);

    /// The hash so far. Adding may go on.
    ORV_API uint32_t Get();
    ORV_API uint32_t Get() const;

    /// The hash of the bytes from `begin` up to, not including, `end`.
    ORV_API static uint32_t Hash(const uint8_t *begin, const uint8_t *end, uint32_t seed);

private:
    uint32_t hash_;
    uint8_t pending_[4]; ///< bytes that do not yet make a block of four
    uint8_t pendingCount_;
};

static_assert(sizeof(OrvMiniSuperFastHash) == 12, "fixed layout");

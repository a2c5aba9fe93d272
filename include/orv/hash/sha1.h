// SHA-1 (FIPS 180-4).

#pragma once

#include "orv/base.h"

/// A message digest of data that is added piece by piece, for messages of at most 0xFFFFFFFF bytes. The first
/// Get ends the message; until Initialize every Get gives the same digest, whatever is added.
///
/// The length that ends the message is kept in 32 bits: for messages of 512 MiB and more the digest differs
/// from the standard one.
class OrvMiniHashSha1
{
public:
    /// The digest's bytes.
    struct HashType {
        uint8_t bytes[20]; ///< in the order in which they are printed
    };

    ORV_API OrvMiniHashSha1();

    /// Starts anew.
    ORV_API void Initialize();

    /// Adds `length` bytes.
    ///
    /// Returns 0, or ORV_E_INVALID_DATA when the message would become longer than 0xFFFFFFFF bytes; then
    /// nothing is added.
    ORV_API OrvResult Add(const uint8_t *data, uint32_t length);

    /// Ends the message and gives its digest.
    ORV_API void Get(HashType &digest);
    ORV_API HashType Get();

private:
    void Finish();

    uint32_t length_; ///< in bytes
    uint8_t buffer_[64];
    uint32_t chain_[5]; ///< the digest, once the message has ended
    uint32_t finalized_;
};

static_assert(sizeof(OrvMiniHashSha1) == 92, "fixed layout");

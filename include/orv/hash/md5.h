// MD5 (RFC 1321).

#pragma once

#include "orv/base.h"

/// A message digest of data that is added piece by piece. The first Get ends the message; until Initialize
/// every Get gives the same digest, whatever is added.
class OrvMiniHashMd5
{
public:
    /// The digest's bytes.
    struct HashType {
        uint8_t bytes[16]; ///< in the order in which they are printed
    };

    ORV_API OrvMiniHashMd5();

    /// Resets. A reference from an earlier Get shows the old digest until the next Get.
    ORV_API void Initialize();

    /// Adds `length` bytes.
    ORV_API void Add(const uint8_t *data, uint32_t length);

    /// Ends the message and gives its digest.
    ORV_API void Get(HashType &digest);

    /// The digest inside the object.
    ORV_API HashType &Get();

private:
    void Finish();

    uint32_t chain_[4];
    uint32_t bitLengthLow_;
    uint32_t bitLengthHigh_;
    uint8_t buffer_[64];
    HashType digest_;
    uint32_t finalized_;
};

static_assert(sizeof(OrvMiniHashMd5) == 108, "fixed layout");

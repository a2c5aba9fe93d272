// MD4 (RFC 1320).

#pragma once

#include "orv/base.h"

/// A message digest of data that is added piece by piece. After Get, call Reset before using the object
/// again.
class OrvMiniHashMd4
{
public:
    ORV_API OrvMiniHashMd4();

    /// Starts anew.
    ORV_API void Reset();

    /// Adds `length` bytes.
    ORV_API void Add(const uint8_t *data, uint32_t length);

    /// Ends the message and gives its digest, in the usual byte order. A second call without Reset does not
    /// give the digest.
    ORV_API void Get(uint8_t (&digest)[16]);

private:
    uint8_t padding_[64]; ///< 0x80, then zeros
    uint32_t chain_[4];
    uint32_t bitLengthLow_;
    uint32_t bitLengthHigh_;
    uint8_t buffer_[64];
};

static_assert(sizeof(OrvMiniHashMd4) == 152, "fixed layout");

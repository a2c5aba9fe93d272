// CRC-32 of IEEE 802.3 and CRC-32C of Castagnoli: reflected, with all bits set at the start and complemented
// at the end.
//
// An object is always usable and owns nothing; one thread at a time may change it.

#pragma once

#include "orv/base.h"

/// What both checksums share.
class OrvMiniHashCrc
{
public:
    constexpr OrvMiniHashCrc() : register_(0xFFFFFFFF) {}

    /// Starts anew.
    void Initialize() { register_ = 0xFFFFFFFF; }

    /// Continues from the checksum of earlier data: after further calls of Add, Get returns the checksum of
    /// all of it.
    void Reset(uint32_t crc) { register_ = ~crc; }

    /// The checksum of everything added so far. Adding may go on.
    uint32_t Get() const { return ~register_; }
    void Get(uint32_t &crc) const { crc = ~register_; }

protected:
    uint32_t register_; ///< the complement of the checksum so far
};

static_assert(sizeof(OrvMiniHashCrc) == 4, "fixed layout");

/// CRC-32 (polynomial 0xEDB88320, reflected): 0xCBF43926 for "123456789".
class OrvMiniHashCrc32 : public OrvMiniHashCrc
{
public:
    /// Adds `length` bytes.
    ORV_API void Add(const uint8_t *data, uint32_t length);
};

/// CRC-32C (polynomial 0x82F63B78, reflected): 0xE3069283 for "123456789".
class OrvMiniHashCrc32C : public OrvMiniHashCrc
{
public:
    /// Adds `length` bytes.
    ORV_API void Add(const uint8_t *data, uint32_t length);
};

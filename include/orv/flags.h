// A set of flags of one enumeration. It is as wide as a register and is passed by value.

#pragma once

#include <stdint.h>

/// Defines | for an unscoped enumeration of flags: the flags of both, in the enumeration's type.
#define ORV_COMBINABLE_FLAGS(Enum)                                                                           \
    constexpr Enum operator|(Enum a, Enum b)                                                                 \
    {                                                                                                        \
        return static_cast<Enum>(static_cast<uint32_t>(a) | static_cast<uint32_t>(b));                       \
    }

/// The enumerators of `T` are single bits, or groups of bits, and combine with |.
template <typename T>
class OrvFlags
{
public:
    /// No flag.
    constexpr OrvFlags() : bits_(0) {}

    /// One flag.
    constexpr OrvFlags(T flag) : bits_(static_cast<uint32_t>(flag)) {} // NOLINT(google-explicit-constructor)

    /// These bits.
    constexpr explicit OrvFlags(uint32_t bits) : bits_(bits) {}

    /// All bits that are set.
    constexpr uint32_t GetBits() const { return bits_; }

    /// Whether every bit of `flag` is set.
    constexpr bool Has(T flag) const
    {
        return (bits_ & static_cast<uint32_t>(flag)) == static_cast<uint32_t>(flag);
    }

    /// The flags of both sets.
    constexpr OrvFlags operator|(OrvFlags other) const { return OrvFlags(bits_ | other.bits_); }
    constexpr OrvFlags &operator|=(OrvFlags other)
    {
        bits_ |= other.bits_;
        return *this;
    }

    /// Whether both sets have the same bits.
    constexpr bool operator==(OrvFlags other) const { return bits_ == other.bits_; }
    constexpr bool operator!=(OrvFlags other) const { return bits_ != other.bits_; }

private:
    uint32_t bits_;
};

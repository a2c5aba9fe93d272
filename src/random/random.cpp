// The process-wide generator of random numbers. Its state is constant-initialised, so it needs no start-up
// code.

#include "orv/random/random.h"

#include "orv/sync/spin_lock.h"
#include "text/vector.h"

namespace
{

constexpr uint64_t kMultiplier = 0x5DEECE66D;
constexpr uint64_t kIncrement = 0xB;
constexpr uint32_t kFirstUsedBit = 17; // the lower bits of a linear congruential generator repeat too soon

struct {
    OrvSpinLock lock;
    uint32_t low;
    uint16_t high;
} generator = {{0, 1}, 0x1330E, 0}; // waiters sleep 1 ms, so that a holder of lower priority can run

/// Exclusive use of the shared state while this object exists.
class Steps
{
public:
    Steps() : locker_(&generator.lock, true), state_(uint64_t(generator.high) << 32 | generator.low) {}
    Steps(const Steps &) = delete;
    Steps &operator=(const Steps &) = delete;
    ~Steps()
    {
        generator.low = static_cast<uint32_t>(state_);
        generator.high = static_cast<uint16_t>(state_ >> 32);
    }

    /// Makes one step and returns the 31 bits that callers see.
    uint32_t Take()
    {
        constexpr uint64_t kMask = (uint64_t{1} << 48) - 1;
        state_ = (state_ * kMultiplier + kIncrement) & kMask;
        return static_cast<uint32_t>(state_ >> kFirstUsedBit);
    }

private:
    OrvSpinLockLocker locker_;
    uint64_t state_;
};

} // namespace

uint8_t OrvGenerateRandomByte()
{
    return static_cast<uint8_t>(Steps().Take());
}

uint16_t OrvGenerateRandomWord()
{
    return static_cast<uint16_t>(Steps().Take());
}

uint32_t OrvGenerateRandomDWord()
{
    return Steps().Take();
}

bool OrvGenerateRandomBool()
{
    return (OrvGenerateRandomByte() & 1) != 0;
}

void OrvGenerateRandomBuffer(uint8_t *buffer, uint32_t length)
{
    if (length == 0)
        return;
    Steps steps;
    // The four bytes of a step are the bytes of its number, lowest first.
    if (const uint32_t rest = length % 4) {
        uint32_t bytes = steps.Take() >> 8 * (4 - rest);
        for (uint32_t i = 0; i < rest; i++, bytes >>= 8)
            *buffer++ = static_cast<uint8_t>(bytes);
    }
    for (uint32_t groups = length / 4; groups; groups--, buffer += 4)
        detail::StoreUnit(reinterpret_cast<uint32_t *>(buffer), steps.Take());
}

uint32_t OrvChooseRandomEvent(uint32_t count, const double *probabilities)
{
    double left = OrvGenerateRandomDWord() * 0x1p-32;
    for (uint32_t i = 0; i < count; i++) {
        left -= probabilities[i];
        if (left < 0)
            return i;
    }
    return count;
}

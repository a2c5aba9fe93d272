// The sources of time-based GUIDs: the range of times that the platform reserved for this process, or, on a
// platform that reserves none, this process's own clock. Both share one layout.
//
// All times count from 1601, as the platform's do. (A plain version 1 UUID counts from 1582. Here nobody can
// read the time, because the mask hides it.)

#pragma once

#include "orv/text/guid.h"

namespace detail
{

/// The parts of one GUID: 100-ns units since 1601, a sequence of 14 bits, a node of six bytes.
struct GuidParts {
    uint64_t time;
    uint32_t sequence;
    uint8_t node[6];
};

/// Gives each caller a different time. The times of one sequence only grow: while the clock does not move,
/// each time is one more than the last, perhaps ahead of the clock; when the clock is set back, the next
/// sequence begins. Only one thing is left to chance: whether two processes draw the same node.
class GuidClock
{
public:
    /// `sequence` is the first sequence; any number will do.
    void Start(uint32_t sequence)
    {
        sequence_ = sequence;
        isStarted_ = true;
    }
    bool IsStarted() const { return isStarted_; }

    /// `now` is what the clock shows.
    uint64_t Take(uint64_t now)
    {
        if (now < clock_) {
            sequence_++;
            given_ = now;
        } else {
            given_ = now > given_ ? now : given_ + 1;
        }
        clock_ = now;
        return given_;
    }

    uint32_t Sequence() const { return sequence_ & 0x3FFF; }

private:
    uint64_t clock_ = 0;
    uint64_t given_ = 0;
    uint32_t sequence_ = 0;
    bool isStarted_ = false;
};

/// The times of one reservation, with their sequence and node, given out one by one. The platform gives them
/// to no other process, so a range may be used at any later time.
class GuidRange
{
public:
    /// `first` contains the first of `count` times.
    void Start(const GuidParts &first, uint32_t count)
    {
        next_ = first;
        left_ = count;
    }
    bool IsEmpty() const { return left_ == 0; }

    /// The range must not be empty.
    GuidParts Take()
    {
        const GuidParts taken = next_;
        next_.time++;
        left_--;
        return taken;
    }

private:
    GuidParts next_ = {};
    uint32_t left_ = 0;
};

/// Takes the parts of a GUID that no other call gets, in any thread. Returns 0, or the converted status when
/// the platform refuses; `parts` is then untouched.
OrvResult TakeGuidParts(GuidParts &parts);

/// Lays the parts out as a version 1 UUID and combines them with the mask.
_OrvGuid MakeGuid(const GuidParts &parts);

/// Hides the time and the node. It must never change: stored GUIDs were made with it.
constexpr uint8_t kGuidMask[16] = {0x6B, 0xD1, 0x0E, 0x94, 0xA7, 0x3C, 0x58, 0xF2,
                                   0x1D, 0xE9, 0x75, 0x42, 0xBC, 0x8F, 0x36, 0xA0};

} // namespace detail

// Where time-based GUIDs come from: the range of times that the platform reserved for this process, or, on a
// platform that reserves none, this process's own clock; and the layout that both share.
//
// All times count from 1601, as the platform's do. (A plain version 1 UUID counts from 1582. Nobody reads the
// time in ours, which the mask hides.)

#pragma once

#include "orv/text/guid.h"

namespace detail
{

/// What makes one GUID: 100-ns units since 1601, a sequence of 14 bits, six bytes of node.
struct GuidParts {
    uint64_t time;
    uint32_t sequence;
    uint8_t node[6];
};

/// Gives each caller another time. The times of one sequence only grow: while the clock stands still they are
/// counted on, perhaps ahead of it, and when it is set back another sequence begins. What is left to chance
/// is only whether two processes draw the same node.
class GuidClock
{
public:
    /// The sequence to begin with; any number.
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

/// The times that the platform reserved at once, with their sequence and node, which are given out one by
/// one. The platform keeps them apart from those of all other processes, so a range may be used up at any
/// later time.
class GuidRange
{
public:
    /// `first` has the first time of `count`.
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

/// Takes the parts of a GUID that no other call gets, in whatever thread. Returns 0, or the converted status
/// when the platform refuses; `parts` is then untouched.
OrvResult TakeGuidParts(GuidParts &parts);

/// Lays the parts out as a version 1 UUID and combines them with the mask.
_OrvGuid MakeGuid(const GuidParts &parts);

/// Keeps time and node from appearing in clear. It must never change: GUIDs that are stored were made with
/// it.
constexpr uint8_t kGuidMask[16] = {0x6B, 0xD1, 0x0E, 0x94, 0xA7, 0x3C, 0x58, 0xF2,
                                   0x1D, 0xE9, 0x75, 0x42, 0xBC, 0x8F, 0x36, 0xA0};

} // namespace detail

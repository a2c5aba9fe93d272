// A compressed stream in pieces, for the tests and the fuzz targets.

#pragma once

#include "orv/runtime/result.h"

#include <stdint.h>

namespace test
{

/// Bytes as they arrive.
struct Collected {
    static constexpr uint32_t kRoom = 0x40000;

    uint8_t data[kRoom];
    uint32_t size;
};

/// Hands the input over and collects the output until the stream ends, a step fails, all room is used, or an
/// input that ends early gives nothing more. `pieces` says how large the next piece is and where it stands.
/// `finish` may be null. ORV_E_INVALID_STATE when the context's ranges are not where they must be.
template <typename Context, typename Pieces>
OrvResult Pump(Context &context, const uint8_t *in, uint32_t size, Collected &out, Pieces pieces,
               OrvResult (Context::*step)(), OrvResult (Context::*finish)())
{
    out.size = 0;
    for (uint32_t taken = 0;;) {
        const uint32_t given = pieces.Next(size - taken);
        const uint32_t room = pieces.Next(Collected::kRoom - out.size);
        auto &&from = pieces.In(in + taken, given);
        auto &&to = pieces.Out(room);
        context.SetNextIn(from);
        context.SetAvailIn(given);
        context.SetNextOut(to);
        context.SetAvailOut(room);
        const OrvResult result = given == 0 && finish ? (context.*finish)() : (context.*step)();
        const uint32_t consumed = given - context.GetAvailIn();
        const uint32_t produced = room - context.GetAvailOut();
        if (consumed > given || produced > room || context.GetNextIn() != from + consumed ||
            context.GetNextOut() != to + produced)
            return ORV_E_INVALID_STATE;
        __builtin_memcpy(out.data + out.size, to, produced);
        taken += consumed;
        out.size += produced;
        if (result != ORV_S_OK || out.size == Collected::kRoom || (given == 0 && produced == 0 && !finish))
            return result;
    }
}

} // namespace test

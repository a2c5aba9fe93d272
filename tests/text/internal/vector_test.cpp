// Moving bytes: every size around the pieces that it is done in, up against the edge of memory and over
// itself.

#include "text/vector.h"

#include "harness/test.h"
#include "text/texts.h"

TEST_CASE(MovedBytesAreAllOfThemAndNoOthers)
{
    constexpr uint32_t kRoom = 360;
    constexpr uint32_t kMostShift = 40;
    uint8_t *const bytes = test::GuardedArray<uint8_t>(kRoom);
    for (uint32_t size = 0; size <= kRoom - kMostShift; size++) {
        for (uint32_t shift = 0; shift <= kMostShift; shift++) {
            for (uint32_t up = 0; up < 2; up++) {
                for (uint32_t i = 0; i < kRoom; i++)
                    bytes[i] = static_cast<uint8_t>(i * 7);
                const uint32_t low = test::GuardedEdge() == test::Edge::kStart ? 0 : kRoom - size - shift;
                const uint32_t from = low + (up ? 0 : shift);
                const uint32_t to = low + (up ? shift : 0);
                detail::MoveBytes(bytes + to, bytes + from, size);
                uint32_t right = 0;
                while (right < kRoom) {
                    const bool moved = right >= to && right < to + size;
                    if (bytes[right] != static_cast<uint8_t>((moved ? right - to + from : right) * 7))
                        break;
                    right++;
                }
                test::Note("size", size);
                CHECK_EQUAL(right, kRoom);
            }
        }
    }
    detail::MoveBytes(nullptr, nullptr, 0);
}

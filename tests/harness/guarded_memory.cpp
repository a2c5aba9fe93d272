// Guarded arrays: each has pages of its own in a large reservation, and one page between it and the next is
// never mapped.

#include "harness/memory.h"

namespace
{

constexpr size_t kPage = 0x1000;

uint8_t *next; // the first page that is free; the one before it is unmapped
size_t left;

} // namespace

void *test::AllocateGuarded(size_t size)
{
    constexpr size_t kReservation = 0x1000000;
    const size_t pages = (size + kPage - 1) / kPage * kPage;
    if (left < pages + kPage) {
        const size_t reserved = pages + 2 * kPage < kReservation ? kReservation : pages + 2 * kPage;
        next = ReserveAddresses(reserved) + kPage;
        left = reserved - kPage;
    }
    uint8_t *const first = next;
    next += pages + kPage;
    left -= pages + kPage;
    if (pages)
        MapPages(first, pages);
    return GuardedEdge() == Edge::kStart ? first : first + pages - size;
}

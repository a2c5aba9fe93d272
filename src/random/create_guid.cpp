// Making GUIDs: from the platform's allocation or from the clock, and from the generator of random numbers.

#include "orv/random/create_guid.h"

#include "nt/nt.h"
#include "nt/teb.h"
#include "orv/random/random.h"
#include "orv/runtime/result.h"
#include "orv/sync/spin_lock.h"
#include "random/guid_source.h"
#include "runtime/entropy.h"
#include "runtime/status.h"

namespace detail
{

namespace
{

struct {
    OrvSpinLock lock;
    GuidClock clock;
    uint8_t node[6];
} source = {{0, 1}, {}, {}}; // waiters sleep 1 ms, so that a holder of a lower priority gets its turn

/// Draws the sequence and the node that this process keeps.
void StartSource()
{
    struct {
        uint16_t sequence;
        uint8_t node[sizeof source.node];
    } drawn;
    FillWithEntropy(&drawn, sizeof drawn);
    constexpr uint8_t kMulticast = 1; // no network card has such an address
    drawn.node[0] |= kMulticast;
    __builtin_memcpy(source.node, drawn.node, sizeof source.node);
    source.clock.Start(drawn.sequence);
}

bool IsZero(const uint8_t (&bytes)[6])
{
    uint8_t all = 0;
    for (const uint8_t byte : bytes)
        all |= byte;
    return all == 0;
}

} // namespace

GuidParts TakeGuidParts()
{
    constexpr uint64_t kFrom1582To1601 = 0x00146BF33E42C000; // in 100 ns
    const OrvSpinLockLocker locker(&source.lock, true);
    if (!source.clock.IsStarted())
        StartSource();
    GuidParts parts;
    parts.time = source.clock.Take(ReadSharedTime(SharedUserData().SystemTime) + kFrom1582To1601);
    parts.sequence = source.clock.Sequence();
    __builtin_memcpy(parts.node, source.node, sizeof parts.node);
    return parts;
}

_OrvGuid MakeGuid(const GuidParts &parts)
{
    constexpr uint16_t kVersion = 0x1000;
    constexpr uint8_t kVariant = 0x80;
    const auto timeHigh = static_cast<uint16_t>((parts.time >> 48 & 0x0FFF) | kVersion);
    _OrvGuid guid;
    OrvGuidUtils::Assign(guid, static_cast<uint32_t>(parts.time), static_cast<uint16_t>(parts.time >> 32),
                         timeHigh, static_cast<uint8_t>((parts.sequence >> 8 & 0x3F) | kVariant),
                         static_cast<uint8_t>(parts.sequence), parts.node[0], parts.node[1], parts.node[2],
                         parts.node[3], parts.node[4], parts.node[5]);
    for (uint32_t i = 0; i < sizeof guid.bytes; i++)
        guid.bytes[i] ^= kGuidMask[i];
    return guid;
}

} // namespace detail

namespace OrvGuidUtils
{

OrvResult CreateGuid(_OrvGuid &guid)
{
    detail::GuidParts parts = {};
    ULONGLONG time = 0;
    ULONG range = 0;
    ULONG sequence = 0;
    const NTSTATUS status = ZwAllocateUuids(&time, &range, &sequence, parts.node);
    if (!NT_SUCCESS(status))
        return detail::ResultFromStatus(status);
    parts.time = time;
    parts.sequence = sequence;
    // There are platforms that succeed and allocate nothing, and times of the day at which none has a node.
    if (time == 0 || detail::IsZero(parts.node))
        parts = detail::TakeGuidParts();
    guid = detail::MakeGuid(parts);
    return ORV_S_OK;
}

OrvResult CreateLuid(_OrvGuid &guid)
{
    constexpr uint8_t kVersion = 0x40;
    constexpr uint8_t kVariant = 0x80;
    OrvGenerateRandomBuffer(guid.bytes, sizeof guid.bytes);
    guid.bytes[6] = (guid.bytes[6] & 0x0F) | kVersion;
    guid.bytes[8] = (guid.bytes[8] & 0x3F) | kVariant;
    return ORV_S_OK;
}

} // namespace OrvGuidUtils

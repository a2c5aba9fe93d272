// Creates GUIDs: time-based ones from the times that the platform reserves or from the clock, and random ones
// from the generator of random numbers.
//
// One reservation has some thousand times, and the platform makes one reservation for each step of the
// machine's clock. A process that asked for a reservation for each GUID would soon get none, and would take
// them from all other programs. So the process keeps its range and asks for another when the range is used
// up.

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
    GuidRange range;
    GuidClock clock; ///< this and the node are used when the platform reserves no times
    uint8_t node[6];
} source = {{0, 1}, {}, {}, {}}; // waiters sleep 1 ms, so that a holder of lower priority can run

/// Draws the random sequence and node that this process keeps.
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

/// Takes a time from the system's clock, with the node and the sequence of this process.
GuidParts TakeFromClock()
{
    if (!source.clock.IsStarted())
        StartSource();
    GuidParts parts;
    parts.time = source.clock.Take(ReadSharedTime(SharedUserData().SystemTime));
    parts.sequence = source.clock.Sequence();
    __builtin_memcpy(parts.node, source.node, sizeof parts.node);
    return parts;
}

bool IsZero(const uint8_t (&bytes)[6])
{
    uint8_t all = 0;
    for (const uint8_t byte : bytes)
        all |= byte;
    return all == 0;
}

/// Asks the platform to reserve times. The platform has none while its clock, which moves in steps, has not
/// moved since the last reservation; then this waits and asks again. The attempts take at least a tenth of a
/// second, which is several steps.
NTSTATUS ReserveTimes(GuidParts &first, ULONG &count)
{
    constexpr LONGLONG kMillisecond = -10000; // negative: relative to now
    constexpr uint32_t kMostAttempts = 100;
    NTSTATUS status = STATUS_RETRY;
    for (uint32_t attempt = 0; attempt < kMostAttempts && status == STATUS_RETRY; attempt++) {
        if (attempt)
            ZwDelayExecution(false, &kMillisecond);
        ULONGLONG time = 0;
        ULONG sequence = 0;
        count = 0;
        first = {};
        status = ZwAllocateUuids(&time, &count, &sequence, first.node);
        first.time = time;
        first.sequence = sequence;
    }
    return status;
}

} // namespace

OrvResult TakeGuidParts(GuidParts &parts)
{
    const OrvSpinLockLocker locker(&source.lock, true);
    if (source.range.IsEmpty()) {
        GuidParts first = {};
        ULONG count = 0;
        const NTSTATUS status = ReserveTimes(first, count);
        if (!NT_SUCCESS(status))
            return ResultFromStatus(status);
        // Some platforms report success but reserve nothing, or have no node.
        if (first.time == 0 || count == 0 || IsZero(first.node)) {
            parts = TakeFromClock();
            return ORV_S_OK;
        }
        source.range.Start(first, count);
    }
    parts = source.range.Take();
    return ORV_S_OK;
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
    const OrvResult result = detail::TakeGuidParts(parts);
    if (OrvFailed(result))
        return result;
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

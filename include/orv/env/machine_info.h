// The machine: the sizes that memory is managed in, and the processors.
//
// Start-up records the facts once, so a query is a plain read. Until then every fact is 0.

#pragma once

#include "orv/base.h"

namespace OrvEnvironment
{

/// What is known of the machine.
struct MachineFacts {
    uint32_t pageSize;              ///< in bytes
    uint32_t allocationGranularity; ///< in bytes: what reserved memory is aligned to
    uint32_t processorCount;        ///< those that this process may use
};

/// Where the facts stand.
class MachineInfo
{
public:
    MachineInfo() = delete;

    /// Records the facts. For start-up alone: it must not race with queries.
    static void Initialize(const MachineFacts &facts);

    /// The facts; the reference stays good as long as the library is loaded.
    ORV_API static const MachineFacts &GetFacts();
};

} // namespace OrvEnvironment

// The machine: the sizes that memory is managed in, and the processors.
//
// Start-up records the facts once, so a query is a plain read. Until then every fact is 0.

#pragma once

#include "orv/base.h"

namespace OrvEnvironment
{

/// The facts about the machine.
struct MachineFacts {
    uint32_t pageSize;              ///< in bytes
    uint32_t allocationGranularity; ///< in bytes: what reserved memory is aligned to
    uint32_t processorCount;        ///< the processors that this process may use
};

/// Holds the facts.
class MachineInfo
{
public:
    MachineInfo() = delete;

    /// Records the facts. Only start-up calls this: it must not race with queries.
    static void Initialize(const MachineFacts &facts);

    /// The facts; the reference is valid as long as the library is loaded.
    ORV_API static const MachineFacts &GetFacts();
};

} // namespace OrvEnvironment

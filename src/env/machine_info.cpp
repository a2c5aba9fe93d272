// The recorded facts about the machine.

#include "orv/env/machine_info.h"

namespace OrvEnvironment
{

namespace
{

MachineFacts recorded;

} // namespace

void MachineInfo::Initialize(const MachineFacts &facts)
{
    recorded = facts;
}

const MachineFacts &MachineInfo::GetFacts()
{
    return recorded;
}

} // namespace OrvEnvironment

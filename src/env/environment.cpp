// The set-up of the process's environment. Environment variables are read in the platform's own block, so the
// set-up only checks that the block exists.

#include "orv/env/environment.h"

#include "nt/teb.h"
#include "orv/runtime/result.h"

OrvResult OrvEnvironment::InitializeEnvironment()
{
    return NtCurrentPeb()->ProcessParameters ? ORV_S_OK : ORV_E_OBJECT_NOT_FOUND;
}

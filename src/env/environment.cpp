// Environment variables are read where the platform keeps them, so the set-up only makes sure of the place.

#include "orv/env/environment.h"

#include "nt/teb.h"
#include "orv/runtime/result.h"

OrvResult OrvEnvironment::InitializeEnvironment()
{
    return NtCurrentPeb()->ProcessParameters ? ORV_S_OK : ORV_E_OBJECT_NOT_FOUND;
}

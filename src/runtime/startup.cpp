// Start-up: the roof over all subsystems. It may include everything, and nothing includes it.
//
// For now attaching fills the two entry-point tables. Counting initializations, the random source, machine
// facts and the per-thread records take their place here, between the tables and the return.

#include "runtime/startup.h"

#include "orv/runtime/kernel32_entry_points.h"
#include "orv/runtime/ntdll_entry_points.h"

namespace detail
{

OrvResult AttachProcess()
{
    if (!OrvNtdllIsTableInitialized()) {
        const OrvResult result = OrvNtdllTableInitialize();
        if (OrvFailed(result))
            return result;
    }
    if (!OrvKernel32IsTableInitialized())
        OrvKernel32TableInitializeIfLoaded(); // a process without kernel32.dll is as good as one with it
    return 0;
}

} // namespace detail

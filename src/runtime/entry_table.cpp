// Fills a table of optional entry points.

#include "runtime/entry_table.h"

namespace detail
{

void FillEntries(PVOID module, const ANSI_STRING *names, PVOID *entries, uint32_t count)
{
    for (uint32_t i = 0; i < count; i++) {
        if (!NT_SUCCESS(LdrGetProcedureAddress(module, &names[i], 0, &entries[i])))
            entries[i] = nullptr;
    }
}

} // namespace detail

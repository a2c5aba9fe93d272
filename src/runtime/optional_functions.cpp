// Looks up each optional function once.

#include "runtime/optional_functions.h"

#include "orv/runtime/ntdll_entry_points.h"
#include "runtime/entry_table.h"

namespace detail
{

namespace
{

constexpr uint32_t kCount = static_cast<uint32_t>(OptionalFunction::Count);

constexpr ANSI_STRING kNames[kCount] = {
#define ORV_OPTIONAL_NAME(name) EntryName(#name),
    ORV_OPTIONAL_FUNCTIONS(ORV_OPTIONAL_NAME)
#undef ORV_OPTIONAL_NAME
};

// Null: not looked up yet. The address of the element itself: the system lacks the function. Threads that
// look up at the same time find the same answer, so it does not matter which of them stores it.
PVOID volatile found[kCount];

} // namespace

PVOID FindOptionalFunction(OptionalFunction function)
{
    const auto index = static_cast<uint32_t>(function);
    void *const missing = const_cast<void **>(&found[index]);
    PVOID address = found[index];
    if (!address) {
        const PVOID module = OrvGetNtdllModuleHandle();
        if (!module)
            return nullptr;
        if (!NT_SUCCESS(LdrGetProcedureAddress(module, &kNames[index], 0, &address)))
            address = missing;
        found[index] = address;
    }
    return address == missing ? nullptr : address;
}

} // namespace detail

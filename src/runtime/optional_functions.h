// Functions of ntdll.dll that the oldest supported system may lack, beside those of the exported table, whose
// entries are fixed. A static import of such a function would keep the DLL from loading there. Each one is
// looked up when it is first asked for: a process that does not need it does not pay for it.

#pragma once

#include "nt/nt.h"

namespace detail
{

// clang-format off
#define ORV_OPTIONAL_FUNCTIONS(entry) \
    entry(CsrClientCallServer)
// clang-format on

enum class OptionalFunction : uint32_t {
#define ORV_OPTIONAL_NUMBER(name) name,
    ORV_OPTIONAL_FUNCTIONS(ORV_OPTIONAL_NUMBER)
#undef ORV_OPTIONAL_NUMBER
        Count
};

/// The function's address, or null where the system lacks it and before the exported table is filled. Safe
/// from any number of threads.
PVOID FindOptionalFunction(OptionalFunction function);

/// A getter for each function, of the same name: null, or a pointer to it.
namespace optional
{
#define ORV_OPTIONAL_GETTER(name)                                                                            \
    inline decltype(&::name) name()                                                                          \
    {                                                                                                        \
        return reinterpret_cast<decltype(&::name)>(FindOptionalFunction(OptionalFunction::name));            \
    }
ORV_OPTIONAL_FUNCTIONS(ORV_OPTIONAL_GETTER)
#undef ORV_OPTIONAL_GETTER
} // namespace optional

} // namespace detail

// Functions of ntdll.dll that the oldest supported system may lack and that are not in the exported table,
// whose entries are fixed. With a static import of such a function the DLL would not load on that system.
// Each function is looked up when it is first needed: a process that does not need it does not pay for it.

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

/// The function's address. Null when the system lacks the function, or when the exported table is not filled
/// yet. Any number of threads may call this at the same time.
PVOID FindOptionalFunction(OptionalFunction function);

/// For each function a getter of the same name, which returns null or a pointer to the function.
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

// What the compiler needs where there is no C runtime: dynamic memory, the trap for pure virtual calls, the
// marker for floating-point code, and the stack cookie with the load configuration that makes the loader
// randomize it. Programs that link ntdll.dll and orvsys.dll alone use this file too.

#include "nt/nt.h"
#include "nt/teb.h"
#include "runtime/heap.h"

void *operator new(size_t size)
{
    return detail::AllocateBytes(size);
}

void operator delete(void *block) noexcept
{
    detail::FreeBytes(block);
}

void operator delete(void *block, size_t) noexcept
{
    detail::FreeBytes(block);
}

extern "C" {

int _fltused = 1;

int __cdecl _purecall()
{
    __builtin_trap();
}

// The loader replaces this value before any code of the module runs; it must not be the loader's own default.
uintptr_t __security_cookie = 0xBB40E64E;

void __fastcall __security_check_cookie(uintptr_t cookie)
{
    if (cookie != __security_cookie)
        __builtin_trap();
}

extern PVOID __safe_se_handler_table[];
extern uint8_t __safe_se_handler_count; // the linker makes the symbol's address the count

/// IMAGE_LOAD_CONFIG_DIRECTORY32 up to the fields that the loader needs here.
struct LoadConfiguration {
    ULONG Size;
    ULONG Reserved[14];
    uintptr_t *SecurityCookie;
    PVOID *SEHandlerTable;
    uint8_t *SEHandlerCount;
};
static_assert(sizeof(LoadConfiguration) == 0x48);
static_assert(offsetof(LoadConfiguration, SecurityCookie) == 0x3C);

extern const LoadConfiguration _load_config_used;
const LoadConfiguration _load_config_used = {
    sizeof(LoadConfiguration), {}, &__security_cookie, __safe_se_handler_table, &__safe_se_handler_count,
};

} // extern "C"

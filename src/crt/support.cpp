// What the compiler needs in every module without a C runtime: the trap for pure virtual calls, the marker
// for floating-point code, and the load configuration through which the loader finds the stack cookie, the
// exception handlers and the functions that may be called through pointers. This file is part of the DLL and
// of orvstart.lib.

#include "nt/nt.h"

extern "C" {

int _fltused = 1;

int __cdecl _purecall()
{
    __builtin_trap();
}

// The loader replaces this value before any code of the module runs; it must not be the loader's own default.
// The DLL's entry replaces it once more.
uintptr_t __security_cookie = 0xBB40E64E;

void __fastcall __security_check_cookie(uintptr_t cookie)
{
    if (cookie != __security_cookie)
        __builtin_trap();
}

/// Every call through a pointer first calls this check, with the target address in ecx. A loader that
/// supports control flow guard installs its own function; this default accepts every address.
static void __fastcall AllowEveryTarget(uintptr_t) {}

#pragma section(".00cfg", read)
__declspec(allocate(".00cfg")) extern void(__fastcall *const __guard_check_icall_fptr)(uintptr_t);
__declspec(allocate(".00cfg")) void(__fastcall *const __guard_check_icall_fptr)(uintptr_t) = AllowEveryTarget;

// Defined by the linker. For the counts and the flags, the symbol's address is the value.
extern PVOID __safe_se_handler_table[];
extern uint8_t __safe_se_handler_count;
extern PVOID __guard_fids_table[];
extern uint8_t __guard_fids_count;
extern uint8_t __guard_flags;
extern PVOID __guard_iat_table[];
extern uint8_t __guard_iat_count;
extern PVOID __guard_longjmp_table[];
extern uint8_t __guard_longjmp_count;

/// IMAGE_LOAD_CONFIG_DIRECTORY32 up to the fields that the loader needs here.
struct LoadConfiguration {
    ULONG Size;
    ULONG Reserved1[14];
    uintptr_t *SecurityCookie;
    PVOID *SEHandlerTable;
    uint8_t *SEHandlerCount;
    void(__fastcall *const *GuardCFCheckFunctionPointer)(uintptr_t);
    PVOID Reserved2;
    PVOID *GuardCFFunctionTable;
    uint8_t *GuardCFFunctionCount;
    uint8_t *GuardFlags;
    ULONG CodeIntegrity[3];
    PVOID *GuardAddressTakenIatEntryTable;
    uint8_t *GuardAddressTakenIatEntryCount;
    PVOID *GuardLongJumpTargetTable;
    uint8_t *GuardLongJumpTargetCount;
};
static_assert(sizeof(LoadConfiguration) == 0x78);
static_assert(offsetof(LoadConfiguration, SecurityCookie) == 0x3C);
static_assert(offsetof(LoadConfiguration, GuardFlags) == 0x58);

extern const LoadConfiguration _load_config_used;
const LoadConfiguration _load_config_used = {
    sizeof(LoadConfiguration),
    {},
    &__security_cookie,
    __safe_se_handler_table,
    &__safe_se_handler_count,
    &__guard_check_icall_fptr,
    nullptr,
    __guard_fids_table,
    &__guard_fids_count,
    &__guard_flags,
    {},
    __guard_iat_table,
    &__guard_iat_count,
    __guard_longjmp_table,
    &__guard_longjmp_count,
};

} // extern "C"

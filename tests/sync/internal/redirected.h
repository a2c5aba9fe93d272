// Imported functions that answer as a test wants, to reach failures and moments that cannot be brought about
// otherwise.

#pragma once

#include "nt/programs.h"

/// While it lives, calls through an import's slot go to another function. The original is there for it.
template <typename Function>
class Redirected
{
public:
    Redirected(Function *&slot, Function *replacement) : original(slot), slot_(slot) { Write(replacement); }
    Redirected(const Redirected &) = delete;
    Redirected &operator=(const Redirected &) = delete;
    ~Redirected() { Write(original); }

    Function *const original;

private:
    void Write(Function *function)
    {
        PVOID page = &slot_;
        ULONG size = sizeof slot_;
        ULONG protection = 0;
        if (NtProtectVirtualMemory(NtCurrentProcess(), &page, &size, PAGE_READWRITE, &protection) < 0)
            __builtin_trap();
        *const_cast<Function *volatile *>(&slot_) = function;
    }

    Function *&slot_;
};

/// An import's slot, as the linker names it.
#define IMPORT_SLOT(function, bytes)                                                                         \
    extern "C" decltype(&function) function##Slot __asm__("__imp__" #function "@" #bytes)

template <NTSTATUS status, typename... Parameters>
NTSTATUS NTAPI Answer(Parameters...)
{
    return status;
}

/// While the result lives, an imported function answers `status` and does nothing.
template <NTSTATUS status, typename... Parameters>
Redirected<NTSTATUS NTAPI(Parameters...)> Refuse(NTSTATUS(NTAPI *&slot)(Parameters...))
{
    return {slot, Answer<status, Parameters...>};
}

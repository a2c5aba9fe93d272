// Imported functions that answer as a test wants, to reach failures and moments that cannot be brought about
// otherwise.

#pragma once

#include "nt/programs.h"

template <typename T>
struct SameType {
    using Type = T;
};

/// While it lives, calls through an import's slot go to another function, which finds the original in it.
template <typename Function>
class Redirected
{
public:
    Redirected(Function *&slot, typename SameType<Function>::Type *replacement) : slot_(slot)
    {
        original = slot;
        Write(replacement);
    }
    Redirected(const Redirected &) = delete;
    Redirected &operator=(const Redirected &) = delete;
    ~Redirected() { Write(original); }

    static inline Function *original;

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

/// While the result lives, an imported function answers `status` and does nothing.
template <NTSTATUS status, typename... Parameters>
Redirected<NTSTATUS NTAPI(Parameters...)> Refuse(NTSTATUS(NTAPI *&slot)(Parameters...))
{
    return {slot, [](Parameters...) { return status; }};
}

constexpr NTSTATUS kQuota = static_cast<NTSTATUS>(0xC0000044); // ERROR_NOT_ENOUGH_QUOTA
constexpr auto kQuotaResult = static_cast<int>(0xC0070718);

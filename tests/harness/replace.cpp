// Overwrites the first instructions of a function.

#include "harness/replace.h"

#include "nt/programs.h"

namespace test
{

PVOID FindFunction(const WCHAR *module, const char *name)
{
    UNICODE_STRING moduleName;
    RtlInitUnicodeString(&moduleName, module);
    const auto length = static_cast<USHORT>(strlen(name));
    const ANSI_STRING counted = {length, static_cast<USHORT>(length + 1), const_cast<char *>(name)};
    PVOID handle = nullptr;
    PVOID function = nullptr;
    if (LdrGetDllHandle(nullptr, nullptr, &moduleName, &handle) < 0 ||
        LdrGetProcedureAddress(handle, &counted, 0, &function) < 0)
        __builtin_trap();
    return function;
}

ReplacedFunction::ReplacedFunction(const WCHAR *module, const char *name)
    : code_(static_cast<uint8_t *>(FindFunction(module, name)))
{
    PVOID page = code_;
    ULONG size = kSize;
    if (NtProtectVirtualMemory(NtCurrentProcess(), &page, &size, PAGE_EXECUTE_READWRITE, &protection_) < 0)
        __builtin_trap();
    memmove(original_, code_, kSize);
}

ReplacedFunction::ReplacedFunction(const WCHAR *module, const char *name, ULONG result, USHORT argumentBytes)
    : ReplacedFunction(module, name)
{
    code_[0] = 0xB8; // mov eax, result
    memmove(code_ + 1, &result, sizeof result);
    code_[5] = 0xC2; // ret argumentBytes
    memmove(code_ + 6, &argumentBytes, sizeof argumentBytes);
}

void ReplacedFunction::JumpTo(uintptr_t address)
{
    const uintptr_t distance = address - reinterpret_cast<uintptr_t>(code_ + 5);
    code_[0] = 0xE9; // jmp
    memmove(code_ + 1, &distance, sizeof distance);
}

ReplacedFunction::~ReplacedFunction()
{
    memmove(code_, original_, kSize);
    PVOID page = code_;
    ULONG size = kSize;
    NtProtectVirtualMemory(NtCurrentProcess(), &page, &size, protection_, &protection_);
}

} // namespace test
